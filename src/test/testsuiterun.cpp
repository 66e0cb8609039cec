// The run of a suite. What a suite is stands in testsuite.cpp, the command line of a child in
// testsuitearguments.cpp.

#include "shared/environment.h"
#include "test/cancellation.h"
#include "test/report/resultlabels.h"
#include "test/testcaseprocess.h"
#include "test/testfilters.h"
#include "test/testresult.h"
#include "test/testsuite.h"
#include "test/testsuiterunoptions.h"

#include <algorithm>
#include <cstdio>

namespace Morvex {
namespace {

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

} // namespace

void TestSuite::setSuiteDirVariable() const
{
    Environment::setVariable("MORVEX_SUITE_DIR", m_dir.dirName().toStdString());
}

bool TestSuite::isCancelled() const
{
    return m_cancellation && m_cancellation->isRequested();
}

QStringList TestSuite::discoverTestCases() const
{
    const QStringList found =
        m_dir.entryList({QStringLiteral("tst_*")}, QDir::Dirs | QDir::Readable);
    QStringList testCases;
    for (const QString &name :
         ConfParser::splitArgs(m_config.globalEntry(QStringLiteral("TEST_CASES")))) {
        if (found.contains(name))
            testCases += name;
    }
    for (const QString &name : found) {
        if (!testCases.contains(name))
            testCases += name;
    }
    return testCases;
}

// The same number has to give the same order for ever: it is shown for a later run.
QStringList TestSuite::shuffled(QStringList testCases, unsigned int randomSeed)
{
    if (randomSeed == 0)
        return testCases;
    quint32 state = randomSeed;
    for (int i = 0; i < testCases.size(); ++i) {
        state = state * 1103515245U + 12345U;
        const auto count = static_cast<quint32>(testCases.size());
        testCases.move(i, static_cast<int>(((state >> 16) & 0x7FFFU) % count));
    }
    return testCases;
}

QStringList TestSuite::selectedByTags(const QStringList &testCases, QString *error) const
{
    if (m_tags.isEmpty())
        return testCases;
    const std::unique_ptr<FilterInterface> filter(allFilterByArgs(m_tags, {}, error));
    if (!filter)
        return {};
    QStringList selected;
    for (const QString &testCase : testCases) {
        const std::vector<std::string> tags = getTestCaseTags(testCase, error);
        if (!error->isEmpty())
            return {};
        if (hasFeatureFile(testCase) || filter->shouldExecuteWithTags(tags))
            selected += testCase;
    }
    return selected;
}

void TestSuite::run(const QString &host, int port, TestResult *result, const QStringList &testCases,
                    const QString &resultDir, double snoozeFactor, unsigned int timeoutSeconds,
                    bool stopOnFail, unsigned int retryCount, unsigned int randomSeed,
                    const QStringList &envVars, bool interactive)
{
    QString error;
    const std::unique_ptr<FilterInterface> filter(allFilterByArgs(m_tags, {}, &error));
    if (!filter) {
        std::fputs(qUtf8Printable(error), stderr);
        return;
    }
    setSuiteDirVariable();
    const QStringList order =
        shuffled(testCases.isEmpty() ? discoverTestCases() : testCases, randomSeed);
    result->start(m_dir.dirName(), m_dir, m_summary, m_description);
    if (randomSeed != 0)
        result->addResult(
            TestResult::LOG, QStringLiteral("Random order of test cases"),
            QStringLiteral("Random sequence number %1 used").arg(randomSeed), LineInfo(),
            QStringLiteral("Use --random %1 to retest in this order").arg(randomSeed), -1);
    bool aborted = false;
    runTestCases(order, filter.get(), result,
                 {host, port, resultDir, snoozeFactor, timeoutSeconds, stopOnFail,
                  static_cast<int>(std::min(retryCount, maxRetryCount)), envVars, interactive},
                 &aborted);
    // The log of a run with an unreadable file of tags stays open: it must not look like a whole
    // run.
    if (!aborted)
        result->completed();
}

void TestSuite::runTestCases(const QStringList &testCases, FilterInterface *filter,
                             TestResult *result, const RunOptions &options, bool *aborted)
{
    for (const QString &testCase : testCases) {
        if (isCancelled())
            return;
        const Decision decision = decide(testCase, filter, result);
        *aborted = decision == Decision::Abort;
        if (*aborted)
            return;
        if (decision == Decision::Skip)
            continue;
        if (!runAttempt(testCase, result, options, options.retryCount, options.retryCount))
            return;
        if (options.stopOnFail && result->hasFailure())
            return;
        // Scenarios of a behaviour driven test case are repeated by the child.
        if (!hasFeatureFile(testCase))
            retryTestCase(testCase, result, options);
    }
}

TestSuite::Decision TestSuite::decide(const QString &testCase, FilterInterface *filter,
                                      TestResult *result) const
{
    if (m_tags.isEmpty())
        return Decision::Run;
    QString error;
    const std::vector<std::string> tags = getTestCaseTags(testCase, &error);
    if (!error.isEmpty()) {
        std::fprintf(stderr, "Error in test case config.xml: %s", qUtf8Printable(error));
        return Decision::Abort;
    }
    warnOfReservedTags(testCase, tags, result);
    // Which scenarios run is the child's choice.
    if (hasFeatureFile(testCase)) {
        if (!tags.empty())
            std::fprintf(stderr, "Ignoring test case tags for BDD test %s\n",
                         qUtf8Printable(testCase));
        return Decision::Run;
    }
    return filter->shouldExecuteWithTags(tags) ? Decision::Run : Decision::Skip;
}

void TestSuite::warnOfReservedTags(const QString &testCase, const std::vector<std::string> &tags,
                                   TestResult *result) const
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
        m_dir.absolutePath() + QLatin1Char('/') + testCase + QLatin1String("/config.xml");
    result->addResult(TestResult::WARNING, QStringLiteral("%1: Invalid tag value").arg(testCase),
                      QStringLiteral("\"%1\" should not be used as tag, reserved tag by Morvex")
                          .arg(found.join(QLatin1Char(','))),
                      LineInfo(path, 0), QStringLiteral("Use of reserved tag"), -1);
}

void TestSuite::retryTestCase(const QString &testCase, TestResult *result,
                              const RunOptions &options)
{
    for (int i = 1; i <= options.retryCount; ++i) {
        if (!result->currentTestHasFailure() || isCancelled())
            return;
        if (!runAttempt(testCase, result, options, options.retryCount - i, 0))
            return;
    }
}

bool TestSuite::runAttempt(const QString &testCase, TestResult *result, const RunOptions &options,
                           int retriesLeft, int retryOption)
{
    return runTestCase(testCase, options.host, options.port, result, options.resultDir,
                       options.snoozeFactor, options.timeoutSeconds, retriesLeft, retryOption,
                       options.envVars, options.interactive);
}

bool TestSuite::runTestCase(const QString &testCase, const QString &host, int port,
                            TestResult *result, const QString &resultDir, double snoozeFactor,
                            unsigned int timeoutSeconds, int retriesLeft, int retryOption,
                            const QStringList &envVars, bool interactive)
{
    if (m_skippedTestCases.contains(testCase)) {
        logSkipped(testCase, result);
        return true;
    }
    const RunOptions options{host,  port,        resultDir, snoozeFactor, timeoutSeconds,
                             false, retriesLeft, envVars,   interactive};
    const QStringList arguments = testCaseArguments(testCase, options, retryOption);
    const auto timeout = static_cast<int>(std::min(timeoutSeconds, maxTimeoutSeconds));
    const int startsBefore = result->resultCount(TestResult::START_TEST_CASE);
    const int code = TestCaseProcess::run(arguments, timeout, retriesLeft, result, m_cancellation);
    // The flags of the log are still those of the test case before when the child died early.
    const bool wasStarted = result->resultCount(TestResult::START_TEST_CASE) > startsBefore;
    if (!wasStarted || !result->isTestCaseComplete())
        closeTestCase(testCase, result, code, wasStarted, retriesLeft);
    return code != TestCaseProcess::CANCELLED;
}

void TestSuite::logStart(const QString &testCase, TestResult *result, int retry) const
{
    result->addResult(TestResult::START_TEST_CASE, startMessage(testCase), startDetails(testCase),
                      LineInfo(absoluteSuiteFilePath(testCase), -1), testCase, retry);
}

void TestSuite::logSkipped(const QString &testCase, TestResult *result) const
{
    logStart(testCase, result, -1);
    result->addResult(
        TestResult::SKIP_SECTION, testCase,
        QStringLiteral("Skipping Test Case requested through commandline option while executing "
                       "the Test Suite."),
        LineInfo(absoluteSuiteFilePath(testCase), -1), QStringLiteral("testcase"), -1);
    result->addResult(TestResult::END_TEST_CASE, endMessage(testCase), endDetails(testCase),
                      LineInfo(), QString(), -1);
}

// A child that never told of its test case is a failure whatever its exit status says: nothing was
// tested.
void TestSuite::closeTestCase(const QString &testCase, TestResult *result, int code,
                              bool wasStarted, int retriesLeft) const
{
    if (!wasStarted)
        logStart(testCase, result, retriesLeft);
    if (code != 0 || !wasStarted)
        result->addResult(TestResult::FATAL, QStringLiteral("Execution error"),
                          executionErrorDetails(code, testCase),
                          LineInfo(absoluteSuiteFilePath(testCase), -1), QString(), -1);
    result->addResult(TestResult::END_TEST_CASE, QString(), QString(), LineInfo(), QString(), -1);
}

} // namespace Morvex
