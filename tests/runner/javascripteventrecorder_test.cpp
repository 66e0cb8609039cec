#include "runner/javascripteventrecorder.h"
#include "runner/javascriptobjectmap.h"
#include "runner/recordedactions.h"

#include "support/files.h"
#include "support/scriptfixture.h"

#include <QJsonArray>
#include <QJsonDocument>

using namespace Morvex;
using namespace MorvexTest;

namespace {

EventData action(const QString &object, const QString &method,
                 const std::vector<EventDataArg> &arguments = {})
{
    EventData event(EventData::METHOD_CALL);
    event.setObjectName(object);
    event.setMethodName(method);
    event.setContextId(1);
    for (const EventDataArg &argument : arguments)
        event.addArgument(argument);
    return event;
}

EventDataArg text(const QString &value)
{
    return {value, EventDataArg::TEXT};
}

EventDataArg number(int value)
{
    return {QString::number(value), EventDataArg::NUMBER};
}

QStringList recorded(EventRecorder::Synchronization synchronization, ScriptedObjectMap *map,
                     std::vector<EventData> events)
{
    JavaScriptEventRecorder recorder(synchronization == EventRecorder::NO_SYNC,
                                     synchronization == EventRecorder::OBJECT_SYNC, map);
    for (std::size_t i = 0; i < events.size(); ++i) {
        events[i].setSequence(i);
        recorder.queueEvent(events[i]);
    }
    recorder.dequeueEvents();
    return recorder.lines();
}

} // namespace

using JavaScriptEventRecorderTest = ScriptFixture;

// Every statement that the recorder prints, in the script of a test case beside its names file.
TEST_F(JavaScriptEventRecorderTest, WhatItPrintsRuns)
{
    const QString namesPath = runner.suitePath() + "/names.js";
    JavaScriptObjectMap map(namesPath);
    EventData other = action("{name='name'}", "type", {text("A \"nut\" '<<3'")});
    other.setContextId(2);
    const QStringList lines = recorded(
        EventRecorder::SNOOZE_SYNC, &map,
        {action("{name='articles' window={name='inventory'}}", "clickItem", {text("Nuts")}), other,
         action("{name='count'}", "setProperty", {text("value"), number(3)}),
         action("{name='add'}", "click"),
         action("{name='articles' window={name='inventory'}}", "doubleClickItem",
                {number(3), number(0)}),
         action("{name='articles' window={name='inventory'}}", "click", {number(5), number(5)}),
         action("{name='articles' window={name='inventory'}}", "activateItem", {text("Bolts")}),
         action("{type='QMenuBar'}", "clickItem", {text("Stock/Remove")})});
    const QStringList expected{
        "var ctx_0 = currentApplicationContext();",
        "find(names.articles).item(\"Nuts\").click();",
        "var ctx_1 = waitForApplicationLaunch();",
        "find(names.name).type(\"A \\\"nut\\\" '<<3'\");",
        "setApplicationContext(ctx_0);",
        "find(names.count).set(\"value\", 3);",
        "find(names.add).click();",
        "find(names.articles).item(3, 0).doubleClick();",
        "find(names.articles).click(5, 5);",
        "find(names.articles).item(\"Bolts\").activate();",
        "find(names.qMenuBar).item(\"Stock/Remove\").click();",
    };
    EXPECT_EQ(lines, expected);
    ASSERT_TRUE(map.save());
    // There is just one.
    const QString script = lines.join('\n').replace("waitForApplicationLaunch()", "ctx_0");
    EXPECT_EQ(results("application.start('inventory');\n" + script.toUtf8() +
                      "\ncheck.equal(find(names.inventory).get('totalCount'), 43);"),
              QStringList("PASS Verification|Got expected 43."))
        << output.standardOutput.toStdString() << readFile(namesPath).toStdString();
}

TEST_F(JavaScriptEventRecorderTest, WhatItPrintsOpensAndClosesTheNodesOfATree)
{
    const QString name = QStringLiteral("{name='groups'}");
    const EventDataArg node = text("Running low");
    const QStringList lines =
        recorded(EventRecorder::NO_SYNC, nullptr,
                 {action(name, "expandItem", {node}), action(name, "collapseItem", {node}),
                  action(name, "clickTreeHandle", {node})});
    QByteArray script = "application.start('inventory');\nvar low = find('groups').item('Running "
                        "low/Washers');\n";
    for (const QString &line : lines)
        script += line.toUtf8() + "\nlog.info(low.exists());\n";
    EXPECT_EQ(results(script), QStringList({"LOG true|", "LOG false|", "LOG true|"}))
        << lines.join('\n').toStdString() << output.standardOutput.toStdString();
}

// What was replaced, joined or taken back is not seen in the script.
TEST_F(JavaScriptEventRecorderTest, ReportedActionsBecomeTheStatementsThatAUserWouldWrite)
{
    const struct
    {
        const char *actions;
        QStringList expected;
    } rows[] = {
        {R"([{"number":1,"time":1,"what":"type","object":"a","text":"x"},
             {"number":2,"time":2,"what":"type","object":"a","text":"<<"},
             {"number":3,"time":3,"what":"nothing"},
             {"number":2,"time":4,"what":"type","object":"a","text":"y"}])",
         {"find(\"a\").type(\"xy\");"}},
        {R"([{"number":1,"time":9,"what":"click","object":"late","waits":["enabled"]},
             {"number":2,"time":2,"what":"click","object":"t","item":["n",{"column":2}],
              "modifiers":"Ctrl"},
             {"number":3,"time":3,"what":"click","object":"c","x":1,"y":2,"button":"right"}])",
         {"find(\"t\").item(\"n\", {column: 2}).click({modifiers: \"Ctrl\"});",
          "find(\"c\").rightClick(1, 2);", "find(\"late\").waitFor(\"enabled\", true);",
          "find(\"late\").click();"}},
        // A program that has executed itself again.
        {R"([{"number":1,"time":1,"what":"click","object":"a"}, {"what":"start","time":2},
             {"number":1,"time":3,"what":"password","object":"b"},
             {"number":2,"time":4,"what":"password","object":"c"},
             {"number":3,"time":5,"what":"password","object":"b"}])",
         {"find(\"a\").click();", "find(\"b\").typePassword(\"PASSWORD\");",
          "find(\"c\").typePassword(\"PASSWORD_2\");", "find(\"b\").typePassword(\"PASSWORD\");"}},
        {R"([{"number":1,"time":1,"what":"type","object":"a","text":"<Up><Up><Up><Down><Down>"},
             {"number":2,"time":2,"what":"type","object":"a","text":"<Down><Down><<F1><F1><F1><F1>"},
             {"number":3,"time":3,"what":"type","object":"a","text":"<Ctrl+>><Ctrl+>><Ctrl+>><Ctrl+>>"}])",
         {"find(\"a\").type(\"<Up><Up><Up><Down*4><<F1><F1><F1><F1>"
          "<Ctrl+>><Ctrl+>><Ctrl+>><Ctrl+>>\");"}},
        // What a check sees of a value has to be as it was.
        {R"([{"number":1,"time":1,"what":"set","object":"a","property":"v","value":2,"exact":2.01},
             {"number":2,"time":2,"what":"set","object":"a","property":"v","value":3,"exact":3.01},
             {"number":3,"time":3,"what":"set","object":"b","property":"v","value":4,"exact":4.01},
             {"number":4,"time":4,"what":"set","object":"b","property":"v","value":5},
             {"number":5,"time":5,"what":"point","object":"b","name":"p","type":"Screenshot"},
             {"number":6,"time":6,"what":"set","object":"a","property":"v","value":6,"exact":6.01}])",
         {"find(\"a\").set(\"v\", 3.01);", "find(\"b\").set(\"v\", 5);",
          "check.point(\"p\", {object: \"b\", retry: 5000, type: \"Screenshot\"});",
          "find(\"a\").set(\"v\", 6);"}},
        // The keys before belong to another object of the editor's name.
        {R"([{"number":1,"time":1,"what":"type","object":"e","text":"old"},
             {"number":2,"time":2,"what":"doubleClick","object":"t","item":["n"]},
             {"number":3,"time":3,"what":"type","object":"e","text":"new"},
             {"number":9,"time":4,"what":"click","object":"b"},
             {"number":10,"time":6,"what":"click","object":"c"},
             {"number":4,"time":7,"what":"edit","object":"t","item":["n"],"text":"new",
              "editor":"e","since":2,"before":10},
             {"number":5,"time":8,"what":"drag","object":"l","item":["a"],
              "to":{"object":"m","item":[3,0]}},
             {"number":6,"time":9,"what":"no such thing","object":"a"},
             {"number":7,"time":10,"what":"click"}, 7,
             {"number":8,"time":11,"what":"check","object":"t","item":["n"],"modifiers":"Ctrl"}])",
         {"find(\"e\").type(\"old\");", "find(\"b\").click();",
          "find(\"t\").item(\"n\").edit(\"new\");", "find(\"c\").click();",
          "find(\"l\").item(\"a\").drag(find(\"m\").item(3, 0));",
          "find(\"t\").item(\"n\").check();"}},
    };
    for (const auto &row : rows) {
        const QVariantList actions = QJsonDocument::fromJson(row.actions).array().toVariantList();
        JavaScriptEventRecorder recorder(false, true, nullptr);
        for (const EventData &event : eventsOfActions(actions, true))
            recorder.queueEvent(event);
        recorder.dequeueEvents();
        EXPECT_EQ(recorder.lines(), row.expected);
    }
}

TEST_F(JavaScriptEventRecorderTest, WaitsArePrintedWhenTheStatementDoesNotWaitLongEnough)
{
    EventData first = action("{text='a'}", "click");
    EventData late = action("{text='b'}", "clickItem", {text("x")});
    first.setTime(QTime(1, 0));
    late.setTime(QTime(1, 0, 12));
    const std::vector<EventData> events{first, late};
    EXPECT_EQ(recorded(EventRecorder::NO_SYNC, nullptr, events),
              QStringList(
                  {"find(\"{text='a'}\").click();", "find(\"{text='b'}\").item(\"x\").click();"}));
    EXPECT_EQ(recorded(EventRecorder::SNOOZE_SYNC, nullptr, events).value(1), "snooze(12.0);");
    EXPECT_EQ(recorded(EventRecorder::OBJECT_SYNC, nullptr, events).value(1),
              "find(\"{text='b'}\").item(\"x\", 12000).text();");

    EventData typed = action("{name='name'}", "type", {text("x")});
    EventData cell = action("{name='articles'}", "clickItem", {number(0), number(1)});
    typed.setSnooze(11000);
    EventData item = action("{name='articles'}", "clickItem", {text("Nuts")});
    cell.setSnooze(100);
    item.setSnooze(11000);
    QStringList lines = recorded(EventRecorder::OBJECT_SYNC, nullptr, {typed});
    EXPECT_EQ(lines.value(0), "find(\"{name='name'}\", 11000);");
    lines += recorded(EventRecorder::SNOOZE_SYNC, nullptr, {cell});
    cell.setSnooze(11000);
    lines += recorded(EventRecorder::OBJECT_SYNC, nullptr, {cell});
    lines += recorded(EventRecorder::OBJECT_SYNC, nullptr, {item});
    // There is just one.
    const QString script = lines.join('\n').replace("waitForApplicationLaunch()", "ctx_0");
    EXPECT_EQ(results("application.start('inventory');\n" + script.toUtf8() +
                      "\ncheck.equal(find('name').get('text'), 'x');"),
              QStringList("PASS Verification|Got expected 'x'."))
        << lines.join('\n').toStdString();
}

// Users think for a while; what they waited for is another thing.
TEST_F(JavaScriptEventRecorderTest, PausesOfAUserAreWaitsForWhatMayHaveComeLate)
{
    const char actions[] =
        R"([{"number":1,"time":1,"what":"click","object":"a"},
            {"number":2,"time":20000000,"what":"type","object":"b","text":"x"},
            {"number":3,"time":20700000,"what":"type","object":"b","text":"y"},
            {"number":4,"time":32000000,"what":"click","object":"{type='QMenuBar'}","item":["m"]},
            {"number":5,"time":45000000,"what":"click","object":"v","item":["i"]},
            {"number":6,"time":57000000,"what":"click","object":"{text='c' visible='true'}",
             "waits":["visible"]},
            {"number":7,"time":69000000,"what":"click","object":"d","waits":["enabled"]},
            {"number":8,"time":81000000,"what":"click","object":"v",
             "item":["i",{"occurrence":2}]}])";
    const std::pair<EventRecorder::Synchronization, QStringList> rows[] = {
        {EventRecorder::OBJECT_SYNC,
         {"find(\"a\").click();", "find(\"b\").type(\"xy\");",
          "find(\"{type='QMenuBar'}\").item(\"m\").click();",
          "find(\"v\").item(\"i\", 15000).text();", "find(\"v\").item(\"i\").click();",
          "find(\"{text='c' visible='true'}\", 15000);",
          "find(\"{text='c' visible='true'}\").click();",
          "find(\"d\", 15000).waitFor(\"enabled\", true, 15000);", "find(\"d\").click();",
          "find(\"v\").item(\"i\", {occurrence: 2, timeout: 15000}).text();",
          "find(\"v\").item(\"i\", {occurrence: 2}).click();"}},
        {EventRecorder::SNOOZE_SYNC,
         {"find(\"a\").click();", "snooze(20.0);", "find(\"b\").type(\"x\");", "snooze(0.7);",
          "find(\"b\").type(\"y\");", "snooze(11.3);",
          "find(\"{type='QMenuBar'}\").item(\"m\").click();", "snooze(13.0);",
          "find(\"v\").item(\"i\").click();", "snooze(12.0);",
          "find(\"{text='c' visible='true'}\").click();", "snooze(12.0);", "find(\"d\").click();",
          "snooze(12.0);", "find(\"v\").item(\"i\", {occurrence: 2}).click();"}},
    };
    for (const auto &[synchronization, expected] : rows)
        EXPECT_EQ(recorded(synchronization, nullptr,
                           eventsOfActions(QJsonDocument::fromJson(actions).array().toVariantList(),
                                           synchronization == EventRecorder::OBJECT_SYNC,
                                           synchronization == EventRecorder::SNOOZE_SYNC)),
                  expected);
}

TEST_F(JavaScriptEventRecorderTest, AnEventThatScriptsCanNotRepeatIsSeenInTheScript)
{
    EXPECT_EQ(recorded(EventRecorder::NO_SYNC, nullptr, {action("a\nb", "swipe", {text("\n")})}),
              QStringList("// Not recorded: \"swipe\" of \"a\\nb\" with (\"\\n\")"));
    for (const EventData &event :
         {action("a", "click", {number(1)}), action("a", "type"),
          action("a", "click", {number(5), {"5.5", EventDataArg::NUMBER}}),
          action("a", "clickItem", {text("")}), action("a", "clickItem", {text("b"), text("c")})})
        EXPECT_TRUE(recorded(EventRecorder::NO_SYNC, nullptr, {event}).value(0).startsWith("// "));
}

TEST_F(JavaScriptEventRecorderTest, ScriptsUseItemsAsUsersDo)
{
    const QByteArray start = "application.start('inventory'); var t = find('articles');";
    const QStringList lines =
        results(start + "t.item('Nuts').click(); check.equal(t.item(1, 1).text(), '35');"
                        "check.that(!t.item('Screws').exists()); t.item('Gone', 0).click();");
    EXPECT_EQ(lines.mid(0, 2), QStringList({"PASS Verification|Got expected '35'.",
                                            "PASS Verification|The condition holds."}));
    EXPECT_TRUE(lines.value(2).contains("articles: there is no item 'Gone'"))
        << lines.value(2).toStdString();
}
