#include "qtbackend/actionreport.h"

#include "qtbackend/nameresolver.h"

#include <chrono>
#include <utility>

namespace Morvex {
namespace {

// One clock for all processes of the machine.
qint64 now()
{
    using namespace std::chrono;
    return duration_cast<microseconds>(steady_clock::now().time_since_epoch()).count();
}

} // namespace

ActionReport::ActionReport(QtModel &model, const Sink &sink)
    : m_model(model)
    , m_sink(sink)
{
}

QString ActionReport::nameOf(const QObject *object, bool isTextKept) const
{
    return object ? NameResolver(m_model).steadyName(object, isTextKept) : QString();
}

int ActionReport::add(const QString &what, const QString &objectName, const QVariantMap &more)
{
    QVariantMap all = more;
    if (!std::exchange(m_isLastCancelled, false) || objectName != m_extrasName)
        m_extras.clear();
    keepExtras(objectName, &all);
    send(++m_lastNumber, what, objectName, all);
    return m_lastNumber;
}

// What comes in place of an action takes over what that had.
void ActionReport::keepExtras(const QString &objectName, QVariantMap *more)
{
    for (const QString &key : {QStringLiteral("fresh"), QStringLiteral("waits")}) {
        if (more->contains(key))
            m_extras[key] = more->value(key);
        else if (m_extras.contains(key))
            more->insert(key, m_extras.value(key));
    }
    m_extrasName = objectName;
}

int ActionReport::add(const QString &what, const QObject *object, const QVariantMap &more)
{
    return add(what, nameOf(object), object, more);
}

int ActionReport::add(const QString &what, const QString &objectName, const QObject *object,
                      const QVariantMap &more)
{
    QVariantMap all = withWaits(object, more);
    if (what == QLatin1String("type"))
        noteTyping(objectName, object, &all);
    return add(what, objectName, all);
}

void ActionReport::addCursor(const QString &objectName, const QObject *object, const QString &keys)
{
    QVariantMap more{{QStringLiteral("text"), keys}};
    // Under a number of its own: what the one before came of may be taken back.
    if (m_lastCursor == m_lastNumber && object == m_typedObject)
        cancel(m_lastCursor);
    noteTyping(objectName, object, &more);
    m_lastCursor = add(QStringLiteral("type"), objectName, more);
}

// Another object may have the name now.
void ActionReport::noteTyping(const QString &objectName, const QObject *object, QVariantMap *more)
{
    if (objectName == m_typedName && object != m_typedObject)
        (*more)[QStringLiteral("fresh")] = true;
    m_typedName = objectName;
    m_typedObject = object;
}

void ActionReport::replace(int number, const QString &what, const QObject *object,
                           const QVariantMap &more)
{
    const QVariantMap all = withWaits(object, more);
    replace(number, what, nameOf(object), all);
}

QVariantMap ActionReport::withWaits(const QObject *object, const QVariantMap &more)
{
    QVariantMap all = more;
    const QStringList waits = m_changes.take(object);
    if (!waits.isEmpty())
        all[QStringLiteral("waits")] = waits;
    return all;
}

void ActionReport::replace(int number, const QString &what, const QString &objectName,
                           const QVariantMap &more)
{
    QVariantMap all = more;
    if (number == m_lastNumber && objectName == m_extrasName)
        keepExtras(objectName, &all);
    if (number > 0)
        send(number, what, objectName, all);
}

void ActionReport::cancel(int number)
{
    m_isLastCancelled = m_isLastCancelled || number == m_lastNumber;
    if (number > 0)
        send(number, QStringLiteral("nothing"), QString(), {});
}

void ActionReport::send(int number, const QString &what, const QString &objectName,
                        const QVariantMap &more)
{
    m_changes.noteAction();
    QVariantMap action = more;
    action[QStringLiteral("number")] = number;
    action[QStringLiteral("time")] = now();
    action[QStringLiteral("what")] = what;
    if (!objectName.isEmpty())
        action[QStringLiteral("object")] = objectName;
    m_sink(action);
}

} // namespace Morvex
