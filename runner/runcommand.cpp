#include "runner/runcommand.h"

#include "runner/commandline.h"
#include "runner/failurepause.h"
#include "runner/inspectprogram.h"
#include "runner/messages.h"
#include "runner/migratenames.h"
#include "runner/recordtestcase.h"
#include "runner/runsuite.h"
#include "runner/runtestcase.h"
#include "runner/uicoverage.h"
#include "test/testreportgeneratorfactory.h"
#include "test/webreport/webreportmerge.h"
#include "test/webreport/webreportrepair.h"

#include <cstdio>
#include <memory>

namespace Morvex {
namespace {

int usageError(const QString &error)
{
    printUsageError(error);
    return ExitUnusable;
}

int mergeReports(const QStringList &reports, bool joinRuns)
{
    if (reports.size() < 2) {
        printMessage(QStringLiteral("--merge-reports needs a directory to make and the reports to "
                                    "make it of"));
        return ExitUnusable;
    }
    const WebReportMerge merge = mergeWebReports(reports.first(), reports.mid(1), joinRuns);
    for (const QString &warning : merge.warnings)
        printMessage(QStringLiteral("warning: ") + warning);
    printMessage(merge.error.isEmpty()
                     ? QStringLiteral("%1 %2 in '%3'")
                           .arg(QString::number(merge.runs),
                                merge.runs == 1 ? QStringLiteral("run") : QStringLiteral("runs"),
                                reports.first())
                     : merge.error);
    return merge.error.isEmpty() ? ExitPassed : ExitUnusable;
}

int repairReport(const QString &directory)
{
    const WebReportRepair repair = repairWebReport(directory);
    printMessage(repair.error.isEmpty() ? repair.message : repair.error);
    return repair.error.isEmpty() ? ExitPassed : ExitUnusable;
}

TestReportGenerator::Result makeReport(const RunnerOptions &options, QString *resultDir)
{
    return TestReportGeneratorFactory::create(options.reportGenerators, resultDir,
                                              TestReportGenerator::TEST_CASE);
}

int runSingleTestCase(const RunnerOptions &options, UiCoverage *coverage)
{
    const auto addCoverage = [coverage](TestResult *result, const QString &resultDir) {
        if (!coverage)
            return;
        coverage->collect();
        coverage->attachPage(result, resultDir);
    };
    return runTestCase(options, makeReport, addCoverage);
}

// Runs a suite or a test case, or lists those of a suite.
int runTests(const RunnerOptions &options)
{
    const bool isSuite = !options.suiteDirectory.isEmpty();
    if (!isSuite && (options.action == RunnerOptions::Action::List || options.testCases.isEmpty()))
        return usageError(QStringLiteral("no suite directory was given") +
                          suiteDirectoryHint(options));
    if (!isSuite && options.keptRuns > 0)
        return usageError(QStringLiteral("--keep-runs needs a suite directory"));
    // A test case of a suite has it from the runner of the suite.
    if (isSuite || options.pauseOnFailure) {
        const QString error = setPauseOnFailure(options.pauseOnFailure);
        if (!error.isEmpty())
            return usageError(error);
    }
    const bool isCounted = options.coverage && options.action == RunnerOptions::Action::Run;
    const std::unique_ptr<UiCoverage> coverage =
        isCounted ? std::make_unique<UiCoverage>() : nullptr;
    const int status =
        isSuite ? runSuite(options, coverage.get()) : runSingleTestCase(options, coverage.get());
    if (coverage)
        coverage->print();
    return status;
}

} // namespace

int runCommand(const RunnerOptions &options)
{
    if (options.joinRuns && options.action != RunnerOptions::Action::MergeReports &&
        options.action != RunnerOptions::Action::Help)
        return usageError(QStringLiteral("--join-runs needs --merge-reports"));
    switch (options.action) {
    case RunnerOptions::Action::Help:
        std::fputs(qUtf8Printable(helpText()), stdout);
        return ExitPassed;
    case RunnerOptions::Action::MergeReports:
        return mergeReports(options.reportsToMerge, options.joinRuns);
    case RunnerOptions::Action::RepairReport:
        return repairReport(options.reportToRepair);
    case RunnerOptions::Action::MigrateNames:
        return migrateNames(options);
    case RunnerOptions::Action::Inspect:
        return inspectProgram(options);
    case RunnerOptions::Action::Record:
        return recordTestCase(options);
    case RunnerOptions::Action::Version:
    case RunnerOptions::Action::List:
    case RunnerOptions::Action::Run:
        break;
    }
    return runTests(options);
}

} // namespace Morvex
