#include "runner/optiontable.h"

namespace Morvex {
namespace {

using Section = Option::Section;
using Set = Option::Set;
using Takes = Option::Takes;

Set text(QString RunnerOptions::*member)
{
    return [member](RunnerOptions &options, const QString &value) {
        options.*member = value;
        return QString();
    };
}

Set list(QStringList RunnerOptions::*member)
{
    return [member](RunnerOptions &options, const QString &value) {
        (options.*member).append(value);
        return QString();
    };
}

Set flag(bool RunnerOptions::*member)
{
    return [member](RunnerOptions &options, const QString &) {
        options.*member = true;
        return QString();
    };
}

Set action(RunnerOptions::Action action)
{
    return [action](RunnerOptions &options, const QString &) {
        options.action = action;
        return QString();
    };
}

template <typename Member>
Set number(Member member, const char *what)
{
    return [member, what](RunnerOptions &options, const QString &value) {
        bool isNumber = false;
        const int parsed = value.toInt(&isNumber);
        if (!isNumber || parsed < 0)
            return QStringLiteral("'%1' is not %2").arg(value, QString::fromLatin1(what));
        options.*member = static_cast<std::decay_t<decltype(options.*member)>>(parsed);
        return QString();
    };
}

[[nodiscard]] QString setSnoozeFactor(RunnerOptions &options, const QString &value)
{
    bool isNumber = false;
    options.snoozeFactor = value.toDouble(&isNumber);
    return isNumber && options.snoozeFactor >= 0
               ? QString()
               : QStringLiteral("'%1' is not a factor").arg(value);
}

[[nodiscard]] QString setReportToRepair(RunnerOptions &options, const QString &value)
{
    options.action = RunnerOptions::Action::RepairReport;
    options.reportToRepair = value;
    return {};
}

// The flag may come after them.
[[nodiscard]] QString addReportToMerge(RunnerOptions &options, const QString &value)
{
    options.action = RunnerOptions::Action::MergeReports;
    if (value == QLatin1String("--join-runs"))
        options.joinRuns = true;
    else
        options.reportsToMerge += value;
    return {};
}

// The flag comes before the program.
[[nodiscard]] QString addInspected(RunnerOptions &options, const QString &value)
{
    options.action = RunnerOptions::Action::Inspect;
    if (options.inspectedProgram.isEmpty() && value == QLatin1String("--pick"))
        options.picks = true;
    else
        options.inspectedProgram += value;
    return {};
}

[[nodiscard]] QString setRecorded(RunnerOptions &options, const QString &value)
{
    if (options.action == RunnerOptions::Action::Record)
        return QStringLiteral("one test case is recorded at a time");
    options.action = RunnerOptions::Action::Record;
    options.recordedTestCase = value;
    return {};
}

[[nodiscard]] QString setSync(RunnerOptions &options, const QString &value)
{
    static const QStringList ways{QStringLiteral("none"), QStringLiteral("snooze"),
                                  QStringLiteral("objects")};
    const int way = ways.indexOf(value);
    if (way < 0)
        return QStringLiteral("'%1' is not one of %2").arg(value, ways.join(QLatin1String(", ")));
    options.recordingSync = static_cast<EventRecorder::Synchronization>(way);
    return {};
}

[[nodiscard]] QString setKeptRuns(RunnerOptions &options, const QString &value)
{
    bool isNumber = false;
    options.keptRuns = value.toUInt(&isNumber);
    return isNumber && options.keptRuns > 0
               ? QString()
               : QStringLiteral("'%1' is not a number of runs, 1 or greater").arg(value);
}

[[nodiscard]] QString setRandom(RunnerOptions &options, const QString &value)
{
    options.isRandom = true;
    if (value.isEmpty())
        return {};
    bool isNumber = false;
    options.randomSeed = value.toUInt(&isNumber);
    return isNumber ? QString()
                    : QStringLiteral("'%1' is not a number from 0 to 4294967295").arg(value);
}

[[nodiscard]] QString addEnvVar(RunnerOptions &options, const QString &value)
{
    if (value.indexOf(QLatin1Char('=')) < 1)
        return QStringLiteral("'%1' is not of the form NAME=VALUE").arg(value);
    options.envVars += value;
    return {};
}

} // namespace

const std::vector<Option> &optionTable()
{
    using O = RunnerOptions;
    static const std::vector<Option> table{
        {"--reportgen", "KEYWORD[,PATH]", "write a report; repeatable, the console without any",
         Section::Run, Takes::Value, list(&O::reportGenerators)},
        {"--testcase", "NAME", "run this test case; repeatable, all of them without any",
         Section::Run, Takes::Value, list(&O::testCases)},
        {"--skip", "NAME", "report this test case as skipped; repeatable", Section::Run,
         Takes::Value, list(&O::skippedTestCases)},
        {"--tags", "EXPRESSION",
         "run test cases with one of these tags (smoke,@fast,~slow); all of several --tags have "
         "to hold",
         Section::Run, Takes::Value, list(&O::tags)},
        {"--settingsGroup", "NAME", "use the group NAME of suite.conf", Section::Run, Takes::Value,
         text(&O::settingsGroup)},
        {"--random", "[SEED]",
         "shuffle; the same number gives the same order, none takes a fresh one, 0 keeps the order",
         Section::Run, Takes::OptionalNumber, setRandom},
        {"--retry", "N", "run a failed test case up to N times more", Section::Run, Takes::Value,
         number(&O::retryCount, "a number of retries")},
        {"--timeout", "SECONDS",
         "end a test case that runs longer; 0 for no limit; without it TIMEOUT of suite.conf, or "
         "an "
         "hour",
         Section::Run, Takes::Value, number(&O::timeoutSeconds, "a number of seconds")},
        {"--stop-on-fail", "", "stop after the first failure", Section::Run, Takes::Nothing,
         flag(&O::stopOnFail)},
        {"--rerun-failed", "", "run just the test cases that failed in the last run", Section::Run,
         Takes::Nothing, flag(&O::rerunFailed)},
        {"--learn", "",
         "make missing verification points, and replace screenshots and tables that differ",
         Section::Run, Takes::Nothing, flag(&O::learn)},
        {"--keep-runs", "N",
         "keep the latest N runs of each suite in a web report (html), and remove older ones",
         Section::Run, Takes::Value, setKeptRuns},
        {"--coverage", "", "count what the test cases do to the elements of the application",
         Section::Run, Takes::Nothing, flag(&O::coverage)},
        {"--pause-on-failure", "",
         "after each failure of a script, leave the application as it is until a key is pressed; "
         "no "
         "time limit holds",
         Section::Run, Takes::Nothing, flag(&O::pauseOnFailure)},
        {"--resultdir", "DIRECTORY", "copy attachments there, unless a report has such a directory",
         Section::Run, Takes::Value, text(&O::resultDir)},
        {"--snoozeFactor", "FACTOR", "stretch the pauses of scripts", Section::Run, Takes::Value,
         setSnoozeFactor},
        {"--envvar", "NAME=VALUE", "set a variable for the scripts; repeatable",
         Section::Environment, Takes::Value, addEnvVar},
        {"--envvars", "FILE", "the same, with one NAME=VALUE a line", Section::Environment,
         Takes::Value, text(&O::envVarFile)},
        {"--aut", "COMMAND...", "the application to test; takes all up to --scriptargs",
         Section::Environment, Takes::Application, list(&O::aut)},
        {"--cwd", "DIRECTORY",
         "the working directory of the application; @app for that of the program",
         Section::Environment, Takes::Value, text(&O::cwd)},
        {"--applauncher", "PROGRAM",
         "start applications by this program, which gets their commands", Section::Environment,
         Takes::Value, text(&O::applicationLauncher)},
        {"--launcherargs", "ARGUMENTS", "its own arguments, which come first", Section::Environment,
         Takes::Value, text(&O::launcherArguments)},
        {"--hook-subprocesses", "", "processes that the application starts can be tested, too",
         Section::Environment, Takes::Nothing, flag(&O::hookSubProcesses)},
        {"--use-whitelist", "", "only programs in whitelist.txt of the suite can be tested",
         Section::Environment, Takes::Nothing, flag(&O::useWhiteList)},
        {"--scriptargs", "ARGUMENTS...", "takes all that follows; scripts read it",
         Section::Environment, Takes::Rest, list(&O::scriptArguments)},
        {"--list", "", "print the test cases in the order of a run", Section::Information,
         Takes::Nothing, action(O::Action::List)},
        {"--repair-report", "DIRECTORY",
         "close a web report (html) that a killed run has left open", Section::Information,
         Takes::Value, setReportToRepair},
        {"--merge-reports", "TARGET REPORT...",
         "make the web report TARGET of the runs of others, which stay as they are",
         Section::Information, Takes::Rest, addReportToMerge},
        {"--join-runs", "", "with it: make one run of those of one suite name and start",
         Section::Information, Takes::Nothing, flag(&O::joinRuns)},
        {"--migrate-names", "",
         "add the names of the suite's object map (OBJECTMAP) to its names.js",
         Section::Information, Takes::Nothing, action(O::Action::MigrateNames)},
        {"--inspect", "PROGRAM [ARG...]",
         "start a program and print its objects with names that find takes; with --pick before "
         "PROGRAM the name and properties of what is clicked on, until it ends",
         Section::Information, Takes::Rest, addInspected},
        {"--record", "TEST_CASE SUITE [PROGRAM [ARG...]]",
         "record a test case: start the application of the suite, or the program, and write what "
         "you do with it as a script; it ends with the application, or with Ctrl+C",
         Section::Recording, Takes::Value, setRecorded},
        {"--sync", "HOW",
         "how the recorded script waits: for objects (the default), by snooze, or none",
         Section::Recording, Takes::Value, setSync},
        {"--finish", "", "make the test case of a recording that was not finished",
         Section::Recording, Takes::Nothing, flag(&O::finishesRecording)},
        {"--help", "", "print this text", Section::Information, Takes::Nothing,
         action(O::Action::Help)},
        {"--version", "", "print the version", Section::Information, Takes::Nothing,
         action(O::Action::Version)},
        {"--host", "", "", Section::Child, Takes::Value, text(&O::host)},
        {"--port", "", "", Section::Child, Takes::Value, number(&O::port, "a port")},
        {"--wrapper", "", "", Section::Child, Takes::Value, list(&O::wrappers)},
        {"--objectmap", "", "", Section::Child, Takes::Value, text(&O::objectMap)},
        {"--interactive", "", "", Section::Child, Takes::Nothing, flag(&O::isInteractive)},
        {"--enable-video-capture", "", "", Section::Child, Takes::Nothing,
         flag(&O::isVideoCaptureEnabled)},
        {"--suiteVersion", "", "", Section::Child, Takes::Value,
         number(&O::suiteVersion, "a version")},
    };
    return table;
}

} // namespace Morvex
