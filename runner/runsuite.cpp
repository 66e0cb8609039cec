#include "runner/runsuite.h"

#include "runner/applicationsettings.h"
#include "runner/environmentfile.h"
#include "runner/failedtestcases.h"
#include "runner/failurescreenshots.h"
#include "runner/messages.h"
#include "runner/runneroptions.h"
#include "runner/runoutcome.h"
#include "runner/runsummary.h"
#include "runner/signals.h"
#include "runner/suitedirectory.h"
#include "runner/uicoverage.h"
#include "shared/confparser.h"
#include "shared/realpath.h"
#include "test/cancellation.h"
#include "test/openreportfile.h"
#include "test/testfilters.h"
#include "test/testreportgeneratorfactory.h"
#include "test/testresult.h"
#include "test/testsuite.h"
#include "test/webreport/webreportretention.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QRandomGenerator>

#include <algorithm>
#include <cstdio>
#include <limits>
#include <memory>

namespace Morvex {
namespace {

// The suite has the command of the application as one text, in which quotes only hold words
// together.
QString unusableAutArgument(const QString &argument)
{
    return QStringLiteral("--aut: an argument must not be empty or have a double quote: '%1'")
        .arg(argument);
}

// Of a suite that says nothing: an hour, so that a test case that hangs ends some time.
const unsigned int defaultTimeoutSeconds = 3600;

class SuiteRunner
{
public:
    SuiteRunner(const RunnerOptions &options, UiCoverage *coverage)
        : m_options(options)
        , m_coverage(coverage)
        , m_dir(cleanedPath(options.suiteDirectory))
    {
    }

    int run();

private:
    [[nodiscard]] QString prepare();
    [[nodiscard]] QString applyOptions();
    [[nodiscard]] QString setKeptRuns();
    [[nodiscard]] QString setTimeout();
    void removeOldRuns(const QString &resultDir) const;
    [[nodiscard]] QString checkTags() const;
    [[nodiscard]] QString checkResultDir() const;
    [[nodiscard]] QString checkNames(const QStringList &names) const;
    [[nodiscard]] QString chooseFailedTestCases();
    int list();
    int execute();
    bool runTestCases(TestReportGenerator *generator, const QString &resultDir);
    int finish(bool isLogComplete);
    void keepFailedTestCases(bool endedEarly) const;
    unsigned int randomSeed() const;

    const RunnerOptions &m_options;
    // Null when it isn't wanted.
    UiCoverage *m_coverage;
    QDir m_dir;
    std::unique_ptr<TestSuite> m_suite;
    QStringList m_testCases;
    unsigned int m_keptRuns = 0;
    unsigned int m_timeoutSeconds = 0;
    bool m_nothingToDo = false;
    RunOutcome m_outcome;
    QElapsedTimer m_timer;
    Cancellation m_cancellation;
};

int SuiteRunner::run()
{
    const QString error = prepare();
    if (!error.isEmpty()) {
        printMessage(error);
        return ExitUnusable;
    }
    if (m_nothingToDo) {
        printMessage(QStringLiteral("no test case failed in the last run, nothing to do"));
        return ExitPassed;
    }
    return m_options.action == RunnerOptions::Action::List ? list() : execute();
}

// All that can be wrong is found before anything runs.
QString SuiteRunner::prepare()
{
    const QString given = m_options.suiteDirectory;
    if (!QFileInfo(given).isDir())
        return QStringLiteral("there is no suite directory '%1'").arg(given);
    const QString whyNot = whyNotListed(given);
    if (!whyNot.isEmpty())
        return whyNot;
    m_suite = std::make_unique<TestSuite>(m_dir, m_options.settingsGroup);
    if (m_suite->hasConfigLoadError())
        return QStringLiteral("cannot load the suite '%1': %2")
            .arg(given, m_suite->configLoadErrorMsg().trimmed());
    for (const QString &error :
         {applyOptions(), checkTags(), checkResultDir(), setKeptRuns(), setTimeout(),
          setFailureScreenshots(m_suite->failureScreenshots()), checkNames(m_options.testCases),
          checkNames(m_options.skippedTestCases)}) {
        if (!error.isEmpty())
            return error;
    }
    m_testCases = m_options.testCases;
    if (m_testCases.isEmpty())
        warnOfTestCasesLeftOut(given, m_suite->discoverTestCases());
    return m_options.rerunFailed ? chooseFailedTestCases() : QString();
}

QString SuiteRunner::applyOptions()
{
    m_suite->setTags(m_options.tags);
    m_suite->setSkippedTestCases(m_options.skippedTestCases);
    m_suite->setScriptArguments(m_options.scriptArguments);
    m_suite->setApplicationLauncher(m_options.applicationLauncher);
    m_suite->setApplicationLauncherArgs(ConfParser::splitArgs(m_options.launcherArguments));
    passOnApplicationOptions(m_options, *m_suite);
    m_suite->setCancellation(&m_cancellation);
    m_suite->setRerun(m_options.rerunFailed);
    m_suite->videoCaptureEnabled = m_options.isVideoCaptureEnabled;
    QStringList aut;
    for (const QString &word : m_options.aut) {
        if (word.isEmpty() || word.contains(QLatin1Char('"')))
            return unusableAutArgument(word);
        aut += word.contains(QLatin1Char(' ')) ? QLatin1Char('"') + word + QLatin1Char('"') : word;
    }
    m_suite->setAutOverride(aut.join(QLatin1Char(' ')));
    const QString asked =
        m_options.envVarFile.isEmpty() ? QString() : cleanedPath(m_options.envVarFile);
    m_suite->setEnvVarFileName(asked);
    const QString path = environmentFileOf(asked, m_suite->envVarFileName());
    return path.isEmpty() ? QString() : readEnvironmentFile(path, false);
}

QString SuiteRunner::checkResultDir() const
{
    if (m_options.resultDir.isEmpty() || QDir().mkpath(m_options.resultDir))
        return {};
    return QStringLiteral("--resultdir: cannot create the directory '%1'").arg(m_options.resultDir);
}

QString SuiteRunner::setKeptRuns()
{
    m_keptRuns = m_options.keptRuns;
    const QString text = m_suite->keptRuns();
    if (m_keptRuns > 0 || text.isEmpty())
        return {};
    m_keptRuns = text.toUInt();
    return m_keptRuns > 0
               ? QString()
               : QStringLiteral("KEEP_RUNS in the suite.conf of '%1' must be a number, 1 "
                                "or greater, not '%2'")
                     .arg(m_options.suiteDirectory, text);
}

QString SuiteRunner::setTimeout()
{
    const QString text = m_suite->timeout();
    // Nobody knows how long a person looks at a failure.
    if (m_options.pauseOnFailure) {
        m_timeoutSeconds = 0;
        return {};
    }
    if (m_options.timeoutSeconds || text.isEmpty()) {
        m_timeoutSeconds = m_options.timeoutSeconds.value_or(defaultTimeoutSeconds);
        return {};
    }
    bool isNumber = false;
    m_timeoutSeconds = text.toUInt(&isNumber);
    return isNumber ? QString()
                    : QStringLiteral("TIMEOUT in the suite.conf of '%1' must be a number of "
                                     "seconds, 0 for no limit, not '%2'")
                          .arg(m_options.suiteDirectory, text);
}

// The reports are closed by now.
void SuiteRunner::removeOldRuns(const QString &resultDir) const
{
    const auto holdsSeveralRuns = [](const QString &report) {
        return TestReportGeneratorFactory::traitsOf(report).testFlag(
            TestReportGeneratorFactory::HoldsSeveralRuns);
    };
    const QStringList &reports = m_options.reportGenerators;
    if (m_keptRuns == 0 || std::none_of(reports.begin(), reports.end(), holdsSeveralRuns))
        return;
    // The number in suite.conf is that of this suite alone.
    const QString suite = m_options.keptRuns > 0 ? QString() : m_dir.path();
    const WebReportRetention result = Morvex::removeOldRuns(resultDir, m_keptRuns, suite);
    if (!result.error.isEmpty())
        printMessage(QStringLiteral("warning: old runs stay in the report: ") + result.error);
}

QString SuiteRunner::checkTags() const
{
    QString error;
    const std::unique_ptr<FilterInterface> filter(allFilterByArgs(m_options.tags, {}, &error));
    return filter ? QString() : QStringLiteral("--tags: %1").arg(error);
}

QString SuiteRunner::checkNames(const QStringList &names) const
{
    const QStringList known = m_suite->discoverTestCases();
    for (const QString &name : names) {
        if (!known.contains(name))
            return QStringLiteral("the suite '%1' has no test case '%2'; --list shows all")
                .arg(m_options.suiteDirectory, name);
    }
    return {};
}

QString SuiteRunner::chooseFailedTestCases()
{
    const FailedTestCases record(m_dir.path());
    if (!record.isRecorded())
        return QStringLiteral("--rerun-failed: no earlier run of '%1' is known")
            .arg(m_options.suiteDirectory);
    const QStringList known = m_suite->discoverTestCases();
    QStringList chosen;
    for (const QString &name : record.read()) {
        if (!known.contains(name))
            printMessage(
                QStringLiteral("the failed test case '%1' no longer exists and is left out")
                    .arg(name));
        else if (m_testCases.isEmpty() || m_testCases.contains(name))
            chosen += name;
    }
    m_testCases = chosen;
    m_nothingToDo = chosen.isEmpty();
    return {};
}

unsigned int SuiteRunner::randomSeed() const
{
    if (!m_options.isRandom)
        return 0;
    if (m_options.randomSeed)
        return *m_options.randomSeed;
    const unsigned int fresh =
        QRandomGenerator::global()->bounded(1U, std::numeric_limits<unsigned int>::max());
    printMessage(QStringLiteral("random order, --random %1 repeats it").arg(fresh));
    return fresh;
}

int SuiteRunner::list()
{
    const QStringList all = m_testCases.isEmpty() ? m_suite->discoverTestCases() : m_testCases;
    QString error;
    const QStringList selected =
        m_suite->selectedByTags(TestSuite::shuffled(all, randomSeed()), &error);
    if (!error.isEmpty()) {
        printMessage(
            QStringLiteral("cannot read the tags of a test case: %1").arg(error.trimmed()));
        return ExitUnusable;
    }
    for (const QString &testCase : selected)
        std::printf("%s\n", qUtf8Printable(testCase));
    return ExitPassed;
}

int SuiteRunner::execute()
{
    // A signal while the reports are made cancels the first test case.
    const CancelOnSignals cancelOnSignals(&m_cancellation);
    QString resultDir;
    const TestReportGenerator::Result created = TestReportGeneratorFactory::create(
        m_options.reportGenerators, &resultDir, TestReportGenerator::TEST_SUITE);
    if (!created.error.isEmpty()) {
        printMessage(created.error);
        return ExitFailed;
    }
    if (resultDir.isEmpty() && !m_options.resultDir.isEmpty())
        resultDir = cleanedPath(m_options.resultDir);
    std::unique_ptr<TestReportGenerator> generator(created.generator);
    if (!QDir::setCurrent(m_dir.path())) {
        printMessage(QStringLiteral("cannot change into '%1'").arg(m_options.suiteDirectory));
        return ExitUnusable;
    }
    const bool isLogComplete = runTestCases(generator.release(), resultDir);
    removeOldRuns(resultDir);
    return finish(isLogComplete);
}

// Owns the generator, so that all reports are closed after it. False when the log has no end.
bool SuiteRunner::runTestCases(TestReportGenerator *generator, const QString &resultDir)
{
    TestResult result(generator);
    result.setObserver([this](const TestResult::Entry &entry) { m_outcome.add(entry); });
    m_timer.start();
    if (m_coverage) {
        m_suite->setBeforeEnd([this, &result, &resultDir] {
            m_coverage->collect();
            m_coverage->attachPage(&result, resultDir);
        });
    }
    m_suite->run(m_options.host, m_options.port, &result, m_testCases, resultDir,
                 m_options.snoozeFactor, m_timeoutSeconds, m_options.stopOnFail,
                 m_options.retryCount, randomSeed(), m_options.envVars, m_options.isInteractive);
    return result.isComplete();
}

int SuiteRunner::finish(bool isLogComplete)
{
    const bool isCancelled = m_cancellation.isRequested();
    keepFailedTestCases(isCancelled || !isLogComplete || m_options.stopOnFail);
    printSummary(m_outcome, m_options, {m_timer.elapsed(), isCancelled});
    if (isCancelled)
        return ExitInterrupted;
    if (!isLogComplete) {
        printMessage(QStringLiteral("the run was aborted, see above"));
        return ExitUnusable;
    }
    return m_outcome.hasFailure() || hasIncompleteReport() ? ExitFailed : ExitPassed;
}

// A test case that this run should have reached, but did not, stays on the list.
void SuiteRunner::keepFailedTestCases(bool endedEarly) const
{
    const FailedTestCases record(m_dir.path());
    QStringList failed = m_outcome.failedTestCases();
    if (endedEarly) {
        for (const QString &name : record.read()) {
            const bool wasDue = m_testCases.isEmpty() || m_testCases.contains(name);
            if (wasDue && !m_outcome.hasRun(name))
                failed += name;
        }
    }
    const QString error = record.write(failed);
    if (!error.isEmpty())
        printMessage(QStringLiteral("warning: ") + error);
}

} // namespace

int runSuite(const RunnerOptions &options, UiCoverage *coverage)
{
    return SuiteRunner(options, coverage).run();
}

} // namespace Morvex
