#include "runner/commandline.h"

#include "test/testreportgeneratorfactory.h"

#include <gtest/gtest.h>

using namespace Morvex;

namespace {

RunnerOptions parse(const QStringList &arguments)
{
    const CommandLine line = parseCommandLine(arguments);
    EXPECT_EQ(line.error, "") << arguments.join(' ').toStdString();
    return line.options;
}

} // namespace

TEST(CommandLineTest, ValuesFollowTheirOptionOrAnEqualsSign)
{
    const RunnerOptions options =
        parse({"--testcase", "a", "suite", "--testcase=b", "--tags=x,y", "--tags", "~z", "--retry",
               "3", "--timeout=7", "--reportgen", "xml3,/a,b=c", "--envvar", "A=1=2",
               "--stop-on-fail", "--resultdir", "r"});
    EXPECT_EQ(options.suiteDirectory, "suite");
    EXPECT_EQ(options.testCases, (QStringList{"a", "b"}));
    EXPECT_EQ(options.tags, (QStringList{"x,y", "~z"}));
    EXPECT_EQ(options.retryCount, 3U);
    EXPECT_EQ(options.timeoutSeconds, 7U);
    EXPECT_EQ(options.reportGenerators, QStringList("xml3,/a,b=c"));
    EXPECT_EQ(options.envVars, QStringList("A=1=2"));
    EXPECT_TRUE(options.stopOnFail);
}

TEST(CommandLineTest, ARandomNumberIsTakenOnlyIfItIsAllDigits)
{
    const std::tuple<QStringList, std::optional<unsigned int>, const char *> rows[] = {
        {{"--random", "17", "s"}, 17U, "s"}, {{"--random", "s"}, {}, "s"},
        {{"--random", "1x"}, {}, "1x"},      {{"s", "--random"}, {}, "s"},
        {{"--random=0", "s"}, 0U, "s"},      {{"--random", "4294967295", "s"}, 4294967295U, "s"},
    };
    for (const auto &[arguments, randomSeed, suite] : rows) {
        const RunnerOptions options = parse(arguments);
        EXPECT_TRUE(options.isRandom);
        EXPECT_EQ(options.randomSeed, randomSeed);
        EXPECT_EQ(options.suiteDirectory, suite);
    }
}

TEST(CommandLineTest, TheApplicationEndsAtTheScriptArgumentsAndTheseTakeAll)
{
    const RunnerOptions options = parse({"--testcase", "a", "--aut", "app", "-x", "--tags",
                                         "--scriptargs", "1", "--aut", "--help"});
    EXPECT_EQ(options.aut, (QStringList{"app", "-x", "--tags"}));
    EXPECT_EQ(options.scriptArguments, (QStringList{"1", "--aut", "--help"}));
    EXPECT_EQ(options.action, RunnerOptions::Action::Run);
}

TEST(CommandLineTest, EverythingThatTheLibraryPassesToAChildIsAccepted)
{
    const RunnerOptions options = parse(
        QString("--host h --port 1 --settingsGroup g --testcase t --reportgen raw,/x --wrapper Qt "
                "--envvars f --envvar A= --objectmap o --cwd c --hook-subprocesses --use-whitelist "
                "--interactive --snoozeFactor 0.5 --enable-video-capture --resultdir r "
                "--applauncher l --suiteVersion 3 --launcherargs \"-a\" --tags=t --retry 1")
            .split(' '));
    EXPECT_EQ(options.port, 1);
    EXPECT_EQ(options.launcherArguments, "\"-a\"");
    EXPECT_TRUE(options.suiteDirectory.isEmpty());
}

TEST(CommandLineTest, ErrorsNameWhatWasWrong)
{
    const std::pair<QStringList, const char *> rows[] = {
        {{"--bogus"}, "unknown option '--bogus'"},
        {{"--testcase"}, "--testcase needs a value"},
        {{"--inspect"}, "--inspect needs a value"},
        {{"--finish", "s"}, "--finish needs --record"},
        {{"--retry", "1", "--record", "tst_a", "s"}, "--record takes no --retry"},
        {{"--record", "tst_a", "s", "--list"},
         "--record goes with nothing else that is to be done"},
        {{"--stop-on-fail=1"}, "--stop-on-fail takes no value"},
        {{"--retry", "many"}, "--retry: 'many' is not a number of retries"},
        {{"--retry", "-1"}, "--retry: '-1' is not a number of retries"},
        {{"--timeout", "1.5"}, "--timeout: '1.5' is not a number of seconds"},
        {{"--random", "4294967296"}, "--random: '4294967296' is not a number from 0 to 4294967295"},
        {{"--snoozeFactor", "-0.1"}, "--snoozeFactor: '-0.1' is not a factor"},
        {{"--envvar", "=x"}, "--envvar: '=x' is not of the form NAME=VALUE"},
        {{"a", "b?token=S"}, "more than one suite directory: 'b'"},
        {{""}, "the suite directory must not be empty"},
    };
    for (const auto &[arguments, error] : rows)
        EXPECT_EQ(parseCommandLine(arguments).error, error);
    for (const char *option : {"--retry", "--timeout", "--snoozeFactor"})
        EXPECT_EQ(parseCommandLine({option, "0", "s"}).error, QString()) << option;
    EXPECT_EQ(parse({"--", "--odd-name"}).suiteDirectory, "--odd-name");
}

TEST(CommandLineTest, TheHelpNamesEveryReportAndFitsATerminal)
{
    const QString help = helpText();
    for (const auto &keyword : TestReportGeneratorFactory::keywords()) {
        const bool isForUsers = !keyword.description.isEmpty();
        EXPECT_EQ(help.contains("\n  " + keyword.name + " "), isForUsers) << keyword.name.data();
    }
    for (const QString &line : help.split('\n'))
        EXPECT_LE(line.size(), 80) << line.toStdString();
}
