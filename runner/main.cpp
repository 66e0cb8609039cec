#include "runner/commandline.h"
#include "runner/failurepause.h"
#include "runner/inspectprogram.h"
#include "runner/messages.h"
#include "runner/migratenames.h"
#include "runner/processsetup.h"
#include "runner/recordtestcase.h"
#include "runner/runsuite.h"
#include "runner/runtestcase.h"
#include "runner/uicoverage.h"
#include "test/webreport/webreportmerge.h"
#include "test/webreport/webreportrepair.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QHash>
#include <QRandomGenerator>

#include <clocale>
#include <cstdio>
#include <cstdlib>

using namespace Morvex;

namespace {

void setPrefix()
{
    if (qEnvironmentVariableIsEmpty("MORVEX_PREFIX"))
        qputenv("MORVEX_PREFIX",
                QFile::encodeName(QDir::cleanPath(QCoreApplication::applicationDirPath() +
                                                  QStringLiteral("/.."))));
    makeVariableAbsolute("MORVEX_PREFIX");
}

void setVariables(const RunnerOptions &options)
{
    if (options.learn)
        qputenv("MORVEX_LEARN_SCREENSHOTS", "1");
    // The library looks at CLICOLOR alone.
    if (!qEnvironmentVariableIsEmpty("NO_COLOR") || qgetenv("TERM") == "dumb")
        qputenv("CLICOLOR", "0");
}

int usageError(const QString &error)
{
    printMessage(error + QStringLiteral("; see morvexrunner --help"));
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

int run(const RunnerOptions &options)
{
    if (options.joinRuns && options.action != RunnerOptions::Action::MergeReports &&
        options.action != RunnerOptions::Action::Help)
        return usageError(QStringLiteral("--join-runs needs --merge-reports"));
    switch (options.action) {
    case RunnerOptions::Action::Help:
        std::fputs(qUtf8Printable(helpText()), stdout);
        return ExitPassed;
    case RunnerOptions::Action::Version:
        std::puts("morvexrunner " MORVEX_VERSION);
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
    case RunnerOptions::Action::List:
    case RunnerOptions::Action::Run:
        break;
    }
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
        isSuite ? runSuite(options, coverage.get()) : runTestCase(options, coverage.get());
    if (coverage)
        coverage->print();
    return status;
}

} // namespace

int main(int argc, char **argv)
{
    setUpProcess();
    std::setlocale(LC_ALL, "");
    // Else the attributes in learned files would change their places from run to run.
    qSetGlobalQHashSeed(0);
    QStringList arguments;
    for (int i = 0; i < argc; ++i)
        arguments += QString::fromLocal8Bit(argv[i]);
    CommandLine commandLine = parseCommandLine(arguments.mid(1));
    commandLine.options.commandLine = arguments;
    // The toolkit has options of its own, which are none of the runner.
    argc = 1;
    const QCoreApplication application(argc, argv);
    // The names of temporary directories are made of it.
    std::srand(QRandomGenerator::global()->generate());
    setPrefix();
    makeVariableAbsolute("MORVEX_USER_SETTINGS_DIR");
    setVariables(commandLine.options);
    return commandLine.error.isEmpty() ? run(commandLine.options) : usageError(commandLine.error);
}
