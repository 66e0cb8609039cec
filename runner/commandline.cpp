#include "runner/commandline.h"

#include "runner/optiontable.h"

#include <algorithm>

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

namespace {

const Option *findOption(const QString &name)
{
    const QString wanted = name == QLatin1String("-h") ? QStringLiteral("--help") : name;
    const auto &table = optionTable();
    const auto option = std::find_if(table.begin(), table.end(), [&wanted](const Option &row) {
        return wanted == QLatin1String(row.name);
    });
    return option == table.end() ? nullptr : &*option;
}

bool isNumber(const QString &argument)
{
    return !argument.isEmpty() && std::all_of(argument.begin(), argument.end(), [](QChar digit) {
        return digit >= QLatin1Char('0') && digit <= QLatin1Char('9');
    });
}

// What says what to do needs something to do it with.
bool needsValue(const Option &option)
{
    return option.takes == Takes::Value ||
           (option.takes == Takes::Rest && option.section == Section::Information);
}

class Parser
{
public:
    explicit Parser(const QStringList &arguments)
        : m_arguments(arguments)
    {
    }

    CommandLine parse()
    {
        while (m_result.error.isEmpty() && m_next < m_arguments.size()) {
            const QString argument = m_arguments.at(m_next++);
            if (m_onlyPositional || !argument.startsWith(QLatin1Char('-')))
                takePositional(argument);
            else if (argument == QLatin1String("--"))
                m_onlyPositional = true;
            else
                takeOption(argument);
        }
        return m_result;
    }

private:
    void takePositional(const QString &argument)
    {
        if (argument.isEmpty())
            m_result.error = QStringLiteral("the suite directory must not be empty");
        else if (m_result.options.suiteDirectory.isEmpty())
            m_result.options.suiteDirectory = argument;
        else if (m_result.options.action == RunnerOptions::Action::Record)
            takeProgram();
        else
            // A report whose value was split at a space may hold a token.
            m_result.error = QStringLiteral("more than one suite directory: '%1'")
                                 .arg(argument.section(QLatin1Char('?'), 0, 0));
    }

    // From the argument before on.
    void takeProgram()
    {
        m_result.options.recordedProgram = m_arguments.mid(m_next - 1);
        m_next = m_arguments.size();
    }

    void takeOption(const QString &argument)
    {
        const int equals = argument.indexOf(QLatin1Char('='));
        const QString name = argument.left(equals);
        const Option *option = findOption(name);
        if (!option) {
            m_result.error = QStringLiteral("unknown option '%1'").arg(name);
            return;
        }
        if (equals < 0 && m_next == m_arguments.size() && needsValue(*option))
            m_result.error = name + QStringLiteral(" needs a value");
        else if (equals < 0)
            takeArguments(*option);
        else if (option->takes == Takes::Nothing)
            m_result.error = name + QStringLiteral(" takes no value");
        else
            takeFirst(*option, argument.mid(equals + 1));
    }

    void takeFirst(const Option &option, const QString &value)
    {
        set(option, value);
        if (option.takes == Takes::Application || option.takes == Takes::Rest)
            takeArguments(option);
    }

    void takeArguments(const Option &option)
    {
        switch (option.takes) {
        case Takes::Nothing:
            set(option, QString());
            break;
        case Takes::Value:
            set(option, m_arguments.at(m_next++));
            break;
        case Takes::OptionalNumber:
            set(option, m_next < m_arguments.size() && isNumber(m_arguments.at(m_next))
                            ? m_arguments.at(m_next++)
                            : QString());
            break;
        case Takes::Application:
            while (m_next < m_arguments.size() &&
                   m_arguments.at(m_next) != QLatin1String("--scriptargs"))
                set(option, m_arguments.at(m_next++));
            break;
        case Takes::Rest:
            while (m_next < m_arguments.size())
                set(option, m_arguments.at(m_next++));
            break;
        }
    }

    void set(const Option &option, const QString &value)
    {
        const QString error = option.set(m_result.options, value);
        if (!error.isEmpty())
            m_result.error = QString::fromLatin1(option.name) + QLatin1String(": ") + error;
    }

    const QStringList &m_arguments;
    int m_next = 0;
    bool m_onlyPositional = false;
    CommandLine m_result;
};

} // namespace

CommandLine parseCommandLine(const QStringList &arguments)
{
    return Parser(arguments).parse();
}

} // namespace Morvex
