#include "runner/runtestcase.h"

#include "runner/environmentfile.h"
#include "runner/messages.h"
#include "runner/runneroptions.h"
#include "runner/runoutcome.h"
#include "runner/scripttestcase.h"
#include "shared/realpath.h"
#include "test/openreportfile.h"
#include "test/rawreportgenerator.h"
#include "test/testresult.h"

#include <QDir>
#include <QFileInfo>

#include <unistd.h>

namespace Morvex {
namespace {

[[nodiscard]] QString problem(const RunnerOptions &options)
{
    if (options.testCases.size() > 1)
        return QStringLiteral("without a suite directory only one --testcase can be run");
    const QString name = options.testCases.constFirst();
    if (!QFileInfo(name).isDir())
        return QStringLiteral("there is no test case '%1' in the current directory").arg(name) +
               suiteDirectoryHint(options);
    return setEnvironmentVariables(options.envVarFile, options.envVars);
}

// Owns the generator, so that the report is closed after it. False when entries got lost.
bool runScript(const RunnerOptions &options, TestReportGenerator *generator,
               const QString &resultDir, const RunEnd &atEnd, RunOutcome *outcome)
{
    TestResult result(generator);
    result.setObserver([outcome](const TestResult::Entry &entry) { outcome->add(entry); });
    const auto *stream = dynamic_cast<const RawReportGenerator *>(generator);
    // The suite's report is on standard output, where nothing of the application may get.
    if (stream)
        ::dup2(STDERR_FILENO, STDOUT_FILENO);
    const QDir suiteDir = QDir::current();
    ScriptTestCase testCase(&result, cleanedPath(options.testCases.constFirst()),
                            suiteDir.absolutePath(), resultDir, options);
    testCase.run(false);
    if (atEnd)
        atEnd(&result, resultDir);
    result.completed();
    return !stream || !stream->hasLostEntries();
}

TestReportGenerator::Result connectToSuite(const RunnerOptions &options, QString *)
{
    TestReportGenerator::Result created = RawReportGenerator::create(
        options.reportGenerators.constFirst().mid(reportStreamPrefix().size()));
    if (!created.error.isEmpty())
        created.error.prepend(QStringLiteral("raw report generator: "));
    return created;
}

} // namespace

int runTestCase(const RunnerOptions &options, const ReportMaker &makeReport, const RunEnd &atEnd)
{
    const QString error = problem(options);
    if (!error.isEmpty()) {
        printMessage(error);
        return ExitUnusable;
    }
    QString resultDir;
    const TestReportGenerator::Result created = makeReport(options, &resultDir);
    if (!created.error.isEmpty()) {
        printMessage(created.error);
        return ExitFailed;
    }
    if (resultDir.isEmpty() && !options.resultDir.isEmpty())
        resultDir = cleanedPath(options.resultDir);
    RunOutcome outcome;
    // The parent must not take what it got for all there was.
    if (!runScript(options, created.generator, resultDir, atEnd, &outcome))
        return ExitUnusable;
    return outcome.hasFailure() || hasIncompleteReport() ? ExitFailed : ExitPassed;
}

bool isReportStreamed(const RunnerOptions &options)
{
    return options.reportGenerators.size() == 1 &&
           options.reportGenerators.constFirst().startsWith(reportStreamPrefix());
}

QString reportStreamPrefix()
{
    return QStringLiteral("raw,");
}

int runTestCaseOfSuite(const RunnerOptions &options)
{
    return runTestCase(options, connectToSuite, {});
}

} // namespace Morvex
