#include "test/suite/suiterun.h"

#include "shared/environment.h"
#include "test/cancellation.h"
#include "test/report/resultlabels.h"
#include "test/report/sectionkind.h"
#include "test/suite/childarguments.h"
#include "test/testcaseprocess.h"
#include "test/testfilters.h"
#include "test/testresult.h"
#include "test/testsuite.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <limits>
#include <memory>

namespace Morvex {
namespace {

// Counts that travel on as int.
const unsigned int maxCount = std::numeric_limits<int>::max();

QString executionErrorDetails(int code, const QString &testCase)
{
    switch (code) {
    case TestCaseProcess::CANNOT_START:
        return QStringLiteral("Failed to run morvexrunner");
    case TestCaseProcess::TIMED_OUT:
        return QStringLiteral("Execution is terminated due to timeout");
    case TestCaseProcess::ABNORMAL_END:
        return QStringLiteral("morvexrunner exited abnormally when executing %1").arg(testCase);
    case TestCaseProcess::CANCELLED:
        return QStringLiteral("Testsuite execution was canceled while executing %1").arg(testCase);
    default:
        return QStringLiteral("morvexrunner exited with code %1 when executing %2")
            .arg(QString::number(code), testCase);
    }
}

QString crashMessage(int signal)
{
    const char *name = ::sigabbrev_np(signal);
    return QStringLiteral("The process of the test case was ended by signal %1%2")
        .arg(signal)
        .arg(name ? QStringLiteral(" (SIG%1)").arg(QString::fromLatin1(name)) : QString());
}

} // namespace

SuiteRun::SuiteRun(const TestSuite &suite, TestResult *result, const RunOptions &options)
    : m_suite(suite)
    , m_result(result)
    , m_options(options)
    , m_retryCount(static_cast<int>(std::min(options.retryCount, maxCount)))
{
}

void SuiteRun::setSuiteDirVariable(const TestSuite &suite)
{
    Environment::setVariable("MORVEX_SUITE_DIR", suite.dir().dirName().toStdString());
}

void SuiteRun::run(const QStringList &testCases)
{
    QString error;
    const std::unique_ptr<FilterInterface> filter(allFilterByArgs(m_suite.tags(), {}, &error));
    if (!filter) {
        std::fputs(qUtf8Printable(error), stderr);
        return;
    }
    setSuiteDirVariable(m_suite);
    const QDir dir = m_suite.dir();
    m_result->start(dir.dirName(), dir, m_suite.summary(), m_suite.description());
    if (m_options.randomSeed != 0)
        logRandomOrder();
    if (m_suite.isRerun())
        m_result->addResult(TestResult::LOG, QStringLiteral("Rerun of failed test cases"));
    const QStringList chosen = testCases.isEmpty() ? m_suite.discoverTestCases() : testCases;
    // The log of a run with an unreadable file of tags stays open: it must not look like a whole
    // run.
    if (!runTestCases(TestSuite::shuffled(chosen, m_options.randomSeed), filter.get()))
        return;
    if (m_suite.beforeEnd())
        m_suite.beforeEnd()();
    m_result->completed();
}

void SuiteRun::logRandomOrder() const
{
    const unsigned int seed = m_options.randomSeed;
    m_result->addResult(TestResult::LOG, QStringLiteral("Random order of test cases"),
                        QStringLiteral("Random sequence number %1 used").arg(seed), LineInfo(),
                        QStringLiteral("Use --random %1 to retest in this order").arg(seed));
}

bool SuiteRun::runTestCases(const QStringList &testCases, FilterInterface *filter)
{
    for (int i = 0; i < testCases.size(); ++i) {
        const Decision decision = decide(testCases[i], filter);
        if (decision == Decision::Abort)
            return false;
        if (decision == Decision::Run && !runWithRetries(testCases[i])) {
            logLeftOut(testCases.mid(i + 1));
            break;
        }
    }
    return true;
}

// Those that the tags keep from running were not left out.
void SuiteRun::logLeftOut(const QStringList &testCases) const
{
    QString error;
    const QStringList names = m_suite.selectedByTags(testCases, &error);
    if (names.isEmpty())
        return;
    const QString text = names.size() == 1
                             ? QStringLiteral("1 test case did not run")
                             : QStringLiteral("%1 test cases did not run").arg(names.size());
    m_result->addResult(TestResult::LOG, text, names.join(QLatin1Char('\n')));
}

SuiteRun::Decision SuiteRun::decide(const QString &testCase, FilterInterface *filter) const
{
    if (m_suite.tags().isEmpty())
        return Decision::Run;
    QString error;
    const std::vector<std::string> tags = m_suite.getTestCaseTags(testCase, &error);
    if (!error.isEmpty()) {
        std::fprintf(stderr, "Error in test case config.xml: %s", qUtf8Printable(error));
        return Decision::Abort;
    }
    warnOfReservedTags(testCase, tags);
    // Which scenarios run is the child's choice.
    if (m_suite.hasFeatureFile(testCase)) {
        if (!tags.empty())
            std::fprintf(stderr, "Ignoring test case tags for BDD test %s\n",
                         qUtf8Printable(testCase));
        return Decision::Run;
    }
    return filter->shouldExecuteWithTags(tags) ? Decision::Run : Decision::LeaveOut;
}

void SuiteRun::warnOfReservedTags(const QString &testCase,
                                  const std::vector<std::string> &tags) const
{
    QStringList found;
    for (const std::string &tag : tags) {
        const QString text = QString::fromStdString(tag);
        if (reservedTags().contains(text))
            found += text;
    }
    if (found.isEmpty())
        return;
    const QString path =
        m_suite.dir().absolutePath() + QLatin1Char('/') + testCase + QLatin1String("/config.xml");
    m_result->addResult(TestResult::WARNING, QStringLiteral("%1: Invalid tag value").arg(testCase),
                        QStringLiteral("\"%1\" should not be used as tag, reserved tag by Morvex")
                            .arg(found.join(QLatin1Char(','))),
                        LineInfo(path, 0), QStringLiteral("Use of reserved tag"));
}

// False when nothing may follow. A request to cancel that cut nothing off, since the child had
// ended its test case already, is one to cancel the next test case.
bool SuiteRun::runWithRetries(const QString &testCase)
{
    if (runAttempt(testCase, m_retryCount, m_retryCount).wasCutOff)
        return false;
    if (m_options.stopOnFail && m_result->hasFailure())
        return false;
    // Scenarios of a behaviour driven test case are repeated by the child.
    if (m_suite.hasFeatureFile(testCase))
        return true;
    for (int i = 1; i <= m_retryCount && m_result->currentTestHasFailure(); ++i) {
        // A child that says that it was cancelled ends the retries, a request to cancel the run.
        if (runAttempt(testCase, m_retryCount - i, 0).wasCutOff)
            return !isCancelled();
    }
    return true;
}

bool SuiteRun::isCancelled() const
{
    return m_suite.cancellation() && m_suite.cancellation()->isRequested();
}

SuiteRun::AttemptEnd SuiteRun::runAttempt(const QString &testCase, int retriesLeft, int retryOption)
{
    if (m_suite.skippedTestCases().contains(testCase)) {
        logSkipped(testCase);
        return {};
    }
    const QStringList arguments =
        ChildArguments(m_suite).forAttempt(testCase, m_options, retryOption);
    const auto timeout = static_cast<int>(std::min(m_options.timeoutSeconds, maxCount));
    const int startsBefore = m_result->resultCount(TestResult::START_TEST_CASE);
    TestCaseRun process(m_result, retriesLeft, m_suite.cancellation());
    const int code = process.run(arguments, timeout);
    // The flags of the log are still those of the test case before when the child died early.
    const bool wasStarted = m_result->resultCount(TestResult::START_TEST_CASE) > startsBefore;
    if (wasStarted && m_result->isTestCaseComplete())
        return {code, false};
    if (!wasStarted)
        logStart(testCase, retriesLeft);
    if (process.crashSignal() != 0)
        logCrash(process.crashSignal(), process.lastPlace());
    closeTestCase(testCase, code, wasStarted);
    return {code, code == TestCaseProcess::CANCELLED};
}

void SuiteRun::logStart(const QString &testCase, int retry) const
{
    m_result->addResult(TestResult::START_TEST_CASE, startMessage(testCase), startDetails(testCase),
                        LineInfo(m_suite.absoluteSuiteFilePath(testCase), -1), testCase, retry);
}

void SuiteRun::logSkipped(const QString &testCase) const
{
    logStart(testCase, -1);
    m_result->addResult(
        TestResult::SKIP_SECTION, testCase,
        QStringLiteral("Skipping Test Case requested through commandline option while executing "
                       "the Test Suite."),
        LineInfo(m_suite.absoluteSuiteFilePath(testCase), -1), SectionKind::testCase);
    m_result->addResult(TestResult::END_TEST_CASE, endMessage(testCase), endDetails(testCase));
}

void SuiteRun::logCrash(int signal, const LineInfo &lastPlace) const
{
    const QString place =
        lastPlace.lineNumber() > 0
            ? QStringLiteral("Last known place of the script: %1").arg(lastPlace.toString())
            : QStringLiteral("No place of the script is known.");
    m_result->addResult(TestResult::LOG, crashMessage(signal), place, lastPlace);
}

// A child that never reported its test case is no success whatever its exit status says: nothing
// was tested.
void SuiteRun::closeTestCase(const QString &testCase, int code, bool wasStarted) const
{
    const LineInfo line(m_suite.absoluteSuiteFilePath(testCase), -1);
    if (code != 0)
        m_result->addResult(TestResult::FATAL, QStringLiteral("Execution error"),
                            executionErrorDetails(code, testCase), line);
    else if (!wasStarted)
        m_result->addResult(
            TestResult::ERROR, QStringLiteral("Nothing was tested"),
            QStringLiteral("morvexrunner ended without reporting anything of %1").arg(testCase),
            line);
    m_result->addResult(TestResult::END_TEST_CASE, QString());
}

} // namespace Morvex
