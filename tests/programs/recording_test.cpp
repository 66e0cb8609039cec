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
    "key End\n type Y\n key ctrl+a\n key BackSpace\n at 38 69 --repeat 2 --delay 60 1\n"
    "key ctrl+a\n type Big bolts\n key Return\n at 38 100\n at 78 43\n at 268 250\n type Rivets\n"
    "key Tab\n type 7\n at 268 313\n at 268 380\n key alt+s\n key Down Return\n sleep 1\n";

const char calculatorSession[] =
    "at 41 149\n at 179 164\n at 87 149\n at 179 227\n at 231 148\n type 12*3\n key Return\n"
    "type +4.5\n key Return\n key Escape\n at 64 241\n at 41 210\n at 133 241\n at 87 210\n"
    "at 179 117\n at 133 210\n at 179 227\n at 231 148\n at 41 179\n at 87 179\n at 133 117\n"
    "at 133 179\n at 179 227\n at 231 241\n at 231 117\n type (7-2)*3\n key Return\n key ctrl+z\n"
    "key alt+s\n key Escape\n at 41 149\n at 87 117\n at 41 210\n at 64 241\n at 179 227\n"
    "at 231 148\n at 133 149\n at 179 164\n at 87 210\n at 179 227\n";

const char editorSession[] =
    "type Hello world\n key Return\n type second <line> & more\n key Return\n type third\n"
    "at 26 105\n type ZZ\n key ctrl+z\n key ctrl+a\n key ctrl+c\n key Right\n key ctrl+v\n"
    "key ctrl+Home\n key shift+End\n key ctrl+x\n key ctrl+End\n type last\n key BackSpace\n"
    "key BackSpace\n at 237 42\n at 250 459\n type second\n key Return\n key ctrl+n\n"
    "type other tab\n at 50 79\n key ctrl+End\n type 4\n key ctrl+z\n key ctrl+shift+z\n key Home\n"
    "key Delete\n key End\n type five\n key Left\n key BackSpace\n"
    "key ctrl+s\n window Save as\n key ctrl+a\n type saved.txt\n key Return\n";

} // namespace

class RecordingTest : public RecordingFixture
{
protected:
    void useApplication(const QByteArray &name)
    {
        runner.addFile("suite.conf", "VERSION = 3\nAUT = " + name + "\n");
    }

    // As it was, with another look, with another size.
    void expectReplays(const QString &application)
    {
        EXPECT_FALSE(QString(script()).contains(QRegularExpression("snooze|\\([0-9]+, [0-9]+\\);")))
            << script().constData();
        for (const QStringList &options : {QStringList(), QStringList{"-style", "windows"},
                                           QStringList{"-qwindowgeometry", "640x500"}}) {
            const QStringList aut =
                options.isEmpty() ? options : QStringList{"--aut", application} + options;
            output = runner.run(QStringList{runner.suitePath()} + aut);
            EXPECT_EQ(output.status, 0) << options.join(' ').toStdString() << "\n"
                                        << output.standardOutput.constData()
                                        << output.standardError.constData() << script().constData();
        }
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
    act("at 300 235\n");
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
        "find(names.crash).click();\n";
    EXPECT_EQ(finish(), expected);
    EXPECT_TRUE(recorderErrors.contains("crashed by signal 6")) << recorderErrors.constData();
    output = runner.runSuite({"--hook-subprocesses"});
    EXPECT_TRUE(output.standardOutput.contains("--envvar PASSWORD="))
        << output.standardOutput.constData();
    output = runner.runSuite({"--hook-subprocesses", "--envvar", "PASSWORD=se<cr>et"});
    EXPECT_TRUE(output.standardOutput.contains("/script.js:27: The application has crashed"))
        << output.standardOutput.constData();
}

TEST_F(RecordingTest, WhatIsDraggedIsDraggedAgain)
{
    record({}, program + QStringList("drags"), "^Recorded$");
    act("drag 40 20 280 80\n drag 40 20 280 18\n drag 14 122 60 122\n drag 30 122 170 162\n"
        "at 340 122\n");
    waitFor("\"close\"");
    const QByteArray recorded = interrupt();
    EXPECT_TRUE(recorded.contains("item(\"apple\").drag(find(names.right));\n")) << recorded.data();
    EXPECT_TRUE(recorded.contains("find(names.inner).close();\n")) << recorded.data();
    EXPECT_EQ(recorded.count("<Ctrl+X>") + recorded.count("<Ctrl+V>"), 2) << recorded.data();
    runner.addTestCase("tst_recorded", recorded + R"(
        var texts = ["first", "second"].map(name => find({name: name}).get("plainText"));
        var items = [0, 1, 2].map(row => find(names.right).item(row, 0).text());
        check.equal(items.join(), "pear,one,apple");
        check.equal(texts.join("").length, "alpha beta gammaalpha beta gamma".length);
        check.that(texts[0].length < texts[1].length, texts.join());
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
    expectReplays("inventory");
    for (const char *point : {"properties_1", "table_1", "picture_1", "look_1", "properties_2"})
        EXPECT_TRUE(output.standardOutput.contains(point)) << point;
    QByteArray changed = script();
    changed.replace("check.point(\"properties_2\"",
                    "snooze(1); find(names.state).set('text', 'other');\n"
                    "check.point(\"properties_2\"");
    runner.addTestCase("tst_recorded", changed);
    output = runner.runSuite({});
    EXPECT_EQ(RunnerProcess::resultsOf(output).filter("FAIL ").size(), 1)
        << output.standardOutput.constData();
}

TEST_F(RecordingTest, SessionsWithProgramsThatOthersWroteRunAgain)
{
    const struct
    {
        const char *program;
        const char *window;
        const char *session;
    } rows[] = {{"kcalc", "kcalc", calculatorSession}, {"featherpad", "featherpad", editorSession}};
    for (const auto &row : rows) {
        if (QStandardPaths::findExecutable(row.program).isEmpty()) {
            EXPECT_TRUE(qEnvironmentVariableIsEmpty("CI")) << row.program;
            continue;
        }
        removeRecorded();
        useApplication(row.program);
        record({}, {}, row.window);
        act(row.session);
        interrupt();
        expectReplays(row.program);
    }
}

TEST_F(RecordingTest, WhatAKilledRecorderHasSeenIsNotLost)
{
    record({}, program, "^Recorded$");
    act("at 145 160\n");
    waitFor("name='on'");
    expectRefusal({}, "--finish");
    expectRefusal({"--finish"}, "is being recorded by another process");
    ::kill(static_cast<pid_t>(recorder.processId()), SIGKILL);
    recorder.waitForFinished();
    expectRefusal({}, "--finish");
    output = runner.run({"--finish", "--record", "tst_recorded", runner.suitePath()});
    EXPECT_EQ(output.status, 0) << output.standardError.constData();
    EXPECT_TRUE(script().endsWith(");\nfind(names.on).click();\n")) << script().constData();
    expectRefusal({}, "exists already");
    removeRecorded();
    expectRefusal({"--finish"}, "there is no recording");
    runner.environment.remove("DISPLAY");
    expectRefusal({}, "a display is needed");
}
