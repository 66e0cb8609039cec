#include "test/eventrecorder.h"

#include "objectmodel/class.h"
#include "objectmodel/objectmap.h"

#include <gtest/gtest.h>

#include <QDateTime>

using namespace Morvex;

namespace {

// Prints plain lines.
class LineRecorder : public EventRecorder
{
public:
    explicit LineRecorder(bool suppressSync = true, bool objectSync = false)
        : EventRecorder(suppressSync, objectSync, nullptr)
    {
    }

    void recordEvent(const EventData &event) override
    {
        QStringList arguments;
        for (const EventDataArg &argument : event.arguments())
            arguments += argument.value;
        lines += QStringLiteral("%1(%2)%3@%4")
                     .arg(event.methodName(), arguments.join(','), event.resultName(),
                          QString::number(event.snooze()));
    }
    QString recordSnooze(int ms) override { return "snooze " + formatSnoozeSecs(ms); }
    QString recordObjectWait(const QString &name, int) override { return "object " + name; }
    QString recordItemWait(const QString &name, const QString &item, int) override
    {
        return "item " + name + ' ' + item;
    }
    QString recordCellWait(const QString &name, int row, int column, int) override
    {
        return QStringLiteral("cell %1 %2 %3").arg(name).arg(row).arg(column);
    }

    QStringList lines;
};

struct Event
{
    int kind;
    int context;
    const char *name;
    QTime time;
    int snooze = 0;
};

QStringList recorded(const std::vector<Event> &events)
{
    LineRecorder recorder;
    quint64 sequence = 0;
    for (const Event &each : events) {
        EventData event(each.kind);
        event.setMethodName(each.name);
        event.setContextId(each.context);
        event.setTime(each.time);
        event.setSnooze(each.snooze);
        event.setSequence(++sequence);
        recorder.queueEvent(event);
    }
    recorder.dequeueEvents();
    return recorder.lines;
}

const int call = EventData::METHOD_CALL;
const int start = EventData::APPLICATION_START;

EventData method(const QString &name, const std::vector<EventDataArg> &arguments)
{
    EventData event(EventData::METHOD_CALL);
    event.setMethodName(name);
    for (const EventDataArg &argument : arguments)
        event.addArgument(argument);
    return event;
}

} // namespace

TEST(EventRecorderTest, ContextsAreLaunchedSwitchedAndSavedWhereTheEventsNeedIt)
{
    const std::pair<std::vector<Event>, QStringList> cases[] = {
        {{}, {}},
        {{{start, 7, "", {}}, {call, 7, "a", {}}, {call, 7, "b", {}}}, {"a()@0", "b()@0"}},
        {{{call, 1, "a", {}}, {start, 2, "", {}}, {start, 2, "", {}}, {call, 2, "b", {}}},
         {"a()@0", "waitForApplicationLaunch()ctx_1@0", "b()@0"}},
        {{{call, 1, "a", {}}, {call, 2, "b", {}}, {call, 1, "c", {}}, {call, 2, "d", {}}},
         {"currentApplicationContext()ctx_0@0", "a()@0", "waitForApplicationLaunch()ctx_1@0",
          "b()@0", "setApplicationContext(ctx_0)@0", "c()@0", "setApplicationContext(ctx_1)@0",
          "d()@0"}},
        {{{call, 1, "a", {}}, {start, 2, "", {}}, {start, 3, "", {}}, {call, 3, "b", {}}},
         {"a()@0", "waitForApplicationLaunch()ctx_1@0", "waitForApplicationLaunch()ctx_2@0",
          "b()@0"}},
    };
    for (const auto &[events, lines] : cases)
        EXPECT_EQ(recorded(events), lines);
}

TEST(EventRecorderTest, TimeSinceTheEventBeforeIsNeverNegativeAndNeverMadeUp)
{
    EXPECT_EQ(recorded({{call, 1, "first", QTime(10, 0), 5},
                        {call, 1, "later", QTime(10, 0, 1)},
                        {call, 1, "unknown", QTime(), 7},
                        {call, 1, "afterUnknown", QTime(23, 59), 8},
                        {call, 1, "midnight", QTime(0, 1), 9}}),
              QStringList({"first()@5", "later()@1000", "unknown()@7", "afterUnknown()@0",
                           "midnight()@0"}));
}

TEST(EventRecorderTest, EventsComeInTheirOrderAndEachRunStartsAgain)
{
    LineRecorder recorder;
    for (const int sequence : {3, 1, 2}) {
        EventData event = method(QString::number(sequence), {});
        event.setSequence(static_cast<quint64>(sequence));
        event.setContextId(sequence);
        recorder.queueEvent(event);
    }
    recorder.dequeueEvents();
    EXPECT_EQ(recorder.lines, QStringList({"1()@0", "waitForApplicationLaunch()ctx_1@0", "2()@0",
                                           "waitForApplicationLaunch()ctx_2@0", "3()@0"}));
    recorder.lines.clear();
    recorder.dequeueEvents();
    EXPECT_EQ(recorder.lines, QStringList());
}

TEST(EventRecorderTest, CodeThatWaitsFollowsTheSynchronizationAndTheItem)
{
    const EventDataArg text{"A", EventDataArg::TEXT};
    const EventDataArg number{"3", EventDataArg::NUMBER};
    const std::tuple<bool, bool, EventData, const char *> cases[] = {
        {true, true, method("clickItem", {text}), ""},
        {false, false, method("clickItem", {text}), "snooze 1.5"},
        {false, true, method("click", {text}), "object o"},
        {false, true, method("clickItem", {text}), "item o A"},
        {false, true, method("clickItem", {{"", EventDataArg::TEXT}}), "object o"},
        {false, true, method("expandItem", {}), "object o"},
        {false, true, method("doubleClickItem", {number, number}), "cell o 3 3"},
        {false, true, method("clickItem", {number}), "item o 3"},
        {false, true, method("clickItem", {number, text}), "item o 3"},
        {false, true, method("clickItem_with_obj_sync_but_without_item_sync", {text}), "object o"},
    };
    for (const auto &[suppress, object, event, code] : cases)
        EXPECT_EQ(LineRecorder(suppress, object).recordSync("o", event, 1500), QString(code));
    EXPECT_EQ(LineRecorder(false, true).recordSync("", method("clickItem", {text}), 0),
              "snooze 0.0");
}

TEST(EventRecorderTest, AStatementThatWaitsByItselfNeedsNoCodeThatWaits)
{
    EventData item = method("clickItem", {});
    EXPECT_FALSE(LineRecorder(false, true).skipRecordSyncFor(item));
    item.setItemText("");
    EXPECT_TRUE(LineRecorder(false, true).skipRecordSyncFor(item));
    EXPECT_FALSE(LineRecorder(false, false).skipRecordSyncFor(item));
    EXPECT_TRUE(LineRecorder(false, true).skipRecordSyncFor(method("click", {})));
    EXPECT_TRUE(LineRecorder().skipRecordSyncFor(method("chooseFile", {})));
    EXPECT_FALSE(LineRecorder().skipRecordSyncFor(EventData(9)));
}

TEST(EventRecorderTest, SynchronizationSetToObjectsSuppressesWaiting)
{
    LineRecorder recorder(false, true);
    EXPECT_EQ(recorder.synchronization(), 2);
    for (const int value : {0, 1, 2, 3}) {
        recorder.setSynchronization(static_cast<EventRecorder::Synchronization>(value));
        EXPECT_EQ(recorder.synchronization(), std::min(value, 2));
        EXPECT_EQ(recorder.recordSync("o", 200).isEmpty(), value != 1) << value;
    }
}

TEST(EventRecorderTest, NamesComeFromTheObjectMapOrStayAsTheyAre)
{
    LineRecorder recorder;
    EXPECT_EQ(recorder.createSymbolicName("{text='Save'}"), "{text='Save'}");
    ObjectMap map;
    ObjectMap::install(&map);
    EXPECT_EQ(recorder.createSymbolicName("{text='Save'}"), ":Save");
}

TEST(EventRecorderTest, NamesOfGesturesAreTheMillisecondsInBase36)
{
    const QTime now(12, 34, 56, 789);
    const QString name = generateGestureName(now);
    ASSERT_TRUE(name.startsWith("Gst"));
    const qint64 ms = name.mid(3).toLongLong(nullptr, 36) + 1389222000LL * 1000;
    EXPECT_EQ(QDateTime::fromMSecsSinceEpoch(ms).time(), now);
}
