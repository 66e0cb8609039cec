#include "test/eventrecorder.h"

#include "objectmodel/class.h"
#include "objectmodel/objectmap.h"
#include "test/scriptedobjectmap.h"

#include <QDateTime>
#include <QStringList>

#include <algorithm>
#include <deque>
#include <optional>
#include <utility>
#include <vector>

namespace Morvex {
namespace {

// A click on an item that the script need not wait for: it waits for the object alone.
const QLatin1String clickWithoutItemWait("clickItem_with_obj_sync_but_without_item_sync");

const qint64 msPerSecond = 1000;
const double msPerSecondExactly = 1000.0;

// Brings the epoch close to today, which keeps the names of gestures short.
const qint64 gestureEpochSeconds = 1389222000;
const int gestureBase = 36;

// Those of equal rank stay in the order in which they came. Events are large, so none is moved.
std::vector<EventData *> sorted(std::deque<EventData> &queue)
{
    std::vector<EventData *> events;
    events.reserve(queue.size());
    for (EventData &event : queue)
        events.push_back(&event);
    std::stable_sort(events.begin(), events.end(),
                     [](const EventData *a, const EventData *b) { return *a < *b; });
    return events;
}

} // namespace

// Turns the events of one run into the events that are printed: the events themselves, which have
// to outlive this object, and statements between them.
class EventRecorder::Sequencer
{
public:
    explicit Sequencer(int firstContext)
        : m_firstContext(firstContext)
    {
        m_variables.insert(firstContext, variable(0));
    }

    void add(EventData &event)
    {
        if (m_previous && event.time().isValid())
            event.setSnooze(std::max(0, m_previous->time.msecsTo(event.time())));
        if (event.kind() == EventData::APPLICATION_START)
            addStart(event);
        else
            addAction(event);
    }

    const std::deque<const EventData *> &output() const { return m_output; }

private:
    struct Previous
    {
        int kind;
        int context;
        QTime time;
    };

    static Previous previousOf(const EventData &event)
    {
        return {event.kind(), event.contextId(), event.time()};
    }

    static QString variable(int number) { return QStringLiteral("ctx_%1").arg(number); }

    void addStart(const EventData &event)
    {
        const Previous start = previousOf(event);
        if (m_previous && m_previous->kind == start.kind && m_previous->context == start.context)
            return;
        if (start.context != m_firstContext)
            addLaunch(start.context);
        m_previous = start;
    }

    void addAction(const EventData &event)
    {
        const int context = event.contextId();
        if (!m_variables.contains(context))
            addLaunch(context);
        else if (m_previous && m_previous->context != context)
            addSwitch(context);
        m_previous = previousOf(event);
        m_output.push_back(&event);
    }

    // The script starts in the new context.
    void addLaunch(int context)
    {
        const QString name = variable(m_next++);
        m_variables.insert(context, name);
        m_output.push_back(statement("waitForApplicationLaunch", {}, name));
    }

    void addSwitch(int context)
    {
        if (!std::exchange(m_hasSwitched, true))
            m_output.push_front(statement("currentApplicationContext", {}, variable(0)));
        m_output.push_back(
            statement("setApplicationContext", {m_variables.value(context)}, QString()));
    }

    const EventData *statement(const char *method, const QStringList &arguments,
                               const QString &resultName)
    {
        m_statements.emplace_back(QString::fromLatin1(method), arguments, resultName);
        return &m_statements.back();
    }

    int m_firstContext;
    QMap<int, QString> m_variables;
    int m_next = 1;
    std::optional<Previous> m_previous;
    bool m_hasSwitched = false;
    // Growing it moves none of its elements.
    std::deque<EventData> m_statements;
    std::deque<const EventData *> m_output;
};

struct EventRecorder::Private
{
    std::deque<EventData> queue;
};

EventRecorder::EventRecorder(bool suppressSync, bool objectSync, ScriptedObjectMap *map)
    : m_suppressSync(suppressSync)
    , m_objectSync(objectSync)
    , d(std::make_unique<Private>())
    , m_map(map)
{
}

EventRecorder::~EventRecorder() = default;

void EventRecorder::queueEvent(const EventData &event)
{
    d->queue.push_back(event);
}

void EventRecorder::dequeueEvents()
{
    if (d->queue.empty())
        return;
    // What the statements cause to be queued belongs to the next run.
    auto queue = std::exchange(d->queue, {});
    const std::vector<EventData *> events = sorted(queue);
    Sequencer sequencer(events.front()->contextId());
    for (EventData *event : events)
        sequencer.add(*event);
    for (const EventData *event : sequencer.output())
        recordEvent(*event);
}

QString EventRecorder::recordSync(const QString &objectName, int timeoutMs)
{
    if (m_suppressSync)
        return {};
    return m_objectSync && !objectName.isEmpty() ? recordObjectWait(objectName, timeoutMs)
                                                 : recordSnooze(timeoutMs);
}

QString EventRecorder::recordSync(const QString &objectName, const EventData &event, int timeoutMs)
{
    const QString method = event.methodName();
    const auto &arguments = event.arguments();
    const bool waitsForItem = isItemMethod(method) && !arguments.isEmpty() && !m_suppressSync &&
                              m_objectSync && !objectName.isEmpty();
    if (waitsForItem && hasItemRowAndColumn(event))
        return recordCellWait(objectName, arguments.at(0).value.toInt(),
                              arguments.at(1).value.toInt(), timeoutMs);
    if (waitsForItem && !arguments.at(0).value.isEmpty())
        return recordItemWait(objectName, arguments.at(0).value, timeoutMs);
    return recordSync(objectName, timeoutMs);
}

bool EventRecorder::skipRecordSyncFor(const EventData &event) const
{
    const QString method = event.methodName();
    if (method == QLatin1String("waitForContextExists") || method == QLatin1String("chooseFile"))
        return true;
    if (!m_objectSync)
        return false;
    return !isItemMethod(method) || !event.itemText().isNull();
}

int EventRecorder::synchronization() const
{
    if (m_objectSync)
        return OBJECT_SYNC;
    return m_suppressSync ? NO_SYNC : SNOOZE_SYNC;
}

void EventRecorder::setSynchronization(EventRecorder::Synchronization synchronization)
{
    switch (synchronization) {
    case NO_SYNC:
        m_suppressSync = true;
        m_objectSync = false;
        break;
    case SNOOZE_SYNC:
        m_suppressSync = false;
        m_objectSync = false;
        break;
    case OBJECT_SYNC:
        // Both, as recordings have always had it: such a recorder prints no code that waits.
        m_suppressSync = true;
        m_objectSync = true;
        break;
    }
}

QString EventRecorder::createSymbolicName(const QString &realName)
{
    if (m_map)
        return m_map->scriptExpression(m_map->getSymbolicName(realName, true));
    ObjectMap *map = ObjectMap::self();
    return map ? map->symbolicName(realName, true) : realName;
}

bool EventRecorder::isItemMethod(const QString &method)
{
    static const QStringList methods{
        QStringLiteral("clickItem"),    QStringLiteral("doubleClickItem"),
        QStringLiteral("activateItem"), QStringLiteral("clickTreeHandle"),
        QStringLiteral("expandItem"),   QStringLiteral("collapseItem"),
    };
    return methods.contains(method);
}

bool EventRecorder::hasItemRowAndColumn(const EventData &event)
{
    const auto &arguments = event.arguments();
    return arguments.count() > 1 && arguments.at(0).kind == EventDataArg::NUMBER &&
           arguments.at(1).kind == EventDataArg::NUMBER;
}

QString EventRecorder::cleansedMethodName(const QString &method)
{
    return method == clickWithoutItemWait ? QStringLiteral("clickItem") : method;
}

bool EventRecorder::useWaitForForMethod(const QString &method)
{
    static const QStringList methodNamesWithoutWaitFor{
        QStringLiteral("closeAlert"),   QStringLiteral("closeConfirm"),
        QStringLiteral("closePrompt"),  QStringLiteral("closeWindow"),
        QStringLiteral("loadUrl"),      QStringLiteral("setContext"),
        QStringLiteral("startBrowser"), QStringLiteral("waitForContextExists"),
    };
    return methodNamesWithoutWaitFor.contains(method);
}

QString EventRecorder::formatSnoozeSecs(int ms)
{
    return QString::number(ms / msPerSecondExactly, 'f', 1);
}

QString EventRecorder::generateFullyQualifiedClassName(const Class *objectClass,
                                                       const QString &language,
                                                       const QString &separator)
{
    if (!objectClass)
        return {};
    const QString name = QString::fromLatin1(objectClass->name().toLatin1());
    const Module *module = objectClass->module();
    const QString prefix = module ? module->getModuleStr(language) : QString();
    return prefix.isEmpty() ? name : prefix + separator + name;
}

QString generateGestureName(const QTime &time)
{
    const QDateTime moment(QDate::currentDate(), time);
    return QLatin1String("Gst") +
           QString::number(moment.toMSecsSinceEpoch() - gestureEpochSeconds * msPerSecond,
                           gestureBase);
}

} // namespace Morvex
