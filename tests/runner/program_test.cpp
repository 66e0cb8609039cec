#include "support/scriptfixture.h"
#include "support/test.h"

#include <QElapsedTimer>
#include <QProcess>
#include <QThread>

#include <csignal>

using namespace MorvexTest;

namespace {

const char startAwkward[] = "application.start('" MORVEX_AWKWARD_PROGRAM "'); ";

bool isThere(const QByteArray &process)
{
    return ::kill(process.trimmed().toInt(), 0) == 0;
}

} // namespace

class ProgramTest : public ScriptFixture
{
};

TEST_F(ProgramTest, ADialogThatKeepsItsProgramBusyDoesNotKeepTheScript)
{
    EXPECT_EQ(results(QByteArray(startAwkward) + "find('exec').click();\n"
                                                 "log.info(find('dialog').get('visible'));\n"
                                                 "find('close').click(); find('print').click();\n"
                                                 "log.info(find('dialog', 0).exists());"),
              (QStringList{"LOG true|", "LOG false|"}));
}

TEST_F(ProgramTest, ACrashIsAnErrorOfItsCallAndTheScriptMayStartAgain)
{
    const QString crash = "the application has crashed by signal 11 (Segmentation fault)";
    const QStringList lines = results(
        QByteArray(startAwkward) +
            "var window = find('awkward');\n"
            "try { find('crash').click(); } catch (error) { log.info(error.message); }\n"
            "try { window.get('level'); } catch (error) { log.info(error.message); }\n"
            // Nothing says whether it is there.
            "try { window.exists(); } catch (error) { log.info(error.message); }\n"
            "try { find('dialog', 0).exists(); } catch (error) { log.info(error.message); }\n" +
            startAwkward +
            "log.info(find('awkward').get('level'), window.exists());\n"
            "\nfind('crash').click();",
        {"--coverage"});
    ASSERT_EQ(lines.size(), 9);
    EXPECT_EQ(lines[0], "LOG crash: " + crash + "|");
    EXPECT_EQ(lines[1], "LOG awkward: " + crash + "|");
    EXPECT_EQ(lines[2], lines[1]);
    EXPECT_EQ(lines[3], "LOG " + crash + "|");
    EXPECT_TRUE(lines[4].startsWith("WARNING The application has crashed"));
    EXPECT_EQ(lines[5], "LOG 0|false");
    EXPECT_TRUE(lines[6].startsWith("FATAL The application has crashed by signal 11 (Segmentation "
                                    "fault)|Error: crash: " +
                                    crash))
        << lines[6].toStdString();
    for (int i : {7, 8})
        EXPECT_EQ(lines[i], "WARNING UI coverage is not complete|" + crash);
}

TEST_F(ProgramTest, WhatWasUsedCountsWhenTheProgramEndsByItself)
{
    const QString dir = runner.suitePath() + "/results";
    for (const QByteArray end : {"", "snooze(1); ", "find('quit', 0); ", "application.stop(); "}) {
        const QStringList lines = results(QByteArray(startAwkward) +
                                              "find('print').click(); find('quit').click(); " + end,
                                          {"--coverage", "--resultdir", dir});
        for (const char *wrong : {"UI coverage is not", "caught this"})
            EXPECT_FALSE(lines.join('\n').contains(wrong)) << lines.join('\n').toStdString();
        EXPECT_TRUE(output.standardError.contains(" % (2 of ")) << output.standardError.constData();
    }
    // A process that executes its program again is another one.
    results(QByteArray(startAwkward) + "try { find('restart').click(); } catch (error) {}\n"
                                       "find('print').click();",
            {"--coverage"});
    EXPECT_TRUE(output.standardError.contains(" % (1 of ")) << output.standardError.constData();
}

TEST_F(ProgramTest, AScriptDoesNotGoOnWithinACallThatWaits)
{
    EXPECT_EQ(results(QByteArray(startAwkward) +
                      "Promise.resolve().then(function () {\n"
                      "    find('awkward'); application.stop(); log.info('stopped'); });\n"
                      "log.info(find('nothing', 300).exists());"),
              (QStringList{"LOG false|", "LOG stopped|"}));
}

TEST_F(ProgramTest, AProgramHasAHomeOfItsOwnUnlessTheRunSaysOtherwise)
{
    const QByteArray script = "application.start('/bin/sh', '-c', 'echo $HOME $XDG_RUNTIME_DIR '\n"
                              "    + '$XDG_CONFIG_HOME > homes; touch $HOME/here; exec '\n"
                              "    + '" MORVEX_INVENTORY_PROGRAM "');\n"
                              "var homes = file.read('homes').trim().split(' ');\n"
                              "log.info(homes.map(function (path) {\n"
                              "    return path.replace(/.*morvex-[^/]*/, '*'); }), homes[0]);\n";
    const QString home = QFileInfo(runner.suitePath()).path();
    runner.environment.insert("XDG_CONFIG_HOME", "/of/the/user");
    const QStringList lines = results(script);
    ASSERT_EQ(lines.size(), 1);
    EXPECT_TRUE(lines[0].startsWith("LOG [\"*/home\",\"*/run\"]|")) << lines[0].toStdString();
    EXPECT_FALSE(QFile::exists(lines[0].section('|', 1) + "/here"));
    EXPECT_EQ(results(script, {"--envvar", "HOME=" + home}),
              QStringList("LOG [\"" + home + "\",\"*/run\"]|" + home));
    EXPECT_TRUE(QFile::exists(home + "/here"));
}

TEST_F(ProgramTest, NothingOutlivesATestCaseHoweverItEnds)
{
    const QDir dir(QFileInfo(runner.suitePath()).path());
    const QString processes = runner.suitePath() + "/processes";
    QDir().mkpath(dir.filePath("tmp"));
    runner.environment.insert("TMPDIR", dir.filePath("tmp"));
    runner.addTestCase("tst_s",
                       QByteArray(startAwkward) +
                           "find('leave').click();\n"
                           "file.write('processes', String(find('awkward').get('child')));\n"
                           "find('exec').click(); snooze(60);");
    runner.addFile("processes", "");
    for (const int signal : {SIGKILL, SIGINT}) {
        writeFile(processes, "");
        QProcess process;
        process.setProcessEnvironment(runner.environment);
        process.start(RunnerProcess::program(), {runner.suitePath()});
        QElapsedTimer timer;
        timer.start();
        while (readFile(processes).isEmpty() && timer.elapsed() < 60000)
            process.waitForFinished(20);
        const QByteArray child = readFile(processes);
        ASSERT_TRUE(isThere(child));
        ::kill(static_cast<pid_t>(process.processId()), signal);
        process.waitForFinished(60000);
        timer.start();
        while ((isThere(child) || !QDir(dir.filePath("tmp")).entryList({"morvex-*"}).isEmpty()) &&
               timer.elapsed() < 30000)
            QThread::msleep(10);
        EXPECT_FALSE(isThere(child));
        EXPECT_EQ(QDir(dir.filePath("tmp")).entryList({"morvex-*"}), QStringList());
    }
}

TEST_F(ProgramTest, APauseOnFailureKeepsTheApplicationUntilAKeyIsPressed)
{
    const QString program = RunnerProcess::program();
    QProcess process;
    process.setProcessEnvironment(runner.environment);
    process.start("setsid", {"--wait", program, "--pause-on-failure", runner.suitePath()});
    process.waitForFinished();
    EXPECT_EQ(process.exitCode(), 2);
    EXPECT_TRUE(process.readAllStandardError().contains("--pause-on-failure needs a terminal"));

    runner.addTestCase("tst_s",
                       "check.fail('without an application'); " + QByteArray(startAwkward) +
                           "find('leave').click();\n"
                           "file.write('processes', String(find('awkward').get('child')));\n"
                           "check.pass('p'); check.fail('f'); throw 'thrown';");
    runner.addFile("processes", "");
    // A terminal of its own.
    process.start("script",
                  {"-qec", program + " --pause-on-failure " + runner.suitePath(), "/dev/null"});
    QByteArray shown;
    for (const char *last : {"FAIL", "ERROR"}) {
        while (!(shown.contains("press a key to go on") && shown.contains(last)) &&
               process.waitForReadyRead(60000))
            shown += process.readAll();
        EXPECT_TRUE(shown.contains(last)) << shown.constData();
        EXPECT_TRUE(isThere(readFile(runner.suitePath() + "/processes")));
        shown.clear();
        process.write("x");
    }
    ASSERT_TRUE(process.waitForFinished(60000));
    EXPECT_EQ(process.exitCode(), 1);
    shown += process.readAll();
    EXPECT_TRUE(shown.contains("1 test case, 1 failed")) << shown.constData();
    EXPECT_FALSE(shown.contains("press a key")) << shown.constData();
}

TEST_F(ProgramTest, TheObjectsOfAProgramArePrintedByNamesThatFindThem)
{
    const RunnerOutput tree = runner.run({"--inspect", "inventory"});
    EXPECT_EQ(tree.status, 0) << tree.standardError.constData();
    const QList<QByteArray> lines = tree.standardOutput.trimmed().split('\n');
    EXPECT_TRUE(tree.standardOutput.startsWith("{name='inventory' type='InventoryWindow'}\n  "));
    EXPECT_GT(lines.size(), 50);
    EXPECT_TRUE(tree.standardOutput.contains(" occurrence='2' "));
    QByteArray names;
    for (const QByteArray &line : lines)
        names += line.trimmed() + '\n';
    runner.addFile("names.txt", names);
    EXPECT_EQ(results("application.start('inventory'); var lost = [];\n"
                      "file.read('names.txt').trim().split('\\n').forEach(function (name) {\n"
                      "    if (!find(name, 0).exists()) lost.push(name); });\n"
                      "log.info(lost);"),
              QStringList("LOG []|"));
    const struct
    {
        QStringList arguments;
        QByteArray error;
    } rows[] = {
        {{"--inspect", "--pick", "inventory"}, "--pick needs a display"},
        {{"--inspect", "--pick"}, "no program was given"},
        {{"--inspect", "nothing of that name"}, "there is no program 'nothing of that name'"},
        {{"--inspect", "/bin/true"}, "before it could be tested"},
    };
    for (const auto &row : rows) {
        output = runner.run(row.arguments);
        EXPECT_EQ(output.status, 2);
        EXPECT_TRUE(output.standardError.contains(row.error)) << output.standardError.constData();
        EXPECT_EQ(output.standardError.count('\n'), 1);
    }
}
