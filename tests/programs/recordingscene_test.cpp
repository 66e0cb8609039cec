#include "programs/recordingfixture.h"
#include "support/files.h"

#include <QRegularExpression>

using namespace MorvexTest;

namespace {

// What a user does, with some that is nothing a script would repeat.
const char controlsSession[] =
    // Menus by keys and by the mouse, one of them closed without a choice.
    "key alt+f\n key Down\n key Return\n at 20 12\n at 30 60\n at 20 12\n at 30 100\n sleep .3\n"
    "at 260 100\n at 20 12\n hover 80 12\n at 80 100\n"
    "at 60 12\n at 400 400\n key ctrl+k\n"
    // What is disabled, and a button that is let go elsewhere.
    "at 640 330\n hover 80 120\n mousedown 1\n hover 300 300\n mouseup 1\n"
    // Boxes, buttons and values.
    "at 400 70\n sleep .2\n key Down\n key Down\n key Return\n at 400 70\n at 400 400\n"
    "at 400 70\n sleep .2\n at 400 150\n at 620 70\n at 620 70\n"
    "at 565 70 --repeat 2 --delay 10 1\n key ctrl+a\n type 42\n key Tab\n"
    "at 80 120\n at 240 120\n at 400 120\n at 640 120\n at 200 170\n key space\n"
    // A dialog, which is closed by a press beside it.
    "at 640 280\n sleep .3\n at 80 120\n sleep .3\n at 640 280\n sleep .3\n at 290 335\n sleep .3\n"
    // A list, moved by its scroll bar and dragged.
    "at 80 210\n at 155 375\n at 80 300\n"
    "hover 80 210\n mousedown 1\n hover 80 240\n hover 80 270\n hover 80 310\n mouseup 1\n"
    "at 155 375\n at 155 375\n at 80 260\n"
    "at 220 205\n at 220 235 3\n at 220 265 --repeat 2 --delay 10 1\n at 400 300\n at 530 165\n"
    "at 640 380\n";

const char windowSession[] =
    "at 540 220\n window ^Second$\n at 40 30\n key alt+F4\n window ^Controls$\n"
    // Texts.
    "at 80 70\n type ab<c\n at 20 70\n type X\n key ctrl+a\n type Zoe\n key Tab\n type zq\n"
    "at 400 180\n type one\n key Return\n type two!\n";

const char gesturesSession[] =
    "at 50 30\n key space\n at 140 30\n type ab\n key Tab\n key ctrl+a\n type Elm\n key Return\n"
    "at 295 30\n sleep .4\n key Down\n key Return\n at 200 30 5\n"
    "hover 360 30\n mousedown 1\n sleep 1\n mouseup 1\n hover 430 30\n at 500 30\n at 570 30 5\n"
    "at 50 210\n window ^Second$\n at 50 70\n type two\n key Return\n at 50 20\n"
    "window ^Gestures$\n at 70 70\n at 660 205\n"
    "drag 520 80 570 80\n drag 530 150 640 150\n drag 233 210 190 210\n drag 323 210 350 210\n"
    "at 460 198\n at 560 212\n";

// Without what was done several times in a row.
const QByteArray expectedState = "open, last, copy, ctrl-k, Large, Medium, count 2, count 42, on "
                                 "true, fast true, best, level 1, "
                                 "two, no, yes, Fruit 1, Fruit 58, Fruit 57, Ash, Beech "
                                 "right, Oak, Oak twice, at 70 40, tap, "
                                 "late, here";

} // namespace

class RecordingSceneTest : public RecordingFixture
{
protected:
    void SetUp() override
    {
        RecordingFixture::SetUp();
        runner.environment.insert("QT_QUICK_BACKEND", "software");
    }
};

TEST_F(RecordingSceneTest, ASessionWithControlsRunsAgainInAWindowOfAnotherSize)
{
    const QByteArray program = MORVEX_RECORDED_SCENE " " MORVEX_CONTROLS_FILE;
    runner.addFile("suite.conf", "VERSION = 3\nAUT = " + program + "\n");
    record({}, {}, "^Controls$");
    act(controlsSession);
    // A click that comes too soon after another is a part of a double click, and pushes nothing.
    actUntil("sleep .5\n at 640 430", "id='late'");
    act(windowSession);
    act("hover 80 120\n key ctrl+alt+shift+v\n window ^CheckBox$\n at 10 36\n");
    waitFor("properties_1");
    EXPECT_FALSE(journal().contains("zq")) << journal().constData();
    const QByteArray recorded = interrupt();
    EXPECT_FALSE(recorded.contains("snooze"));
    EXPECT_TRUE(recorded.contains("{object: names.on, properties: [\"text\", \"checked\", "));
    // Of all objects there is one that says nothing about its parts.
    const QRegularExpression place("\\([0-9]+, [0-9]+\\);");
    EXPECT_EQ(QString(recorded).count(place), 1) << recorded.constData();
    const QByteArray checks =
        "function state() {\n"
        "    return find('state').get('text').replace(/([^,]+)(, \\1)+(?=,|$)/g, '$1'); }\n"
        "check.equal(state, '" +
        expectedState +
        "', 'state', {retry: 3000});\n"
        "check.equal(find(names.name).get('text') + "
        "find(names.text).get('text'), 'Zoeone\\ntwo!');\n"
        "check.equal(find(names.secret).get('length'), 3);\n";
    runner.addTestCase("tst_recorded", recorded + checks);
    for (const char *more : {"", " 0", " 90"}) {
        const QStringList aut{"--aut", MORVEX_RECORDED_SCENE, MORVEX_CONTROLS_FILE, more};
        output = runner.run(QStringList{runner.suitePath(), "--envvar", "PASSWORD=a<b"} +
                            (*more ? aut : QStringList()));
        EXPECT_EQ(output.status, 0) << output.standardOutput.constData() << recorded.constData();
    }
    QByteArray names = readFile(runner.suitePath() + "/names.js");
    runner.addFile("names.js", names.replace("\"Ask\"", "\"Question\""));
    EXPECT_NE(runner.runSuite({}).status, 0);
}

TEST_F(RecordingSceneTest, WhatGesturesHaveDoneIsDoneAgain)
{
    record({}, {MORVEX_RECORDED_SCENE, MORVEX_GESTURES_FILE}, "^Gestures$");
    act(gesturesSession);
    // What is out of sight in the replay, and what is moving first.
    act("at 70 120 --repeat 10 5\n at 190 120 --repeat 6 5\n");
    actUntil("sleep .5\n at 70 120", "\"occurrence\":2");
    actUntil("sleep .5\n at 190 120", "\"item\":[\"A");
    act("at 290 120\n drag 470 150 360 150\n");
    actUntil("sleep .5\n at 380 80", "text='Second' type");
    actUntil("at 340 340\n sleep .3\n hover 340 380\n sleep .8\n at 420 380", "Deep");
    actUntil("hover 500 330\n mousedown 1\n sleep .1\n hover 530 400\n sleep .1\n hover 560 330\n"
             "sleep .1\n mouseup 1",
             "\"via\"");
    act("at 340 340\n sleep .3\n drag 190 210 170 210\n drag 698 300 560 300\n");
    waitFor("\"property\":\"visible\"");
    actUntil("sleep .5\n at 590 20", "Within");
    act("at 300 450\n sleep .6\n hover 30 270\n key ctrl+alt+shift+v\n window ^Label$\n at 10 "
        "36\n");
    waitFor("properties_1");
    const QRegularExpression plain("\"exact\":[0-9.]{9,},.*\"value\":[0-9.]{1,6}[,}]");
    EXPECT_TRUE(plain.match(journal()).hasMatch()) << journal().constData();
    const QByteArray recorded = interrupt();
    for (const char *line :
         {"type(\" \")", "hold: ", ".hover()", ".wheel(1)",
          "occurrence: ", ".set(\"currentIndex\", 1)", "find(names.sub).click();\nfind(names.deep)",
          ".drag(find(names.bin)", "item(", ".set(\"visible\", true)", "find(names.within).click()",
          "item(\"Row 0\"", "find(names.own).click()"})
        EXPECT_TRUE(recorded.contains(line)) << line << '\n' << recorded.constData();
    EXPECT_FALSE(recorded.contains("close()")) << recorded.constData();
    runner.addTestCase("tst_recorded", recorded);
    output = runner.runSuite({});
    EXPECT_EQ(output.status, 0) << output.standardOutput.constData() << recorded.constData();
}

TEST_F(RecordingSceneTest, ItemsInAWidgetAreUsedBesideWidgets)
{
    record({}, {MORVEX_RECORDED_SCENE, MORVEX_IN_WIDGET_FILE, "widget"}, "^Widgets$");
    act("at 80 75\n type abc\n at 240 75\n sleep .3\n at 240 150\n at 380 75\n sleep .5\n key "
        "space\n "
        "at 250 20\n");
    const QByteArray expected = "find(names.inside).type(\"abc\");\n"
                                "find(names.kind).item(\"Cold\").click();\n"
                                "find(names.press).click();\n"
                                "find(names.cold).click();\n"
                                "find(names.native).click();\n";
    const QByteArray recorded = interrupt();
    EXPECT_TRUE(recorded.endsWith(expected)) << recorded.constData();
    runner.addTestCase("tst_recorded",
                       recorded + "check.that(find({type: 'Button', text: 'Cold'}).exists());\n");
    output = runner.runSuite({});
    EXPECT_EQ(output.status, 0) << output.standardOutput.constData();
}
