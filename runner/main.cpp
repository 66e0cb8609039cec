#include "runner/commandline.h"
#include "runner/messages.h"
#include "runner/processsetup.h"
#include "runner/runnerlibrary.h"
#include "runner/runneroptions.h"
#include "runner/runtestcase.h"

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

// What a suite runs for each of its test cases.
bool isTestCaseOfSuite(const RunnerOptions &options)
{
    return options.action == RunnerOptions::Action::Run && options.suiteDirectory.isEmpty() &&
           options.testCases.size() == 1 && isReportStreamed(options) && !options.coverage &&
           !options.joinRuns && !options.pauseOnFailure && options.keptRuns == 0;
}

int run(const RunnerOptions &options)
{
    if (options.action == RunnerOptions::Action::Version) {
        std::puts("morvexrunner " MORVEX_VERSION);
        return ExitPassed;
    }
    if (isTestCaseOfSuite(options))
        return runTestCaseOfSuite(options);
    QString error;
    if (const RunnerLibrary *library = runnerLibrary(&error))
        return library->runCommand(options);
    printMessage(error);
    return ExitUnusable;
}

// A list that a full disk cuts must not look whole.
int withOutputWritten(int exitStatus)
{
    if (std::fflush(stdout) == 0 && !std::ferror(stdout))
        return exitStatus;
    printMessage(QStringLiteral("not all of the output could be written"));
    return exitStatus == ExitPassed ? ExitFailed : exitStatus;
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
    if (commandLine.error.isEmpty())
        return withOutputWritten(run(commandLine.options));
    printUsageError(commandLine.error);
    return ExitUnusable;
}
