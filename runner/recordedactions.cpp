#include "runner/recordedactions.h"

#include "objectmodel/objectname.h"
#include "runner/actionmap.h"
#include "runner/countedkeys.h"
#include "runner/recordededits.h"
#include "test/eventrecorder.h"

#include <QHash>
#include <QLocale>

#include <algorithm>
#include <chrono>

namespace Morvex {
namespace {

const qint64 microsecondsPerMillisecond = 1000;
// As long as users pause between keys.
const qint64 longestJoinedPauseMs = 500;
const qint64 maxWaitSeconds = 3600;
// Differences of what an application says are no overflow.
const qint64 latestTime = 1ll << 62;
const qint64 millisecondsPerDay = 24ll * 60 * 60 * 1000;

// What was done under the names of the application and of recorders; the second is that of an item.
const struct
{
    QLatin1String what;
    const char *method;
    const char *itemMethod;
} methods[] = {
    {QLatin1String("click"), "click", "clickItem"},
    {QLatin1String("doubleClick"), "doubleClick", "doubleClickItem"},
    {QLatin1String("hover"), "hover", "hoverItem"},
    {QLatin1String("wheel"), "wheel", "wheelItem"},
    {QLatin1String("type"), "type", nullptr},
    {QLatin1String("password"), "typePassword", nullptr},
    {QLatin1String("set"), "setProperty", nullptr},
    {QLatin1String("close"), "closeWindow", nullptr},
    {QLatin1String("drag"), "drag", "dragItem"},
    {QLatin1String("expand"), nullptr, "expandItem"},
    {QLatin1String("collapse"), nullptr, "collapseItem"},
    {QLatin1String("check"), nullptr, "checkItem"},
    {QLatin1String("uncheck"), nullptr, "uncheckItem"},
    {QLatin1String("edit"), nullptr, "editItem"},
    {QLatin1String("point"), "checkPoint", nullptr},
};

qint64 timeOf(const QVariantMap &action)
{
    const qint64 time = action.value(QStringLiteral("time")).toLongLong();
    return qBound<qint64>(-1, time, latestTime);
}

bool isBefore(const QVariant &a, const QVariant &b)
{
    const QString time = QStringLiteral("time");
    return a.toMap().value(time).toLongLong() < b.toMap().value(time).toLongLong();
}

// Each action as it was reported last, in the order in which they began. A program that executes
// itself again in its process begins to count again.
QVariantList settledActions(const QVariantList &actions)
{
    QVariantList settled;
    QHash<int, QHash<int, int>> places;
    for (const QVariant &entry : actions) {
        QVariantMap action = entry.toMap();
        if (isStart(action))
            places.remove(contextOf(action));
        QHash<int, int> &known = places[contextOf(action)];
        const int number = numberOf(action, "number");
        if (!isStart(action) && known.contains(number)) {
            QVariant &first = settled[known.value(number)];
            action[QStringLiteral("time")] = first.toMap().value(QStringLiteral("time"));
            first = action;
            continue;
        }
        // It was done by then, but is said only now.
        const int next = numberOf(action, "before");
        if (next > 0 && known.contains(next))
            action[QStringLiteral("time")] = timeOf(settled.at(known.value(next)).toMap()) - 1;
        if (!isStart(action))
            known.insert(number, settled.size());
        settled += QVariant(action);
    }
    std::stable_sort(settled.begin(), settled.end(), isBefore);
    return settled;
}

// Whether the second goes on with the first.
bool isContinued(const QVariantMap &first, const QVariantMap &second)
{
    const QString what = textOf(first, "what");
    const bool isJoined = what == QLatin1String("type") || what == QLatin1String("password") ||
                          what == QLatin1String("set");
    return isJoined && !second.contains(QStringLiteral("fresh")) &&
           what == textOf(second, "what") && contextOf(first) == contextOf(second) &&
           textOf(first, "object") == textOf(second, "object") &&
           textOf(first, "property") == textOf(second, "property");
}

void join(QVariantMap *first, const QVariantMap &second)
{
    const QString text = QStringLiteral("text");
    const QString value = QStringLiteral("value");
    if (first->contains(text))
        (*first)[text] = textOf(*first, "text") + textOf(second, "text");
    if (first->contains(value)) {
        (*first)[value] = second.value(value);
        (*first)[QStringLiteral("exact")] = second.value(QStringLiteral("exact"));
    }
}

// A check that follows may see more of a value than the user cares for.
void keepExactValues(std::vector<QVariantMap> *actions)
{
    bool isChecked = false;
    for (auto action = actions->rbegin(); action != actions->rend(); ++action) {
        const QVariant exact = action->value(QStringLiteral("exact"));
        isChecked = isChecked || textOf(*action, "what") == QLatin1String("point");
        if (isChecked && exact.isValid())
            (*action)[QStringLiteral("value")] = exact;
    }
}

// The variables under which a run is given the passwords: one for each object that gets any.
void nameVariables(std::vector<QVariantMap> *actions)
{
    QStringList objects;
    for (QVariantMap &action : *actions) {
        if (textOf(action, "what") != QLatin1String("password"))
            continue;
        const QString object =
            QString::number(contextOf(action)) + QLatin1Char(' ') + textOf(action, "object");
        if (!objects.contains(object))
            objects += object;
        const int number = objects.indexOf(object) + 1;
        action[QStringLiteral("variable")] =
            number > 1 ? QStringLiteral("PASSWORD_%1").arg(number) : QStringLiteral("PASSWORD");
    }
}

void addOptions(const QVariantMap &place, const QStringList &keys, EventData *event)
{
    for (const QString &key : keys) {
        if (place.contains(key))
            event->addArgument(
                {key + QLatin1Char('=') + place.value(key).toString(), EventDataArg::OPTION});
    }
}

// A text, which options may follow, or a row and a column.
void addItem(const QVariantList &item, EventData *event)
{
    for (const QVariant &part : item) {
        if (part.userType() == QMetaType::QVariantMap)
            addOptions(part.toMap(), {QStringLiteral("column"), QStringLiteral("occurrence")},
                       event);
        else if (part.userType() == QMetaType::QString)
            event->addArgument({part.toString(), EventDataArg::TEXT});
        else
            event->addArgument({QString::number(part.toInt()), EventDataArg::NUMBER});
    }
}

void addPlace(const QVariantMap &place, EventData *event)
{
    addItem(place.value(QStringLiteral("item")).toList(), event);
    addOptions(place, {QStringLiteral("x"), QStringLiteral("y")}, event);
}

void addNumbers(const QVariantMap &place, EventData *event)
{
    for (const char *key : {"x", "y"}) {
        if (place.contains(QLatin1String(key)))
            event->addArgument({textOf(place, key), EventDataArg::NUMBER});
    }
}

void addValue(const QVariant &value, EventData *event)
{
    const bool isNumber = value.userType() != QMetaType::QString && value.canConvert<double>();
    const QString text =
        value.userType() == QMetaType::Double
            ? QString::number(value.toDouble(), 'f', QLocale::FloatingPointShortest)
            : value.toString();
    event->addArgument({text, isNumber ? EventDataArg::NUMBER : EventDataArg::TEXT});
}

// A click with the right button has a name of its own.
QString methodFor(const QVariantMap &action, const char *method, const char *itemMethod)
{
    const bool isOfItem = !action.value(QStringLiteral("item")).toList().isEmpty();
    const QString name = QString::fromLatin1(isOfItem ? itemMethod : method);
    const bool isRight = textOf(action, "what") == QLatin1String("click") &&
                         textOf(action, "button") == QLatin1String("right");
    if (!isRight)
        return name;
    return isOfItem ? QStringLiteral("rightClickItem") : QStringLiteral("rightClick");
}

void addArguments(const QVariantMap &action, EventData *event)
{
    const QString method = event->methodName();
    if (method == QLatin1String("type")) {
        event->addArgument({countedKeys(textOf(action, "text")), EventDataArg::TEXT});
    } else if (method == QLatin1String("typePassword")) {
        event->addArgument({textOf(action, "variable"), EventDataArg::TEXT});
    } else if (method == QLatin1String("setProperty")) {
        event->addArgument({textOf(action, "property"), EventDataArg::TEXT});
        addValue(action.value(QStringLiteral("value")), event);
    } else if (method == QLatin1String("checkPoint")) {
        event->addArgument({textOf(action, "name"), EventDataArg::TEXT});
        event->addArgument({textOf(action, "type"), EventDataArg::TEXT});
        for (const QString &name : action.value(QStringLiteral("properties")).toStringList())
            event->addArgument({name, EventDataArg::TEXT});
    } else if (method != QLatin1String("closeWindow")) {
        if (method == QLatin1String("drag") || method.endsWith(QLatin1String("Item")))
            addPlace(action, event);
        else
            addNumbers(action, event);
        if (method == QLatin1String("editItem"))
            event->addArgument({textOf(action, "text"), EventDataArg::TEXT});
        if (method.startsWith(QLatin1String("wheel")))
            event->addArgument({textOf(action, "steps"), EventDataArg::NUMBER});
        QStringList options{QStringLiteral("modifiers"), QStringLiteral("hold"),
                            QStringLiteral("via")};
        if (!method.startsWith(QLatin1String("rightClick")))
            options += QStringLiteral("button");
        addOptions(action, options, event);
    }
    const QVariantMap target = action.value(QStringLiteral("to")).toMap();
    if (!target.isEmpty()) {
        event->addArgument({textOf(target, "object"), EventDataArg::OBJECT});
        addPlace(target, event);
    }
}

// Of no kind when it is no action.
EventData eventOf(const QVariantMap &action)
{
    const qint64 time = timeOf(action);
    const QString what = textOf(action, "what");
    const auto *known = std::find_if(std::begin(methods), std::end(methods),
                                     [&what](const auto &row) { return what == row.what; });
    EventData event(isStart(action) ? EventData::APPLICATION_START : EventData::METHOD_CALL);
    event.setSequence(static_cast<quint64>(time));
    event.setTime(QTime::fromMSecsSinceStartOfDay(
        static_cast<int>(time / microsecondsPerMillisecond % millisecondsPerDay)));
    event.setContextId(contextOf(action));
    if (isStart(action))
        return event;
    if (known == std::end(methods) || textOf(action, "object").isEmpty() || time < 0)
        return EventData();
    event.setMethodName(methodFor(action, known->method, known->itemMethod));
    event.setObjectName(textOf(action, "object"));
    addArguments(action, &event);
    return event;
}

// Whether the name waits by itself until the object is so.
bool isOfName(const QString &property, const QString &objectName)
{
    return ObjectName(objectName).properties().contains(property);
}

// Items of these are there when they are.
bool hasFixedItems(const EventData &event)
{
    static const QStringList types{QStringLiteral("QLabel"),      QStringLiteral("QMenu"),
                                   QStringLiteral("QMenuBar"),    QStringLiteral("QPushButton"),
                                   QStringLiteral("QToolButton"), QStringLiteral("Label"),
                                   QStringLiteral("QQuickText"),  QStringLiteral("QQuickTextEdit"),
                                   QStringLiteral("TextArea")};
    return types.contains(
        ObjectName(event.objectName()).properties().value(QStringLiteral("type")).text);
}

// How long to wait for what may have come late. A user who has thought for a while has not waited
// for what was there before, but items of a view may have come in that time.
int waitBefore(const QVariantMap &action, const EventData &event, qint64 pause)
{
    const bool isLate = !action.value(QStringLiteral("waits")).toList().isEmpty();
    const bool isOfView = EventRecorder::isItemMethod(event.methodName()) && !hasFixedItems(event);
    const qint64 seconds = pause / microsecondsPerMillisecond / 1000;
    return isLate || isOfView
               ? static_cast<int>(qBound<qint64>(0, (seconds / 5 + 1) * 5, maxWaitSeconds) * 1000)
               : 0;
}

// What the object has to be before anything is done to it.
void addWaits(const QVariantMap &action, EventData event, int milliseconds,
              std::vector<EventData> *events)
{
    // The time that is waited does not come of that of the event.
    event.setTime(QTime());
    event.setSnooze(milliseconds);
    for (const QString &property : action.value(QStringLiteral("waits")).toStringList()) {
        if (isOfName(property, event.objectName()))
            continue;
        EventData wait(EventData::METHOD_CALL);
        wait.setMethodName(QStringLiteral("waitForProperty"));
        wait.setObjectName(event.objectName());
        wait.addArgument({property, EventDataArg::TEXT});
        wait.addArgument({QString::number(milliseconds), EventDataArg::NUMBER});
        wait.setSequence(event.sequence());
        wait.setSnooze(event.snooze());
        wait.setContextId(event.contextId());
        events->push_back(wait);
        event.setSnooze(0);
    }
    events->push_back(event);
}

} // namespace

std::vector<EventData> eventsOfActions(const QVariantList &actions, bool areObjectsWaitedFor,
                                       bool arePausesKept)
{
    std::vector<QVariantMap> joined;
    qint64 lastTime = 0;
    for (const QVariant &entry : settledActions(actions)) {
        const QVariantMap action = entry.toMap();
        if (textOf(action, "what") == QLatin1String("nothing"))
            continue;
        if (textOf(action, "what") == QLatin1String("edit"))
            dropPartsOfEdit(&joined, action);
        const bool isPause = arePausesKept && timeOf(action) - lastTime >
                                                  longestJoinedPauseMs * microsecondsPerMillisecond;
        lastTime = timeOf(action);
        if (!joined.empty() && !isPause && isContinued(joined.back(), action))
            join(&joined.back(), action);
        else
            joined.push_back(action);
    }
    nameVariables(&joined);
    keepExactValues(&joined);
    std::vector<EventData> events;
    lastTime = joined.empty() ? 0 : timeOf(joined.front());
    for (const QVariantMap &action : joined) {
        const EventData event = eventOf(action);
        if (event.kind() == 0)
            continue;
        if (areObjectsWaitedFor)
            addWaits(action, event, waitBefore(action, event, timeOf(action) - lastTime), &events);
        else
            events.push_back(event);
        lastTime = timeOf(action);
    }
    return events;
}

QVariantMap startAction(int context)
{
    using namespace std::chrono;
    const qint64 now = duration_cast<microseconds>(steady_clock::now().time_since_epoch()).count();
    return {{QStringLiteral("what"), QStringLiteral("start")},
            {QStringLiteral("context"), context},
            {QStringLiteral("time"), now}};
}

} // namespace Morvex
