#include "runner/commandline.h"
#include "runner/messages.h"
#include "runner/runsuite.h"
#include "runner/runtestcase.h"
#include "test/webreportrepair.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QRandomGenerator>

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
}

// The library looks at CLICOLOR alone.
void setColorVariable()
{
    if (!qEnvironmentVariableIsEmpty("NO_COLOR") || qgetenv("TERM") == "dumb")
        qputenv("CLICOLOR", "0");
}

int usageError(const QString &error)
{
    printMessage(error + QStringLiteral("; see morvexrunner --help"));
    return ExitUnusable;
}

int repairReport(const QString &directory)
{
    const WebReportRepair repair = repairWebReport(directory);
    printMessage(repair.message);
    return repair.error.isEmpty() ? ExitPassed : ExitUnusable;
}

int run(const RunnerOptions &options)
{
    switch (options.action) {
    case RunnerOptions::Action::Help:
        std::fputs(qPrintable(helpText()), stdout);
        return ExitPassed;
    case RunnerOptions::Action::Version:
        std::puts("morvexrunner " MORVEX_VERSION);
        return ExitPassed;
    case RunnerOptions::Action::RepairReport:
        return repairReport(options.reportToRepair);
    case RunnerOptions::Action::List:
    case RunnerOptions::Action::Run:
        break;
    }
    if (!options.suiteDirectory.isEmpty())
        return runSuite(options);
    if (options.action == RunnerOptions::Action::List || options.testCases.isEmpty())
        return usageError(QStringLiteral("no suite directory was given"));
    return runTestCase(options);
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    // The names of temporary directories are made of it.
    std::srand(QRandomGenerator::global()->generate());
    setPrefix();
    setColorVariable();
    const CommandLine commandLine = parseCommandLine(QCoreApplication::arguments().mid(1));
    return commandLine.error.isEmpty() ? run(commandLine.options) : usageError(commandLine.error);
}
