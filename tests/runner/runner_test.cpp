#include "support/files.h"
#include "support/runnerfixture.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>

#include <sys/stat.h>

using namespace MorvexTest;

class RunnerTest : public RunnerFixture
{
};

TEST_F(RunnerTest, WrongUsageIsOneLineAndStatusTwo)
{
    addPassing({"tst_a"});
    const QString suite = runner.suitePath();
    const QByteArray noTestCase =
        "the suite '" + suite.toUtf8() + "' has no test case 'tst_x'; --list shows all";
    const std::pair<QStringList, QByteArray> rows[] = {
        {{}, "no suite directory was given; see morvexrunner --help"},
        {{"/no/such/suite"}, "there is no suite directory '/no/such/suite'"},
        {{"--testcase", "tst_x", suite}, noTestCase},
        {{"--skip", "tst_x", suite}, noTestCase},
        {{"--tags", "~untagged", suite},
         "--tags: ~ operator is not supported for reserved tag: untagged"},
        {{"--envvars", "/no/file", suite},
         "cannot read the environment file '/no/file': No such file or directory"},
        {{"--rerun-failed", suite},
         "--rerun-failed: no earlier run of '" + suite.toUtf8() + "' is known"},
        {{"--testcase", "tst_x"}, "there is no test case 'tst_x' in the current directory"},
        {{"--testcase", "tst_a", "--aut", "app", suite},
         "there is no test case 'tst_a' in the current directory; --aut takes all that follows, so "
         "the suite directory has to come before it"},
        {{"--migrate-names", "--aut", "app", suite},
         "--migrate-names: there is no suite directory ''; --aut takes all that follows, so the "
         "suite directory has to come before it"},
        {{"--random", "2024"},
         "no suite directory was given; --random has taken '2024' for its seed; see morvexrunner "
         "--help"},
        {{"--finish", suite}, "--finish needs --record; see morvexrunner --help"},
        {{suite, "--aut", "app", "an \"x\""},
         "--aut: an argument must not be empty or have a double quote: 'an \"x\"'"},
        {{"--testcase", "a", "--testcase", "b"},
         "without a suite directory only one --testcase can be run"},
    };
    for (const auto &[arguments, message] : rows) {
        const RunnerOutput output = runner.run(arguments);
        EXPECT_EQ(output.standardError, "morvexrunner: " + message + "\n");
        EXPECT_EQ(output.standardOutput, "");
        EXPECT_EQ(output.status, 2);
    }
}

TEST_F(RunnerTest, ASuiteThatCannotBeLoadedIsNotRun)
{
    addPassing({"tst_a"});
    runner.addFile("suite.conf", "VERSION\nAUT = x");
    const RunnerOutput broken = runner.runSuite({"--reportgen", "stdout,report.txt"});
    EXPECT_TRUE(broken.standardError.startsWith("morvexrunner: cannot load the suite '" +
                                                runner.suitePath().toUtf8() + "': "));
    EXPECT_EQ(broken.status, 2);
    EXPECT_FALSE(QFile::exists(runner.suitePath() + "/../report.txt"));
    runner.addFile("suite.conf", "");
    EXPECT_EQ(runner.runSuite({"--settingsGroup", "none"}).status, 255);
    QDir(runner.suitePath()).mkdir("config.xml");
    EXPECT_EQ(runner.runSuite({}).status, 2);
    // Tags that can't be read end a run before its end.
    QDir(runner.suitePath()).rmdir("config.xml");
    runner.addFile("tst_a/config.xml", "<x/>");
    const RunnerOutput open = runner.runSuite({"--tags", "untagged"});
    EXPECT_EQ(open.status, 2);
    EXPECT_TRUE(open.standardOutput.contains("Run aborted"));
}

TEST_F(RunnerTest, AReportThatCannotBeCreatedStopsTheRunBeforeItStarts)
{
    addPassing({"tst_a"});
    for (const char *value : {"bogus", "stdout,/no/such/dir/r"}) {
        const RunnerOutput output =
            runner.runSuite({"--reportgen", "stdout", "--reportgen", value});
        EXPECT_EQ(output.status, 1);
        EXPECT_EQ(output.standardOutput, "");
        EXPECT_EQ(output.standardError.count('\n'), 1);
        EXPECT_TRUE(output.standardError.contains(" report generator: "));
    }
}

TEST_F(RunnerTest, AListThatIsNotWholeShowsInTheStatus)
{
    if (!QFileInfo::exists("/dev/full"))
        GTEST_SKIP() << "There is no /dev/full";
    addPassing({"tst_a"});
    QProcess process;
    process.setStandardOutputFile("/dev/full");
    process.start(RunnerProcess::program(), {"--list", runner.suitePath()});
    ASSERT_TRUE(process.waitForFinished());
    EXPECT_EQ(process.exitCode(), 1);
    EXPECT_NE(process.readAllStandardError(), "");
}

TEST_F(RunnerTest, AReportThatIsNotWholeShowsInTheStatus)
{
    if (!QFileInfo::exists("/dev/full"))
        GTEST_SKIP() << "There is no /dev/full";
    addPassing({"tst_a"});
    const QTemporaryDir dir;
    for (const char *name : {"json/results.json", "xml3/results.xml", "html/data/results-v1.js"}) {
        const QString file = dir.filePath(name);
        QDir().mkpath(QFileInfo(file).path());
        QFile::link("/dev/full", file);
        const QString format = QString(name).section('/', 0, 0);
        const QStringList report{"--reportgen", format + ',' + dir.filePath(format)};
        EXPECT_EQ(runner.runSuite(report).status, 1) << name;
        EXPECT_EQ(
            runner.run(report + QStringList{"--testcase", "tst_a"}, runner.suitePath()).status, 1)
            << name;
    }
}

TEST_F(RunnerTest, AnInstallationWithoutTheLibrarySaysWhatItLacks)
{
    const QString program = runner.suitePath() + "/morvexrunner";
    ASSERT_TRUE(QFile::copy(RunnerProcess::program(), program));
    const RunnerOutput output = runBy(program, {"--list", "."});
    EXPECT_EQ(output.status, 2);
    EXPECT_TRUE(output.standardError.startsWith("morvexrunner: the library of the runner can't be"))
        << output.standardError.toStdString();
    EXPECT_TRUE(output.standardError.contains("/morvexrunner.so: cannot open"));
}

TEST_F(RunnerTest, HelpAndVersion)
{
    const RunnerOutput help = runner.run({"--help"});
    EXPECT_EQ(help.status, 0);
    EXPECT_TRUE(help.standardOutput.startsWith("Usage: morvexrunner "));
    EXPECT_EQ(help.standardError, "");
    EXPECT_TRUE(runner.run({"--version"}).standardOutput.startsWith("morvexrunner "));
}

TEST_F(RunnerTest, StandardOutputHoldsTheReportAndNothingElse)
{
    addPassing({"tst_a"});
    const RunnerOutput output = runner.runSuite({});
    EXPECT_EQ(output.status, 0);
    EXPECT_EQ(RunnerProcess::resultsOf(output),
              (QStringList{"START Start 'suite'|Test 'suite' started",
                           "START_TEST_CASE Start 'tst_a'|Test 'tst_a' started (tst_a)", "PASS p|",
                           "END_TEST_CASE End 'tst_a'|End of test 'tst_a'",
                           "END End 'suite'|End of test 'suite'"}));
    EXPECT_EQ(output.standardOutput.count("Summary:\n"), 1);
    EXPECT_EQ(output.standardOutput.count('\n'), 5 + 12);
    const RunnerOutput single = runner.run({"--testcase", "tst_a"}, runner.suitePath());
    EXPECT_EQ(RunnerProcess::resultsOf(single).value(0),
              "START Start 'tst_a'|Test 'tst_a' started");
    EXPECT_EQ(single.standardOutput.count("Summary:\n"), 1);
}

TEST_F(RunnerTest, RelativePathsAreThoseOfTheCaller)
{
    addPassing({"tst_a"});
    runner.addFile("env", "A=1\n");
    const RunnerOutput output =
        runner.run({"--reportgen", "stdout,log.txt", "--envvars", "suite/env", "suite/."});
    EXPECT_EQ(output.status, 0) << output.standardError.constData();
    EXPECT_EQ(output.standardOutput, "");
    EXPECT_TRUE(readFile(runner.suitePath() + "/../log.txt").contains("Start 'suite'"));
}

TEST_F(RunnerTest, ASuiteIsWhereTheFileSystemFindsIt)
{
    addPassing({"tst_a"});
    const QDir dir(QFileInfo(runner.suitePath()).path());
    dir.mkpath("else/where");
    QFile::link(dir.filePath("else/where"), dir.filePath("link"));
    QFile::link(runner.suitePath(), dir.filePath("else/suite"));
    writeFile(dir.filePath("else/suite2/suite.conf"), "");
    EXPECT_EQ(RunnerProcess::startsOf(runner.run({"link/../suite/."})), QStringList("tst_a"));
    EXPECT_EQ(RunnerProcess::resultsOf(runner.run({"link/../suite2"})).value(0),
              "START Start 'suite2'|Test 'suite2' started");
    EXPECT_TRUE(runner.run({"--migrate-names", "link/../suite2"})
                    .standardError.contains("else/suite2/objects.map"));
}

TEST_F(RunnerTest, NoStateOfTheCallerStopsTheRun)
{
    addPassing({"tst_a"});
    const QString pipe = runner.suitePath() + "/pipe";
    ASSERT_EQ(::mkfifo(qPrintable(pipe), 0600), 0);
    const std::pair<const char *, int> rows[] = {
        {"exec >&- 2>&- <&-; exec \"$@\"", 0},
        {"ulimit -f 0; exec \"$@\" --reportgen null --reportgen stdout,sub/log", 1},
        {"\"$@\" | true; exit ${PIPESTATUS[0]}", 1},
        {"exec python3 -c 'import os,signal,sys; "
         "signal.pthread_sigmask(signal.SIG_BLOCK, [signal.SIGCHLD]); "
         "os.execv(sys.argv[1], sys.argv[1:])' \"$@\"",
         0},
        {"exec \"$@\" --envvars pipe", 2},
        // Two reports into one file.
        {"exec \"$@\" --reportgen stdout --reportgen xml,/dev/fd/1 > log", 1},
        {"exec \"$@\" --reportgen xml,/dev/fd/1 --reportgen stdout > log", 1},
        {"mkfifo log2; cat log2 > read & exec \"$@\" --reportgen stdout,log2", 0},
        {"ln pipe names.js; exec \"$@\"", 1},
    };
    for (const auto &[command, status] : rows) {
        const QStringList arguments{"-c", command, "bash", RunnerProcess::program(),
                                    runner.suitePath()};
        EXPECT_EQ(runBy("/bin/bash", arguments).status, status) << command;
    }
}

TEST_F(RunnerTest, TheListIsInTheOrderOfARun)
{
    addPassing({"tst_a", "tst_b", "tst_c", "tst_d"});
    runner.addFile("tst_b/config.xml",
                   "<testconfig><information><summary/><description/></information><tags>"
                   "<tag>t</tag></tags></testconfig>");
    EXPECT_EQ(runner.runSuite({"--list"}).standardOutput, "tst_a\ntst_b\ntst_c\ntst_d\n");
    EXPECT_EQ(runner.runSuite({"--list", "--random", "1"}).standardOutput,
              "tst_b\ntst_c\ntst_a\ntst_d\n");
    EXPECT_EQ(runner.runSuite({"--list", "--tags", "~t"}).standardOutput, "tst_a\ntst_c\ntst_d\n");
    EXPECT_EQ(RunnerProcess::startsOf(runner.runSuite({"--random", "1"})),
              (QStringList{"tst_b", "tst_c", "tst_a", "tst_d"}));
    const RunnerOutput fresh = runner.runSuite({"--list", "--random"});
    const QByteArray number = fresh.standardError.split(' ').value(4);
    EXPECT_GT(number.toUInt(), 0U) << fresh.standardError.constData();
    EXPECT_EQ(runner.runSuite({"--list", "--random", number}).standardOutput, fresh.standardOutput);
}

TEST_F(RunnerTest, WhatTheScriptsNeedIsCheckedBeforeTheRun)
{
    addPassing({"tst_a"});
    runner.addFile("suite.conf", "ENVVARS = env");
    runner.addFile("env", "no assignment");
    const RunnerOutput output = runner.runSuite({});
    EXPECT_EQ(output.status, 2);
    EXPECT_TRUE(output.standardError.contains("/env:1: expected NAME=VALUE"));
    QFile::remove(runner.suitePath() + "/env");
    EXPECT_EQ(runner.runSuite({}).status, 0);
    EXPECT_EQ(runner.runSuite({"--resultdir", "/proc/none"}).status, 2);
}

TEST_F(RunnerTest, EntriesWithoutNumberArriveInOrderInFlatMemory)
{
    // The largest process of a run, in kilobytes, is the last line of its errors.
    const QString measure = "import resource, subprocess, sys; subprocess.call(sys.argv[1:]); "
                            "usage = resource.getrusage(resource.RUSAGE_CHILDREN); "
                            "print(usage.ru_maxrss, file=sys.stderr)";
    int peaks[2];
    for (const int count : {1000, 200000}) {
        const QByteArray number = QByteArray::number(count);
        runner.addTestCase("tst_a", "for (var i = 0; i < " + number + "; ++i) log.info(i, 'd');");
        const RunnerOutput output =
            runBy("python3", {"-c", measure, RunnerProcess::program(), runner.suitePath()});
        const auto lines = RunnerProcess::report(output);
        ASSERT_EQ(lines.size(), std::size_t(count) + 4);
        for (int i = 0; i < count; ++i)
            ASSERT_TRUE(lines[std::size_t(i) + 2].left.endsWith(QString(": %1").arg(i))) << i;
        peaks[count > 1000] = output.standardError.trimmed().split('\n').last().toInt();
    }
    ASSERT_GT(peaks[0], 0);
    // 200,000 entries of more than 100 bytes would be 20 MB. A sanitizer keeps what was freed.
    if (QByteArray(MORVEX_SANITIZE).isEmpty()) {
        EXPECT_LT(peaks[1] - peaks[0], 8000);
    }
}

TEST_F(RunnerTest, ColoursHeedTheUsersVariables)
{
    addPassing({"tst_a"});
    const auto hasColours = [this](const char *name, const char *value) {
        // A terminal of its own.
        const QString command = RunnerProcess::program() + " " + runner.suitePath();
        const QString variable = QString("%1=%2").arg(name, value);
        return runBy("env", {variable, "script", "-qec", command, "/dev/null"})
            .standardOutput.contains("\x1b[34m");
    };
    EXPECT_TRUE(hasColours("TERM", "xterm"));
    EXPECT_FALSE(hasColours("NO_COLOR", "1"));
    EXPECT_FALSE(hasColours("TERM", "dumb"));
}
