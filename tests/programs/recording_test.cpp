#include "programs/recordingfixture.h"
#include "support/files.h"

#include <QRegularExpression>
#include <QStandardPaths>

#include <csignal>

using namespace MorvexTest;

namespace {

const QStringList program{MORVEX_RECORDED_PROGRAM};

// What a user does, with some that is nothing a script would repeat.
const char inventorySession[] =
    "at 268 313\n at 268 250\n type Screws\n key Tab\n type 12\n at 268 313\n at 268 250\n"
    "type Pins & <clips>\n key Tab\n key Up\n key Up\n key Up\n key Down\n key alt+a\n"
    "at 281 62\n at 281 79\n at 281 62\n at 38 130\n key alt+s\n key Return\n"
    "at 510 277\n at 510 277\n at 510 287\n at 268 250\n type hello world\n key Home\n type X\n"
    "key End\n type Y\n key ctrl+a\n key BackSpace\n at 38 69 --repeat 2 --delay 10 1\n"
    "key ctrl+a\n type Big bolts\n key Return\n at 38 100\n at 78 43\n at 268 250\n type Rivets\n"
    "key Tab\n type 7\n at 268 313\n at 268 380\n key alt+s\n key Down Return\n sleep 1\n";

// Buttons that are used by keys are down for a while, which users wait for.
const char calculatorSession[] =
    "at 231 148\n at 41 149\n at 179 164\n at 87 149\n at 179 227\n type *3\n key Return\n sleep "
    "1\n"
    "type +4.5\n key Return\n sleep 1\n at 179 117\n at 64 241\n at 133 241\n at 41 210\n"
    "at 87 210\n at 179 227\n at 133 117\n at 87 210\n at 179 227\n at 231 241\n type +(7-2)*3\n"
    "key Return\n sleep 1\n key alt+s popup\n key Escape\n at 179 117\n at 41 210\n at 133 241\n"
    "at 87 179\n at 179 227\n at 87 117\n at 41 210\n at 64 241\n at 179 227\n key ctrl+c\n";

const char editorSession[] =
    "type Hello world\n key Return\n type second <line> & more\n key Return\n type third\n"
    "at 26 105\n type ZZ\n key ctrl+z\n key ctrl+a\n key ctrl+c\n key Right\n key ctrl+v\n"
    "key ctrl+Home\n key shift+End\n key ctrl+x\n key ctrl+End\n type last\n key BackSpace\n"
    "key BackSpace\n at 237 42\n at 250 459\n type second\n key Return\n key ctrl+n\n"
    "type other tab\n at 50 79\n key ctrl+End\n type 4\n key ctrl+z\n key ctrl+shift+z\n key Home\n"
    "key Delete\n key End\n type five\n key Left\n key BackSpace\n"
    "key ctrl+s\n window Save as\n key ctrl+a\n type saved.txt\n key Return\n window featherpad\n";

// What the application holds at the end of a script.
const char tableEnd[] = "var rows = [];\n"
                        "for (let row = 0; row < find(names.articles).get('rowCount'); ++row)\n"
                        "    rows.push([0, 1].map(column => find(names.articles).item(row, column)"
                        ".text()).join(' '));\n"
                        "log.info(rows.join(', '));\n";
const char copyEnd[] = "application.start('inventory');\n"
                       "find({name: 'name'}).type('<Ctrl+V>');\n"
                       "log.info(find({name: 'name'}).get('text'));\n";
const char textEnd[] = "log.info(JSON.stringify(find({type: 'FeatherPad::TextEdit', visible: true})"
                       ".get('plainText')));\n";

} // namespace

class RecordingTest : public RecordingFixture
{
protected:
    void useApplication(const QByteArray &name)
    {
        runner.addFile("suite.conf", "VERSION = 3\nAUT = " + name + "\n");
    }

    // As it was, with another look, with another size; each time to the same end.
    void expectReplays(const QString &application, const QByteArray &end,
                       const QByteArray &expectedEnd)
    {
        EXPECT_FALSE(QString(script()).contains(
            QRegularExpression("snooze|(lick|drag)\\([0-9]+, [0-9]+|[{ ][xy]: ")))
            << script().constData();
        runner.addTestCase("tst_recorded", script() + end);
        for (const QStringList &options : {QStringList(), QStringList{"-style", "windows"},
                                           QStringList{"-qwindowgeometry", "640x500"}}) {
            const QStringList aut =
                options.isEmpty() ? options : QStringList{"--aut", application} + options;
            output = runner.run(QStringList{runner.suitePath()} + aut);
            EXPECT_EQ(output.status, 0) << options.join(' ').toStdString() << "\n"
                                        << output.standardOutput.constData()
                                        << output.standardError.constData() << script().constData();
            EXPECT_TRUE(RunnerProcess::resultsOf(output).contains("LOG " + expectedEnd + "|"))
                << output.standardOutput.constData() << script().constData();
        }
    }

    // Of what the point is of, by something else than the user.
    void expectRedByLabel(const QByteArray &point)
    {
        QString changed = script();
        changed.replace(
            QRegularExpression("(?=check\\.point\\(\"" + point + "\", .object: ([^,]*))"),
            "snooze(1); find(\\1).set('text', 'other');\n");
        runner.addTestCase("tst_recorded", changed.toUtf8());
        output = runner.runSuite({});
        EXPECT_EQ(RunnerProcess::resultsOf(output).filter("FAIL ").size(), 1)
            << output.standardOutput.constData() << script().constData();
    }

    // With a program that others wrote and the label of its that a check is of.
    void expectSessionRunsAgain(const QByteArray &program, const QByteArray &session,
                                const QByteArray &label, const QByteArray &end,
                                const QByteArray &expectedEnd)
    {
        if (QStandardPaths::findExecutable(program).isEmpty()) {
            EXPECT_TRUE(qEnvironmentVariableIsEmpty("CI")) << program.constData();
            return;
        }
        useApplication(program);
        record({}, {}, program);
        act(session);
        act("hover " + label + "\n key ctrl+alt+shift+v popup\n key Down Return\n");
        waitFor("properties_1");
        interrupt();
        expectReplays(program, end, expectedEnd);
        expectRedByLabel("properties_1");
    }

    // The user gives this answer in a terminal.
    int statusAfter(const QByteArray &answer)
    {
        QProcess terminal;
        terminal.setProcessEnvironment(runner.environment);
        terminal.start("script",
                       {"-qec",
                        RunnerProcess::program() + " --record tst_recorded " + runner.suitePath(),
                        "/dev/null"});
        terminal.write(answer);
        terminal.closeWriteChannel();
        EXPECT_TRUE(terminal.waitForFinished());
        EXPECT_TRUE(terminal.readAllStandardOutput().contains("[y/n]"));
        return terminal.exitCode();
    }

    void expectRefusal(const QStringList &options, const QByteArray &reason)
    {
        output = runner.run(options + QStringList{"--record", "tst_recorded", runner.suitePath()} +
                            program);
        EXPECT_EQ(output.status, 2);
        EXPECT_TRUE(output.standardError.contains(reason)) << output.standardError.constData();
        EXPECT_EQ(output.standardError.count('\n'), 1) << output.standardError.constData();
    }
};

TEST_F(RecordingTest, EachKindOfWidgetIsUsedInWordsOfScripts)
{
    record({"--hook-subprocesses"}, program, "^Recorded$");
    act("at 60 25 popup\n key Down Down Return\n at 60 235\n at 200 25\n type zq<zq\n key Return\n"
        "at 20 64\n at 90 64\n at 262 62\n at 250 100\n type a<b\n key Return\n type c\n"
        "key ctrl+a\n key ctrl+x\n at 100 160\n at 145 160\n key alt+o\n at 60 195 popup 3\n key "
        "Escape\n"
        "at 300 180\n at 60 195 popup 3\n key Down Return\n at 380 250\n at 60 "
        "195\n");
    actUntil("at 60 235", "name='later'");
    act("at 180 235\n window ^Other$\n");
    waitFor("\"context\":2");
    act("at 50 25\n window ^Recorded$\n at 60 195\n");
    EXPECT_FALSE(journal().contains("\"z\"")) << journal().constData();
    act("at 300 230 --repeat 2 --delay 10 1\n");
    const QByteArray expected =
        "// Passwords are not recorded: run this with --envvar PASSWORD=...\n"
        "application.start(\"" MORVEX_RECORDED_PROGRAM "\");\n"
        "var ctx_0 = currentApplicationContext();\n"
        "find(names.size).item(\"Large\").click();\n"
        "find(names.secret).typePassword(\"PASSWORD\");\n"
        "find(names.secret).type(\"<Return>\");\n"
        "find(names.colours).item(\"Red\").check();\n"
        "find(names.colours).item(\"Red\").click();\n"
        "find(names.pages).item(\"Two\").click();\n"
        "find(names.qTextEdit).type(\"a<<b<Return>c<Ctrl+A><Ctrl+X>\");\n"
        "find(names.level).set(\"value\", 10);\n"
        "find(names.on).click();\n"
        "find(names.on).click();\n"
        "find(names.more).rightClick();\n"
        "find(names.qMenu).type(\"<Esc>\");\n"
        "find(names.canvas).click(50, 30);\n"
        "find(names.more).rightClick();\n"
        "find(names.qMenu).item(\"Less\").click();\n"
        "find(names.more).click();\n"
        "find(names.later).waitFor(\"enabled\", true);\n"
        "find(names.later).click();\n"
        "find(names.second).click();\n"
        "var ctx_1 = waitForApplicationLaunch();\n"
        "find(names.quit).click();\n"
        "setApplicationContext(ctx_0);\n"
        "find(names.more).click();\n"
        "find(names.ends).item(\"Crash\").doubleClick();\n";
    EXPECT_EQ(finish(), expected);
    EXPECT_TRUE(recorderErrors.contains("crashed by signal 6")) << recorderErrors.constData();
    output = runner.runSuite({"--hook-subprocesses"});
    EXPECT_TRUE(output.standardOutput.contains("--envvar PASSWORD="))
        << output.standardOutput.constData();
    output = runner.runSuite({"--hook-subprocesses", "--envvar", "PASSWORD=se<cr>et"});
    EXPECT_TRUE(output.standardOutput.contains("/script.js:27: The application has crashed"))
        << output.standardOutput.constData();
}

TEST_F(RecordingTest, WhatIsDraggedOrPastedByTheMouseIsSoAgain)
{
    record({}, program + QStringList("drags"), "^Recorded$");
    act("drag 40 20 280 80\n drag 40 20 280 18\n drag 14 122 60 122\n drag 30 122 170 162\n"
        "at 30 122\n key Home\n key shift+End\n at 30 162 2\n at 340 122\n");
    waitFor("\"close\"");
    const QByteArray recorded = interrupt();
    EXPECT_TRUE(recorded.contains("item(\"apple\").drag(find(names.right));\n")) << recorded.data();
    EXPECT_TRUE(recorded.contains("find(names.inner).close();\n")) << recorded.data();
    EXPECT_EQ(recorded.count("<Ctrl+X>") + recorded.count("<Ctrl+V>"), 2) << recorded.data();
    runner.addTestCase("tst_recorded", recorded + R"(
        var texts = ["first", "second"].map(name => find({name: name}).get("plainText"));
        var items = [0, 1, 2].map(row => find(names.right).item(row, 0).text());
        check.equal(items.join(), "pear,one,apple");
        check.that(texts[0].length < "alpha beta gamma".length, texts.join());
        check.equal(texts[1].length, "alpha beta gammaalpha beta gamma".length, texts.join());
        check.that(texts[1].includes(texts[0]), texts.join());
        check.equal(find({name: "closed"}).get("text"), "closed");
    )");
    output = runner.runSuite({});
    EXPECT_EQ(output.status, 0) << output.standardOutput.constData();
}

TEST_F(RecordingTest, ASessionWithTheInventoryRunsAgainAndItsChecksTurnRed)
{
    useApplication("inventory");
    record({}, {}, "^Inventory$");
    act(inventorySession);
    const struct
    {
        const char *place;
        const char *keys;
    } points[] = {{"100 160", "Down"},
                  {"100 160", "Down Down"},
                  {"100 370", "Down Down"},
                  {"100 370", "Down Down Down"},
                  {"30 421", "Down"}};
    for (const auto &point : points)
        act(QByteArray("hover ") + point.place + "\n key ctrl+alt+shift+v popup\n key " +
            point.keys + " Return\n");
    waitFor("properties_2");
    interrupt();
    expectReplays("inventory", tableEnd,
                  "Big bolts 40, Nuts 35, Screws 12, Pins & <clips> 2, Rivets 7");
    for (const char *point : {"properties_1", "table_1", "picture_1", "look_1", "properties_2"})
        EXPECT_TRUE(output.standardOutput.contains(point)) << point;
    expectRedByLabel("properties_2");
}

TEST_F(RecordingTest, ASessionWithACalculatorRunsAgain)
{
    expectSessionRunsAgain("kcalc", calculatorSession, "41 149", copyEnd, "-8.526");
}

TEST_F(RecordingTest, ASessionWithAnEditorRunsAgain)
{
    expectSessionRunsAgain("featherpad", editorSession, "632 459", textEnd,
                           "\"\\\\nsecond <line> & more\\\\nthirdHello world\\\\nsecond <line> & "
                           "more\\\\nthirdla\\\\n\"");
}

TEST_F(RecordingTest, WhatAKilledRecorderHasSeenIsNotLost)
{
    record({}, program, "^Recorded$");
    act("at 145 160\n");
    waitFor("name='on'");
    expectRefusal({}, "is being recorded by another process");
    expectRefusal({"--finish"}, "is being recorded by another process");
    ::kill(static_cast<pid_t>(recorder.processId()), SIGKILL);
    recorder.waitForFinished();
    expectRefusal({}, "--finish");
    EXPECT_EQ(statusAfter("n\n"), 2);
    EXPECT_EQ(statusAfter("y\n"), 0);
    EXPECT_TRUE(script().endsWith(");\nfind(names.on).click();\n")) << script().constData();
    expectRefusal({}, "already exists");
    removeRecorded();
    expectRefusal({"--finish"}, "there is no recording");
    recorder.start(RunnerProcess::program(),
                   {"--record", "tst_recorded", runner.suitePath(), "sleep", "60"});
    waitFor("sleep");
    ::kill(static_cast<pid_t>(recorder.processId()), SIGINT);
    recorder.waitForFinished();
    EXPECT_EQ(recorder.exitCode(), 2);
    EXPECT_EQ(journal(), QByteArray());
    runner.environment.insert("DISPLAY", ":4242");
    expectRefusal({}, "':4242' can't be connected to");
    runner.environment.remove("DISPLAY");
    expectRefusal({}, "a display is needed");
}
