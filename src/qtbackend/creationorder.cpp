#include "qtbackend/creationorder.h"

#include <QHash>
#include <QMutex>
#include <QMutexLocker>

#include <private/qhooks_p.h>

#include <algorithm>
#include <limits>

namespace Morvex {
namespace {

// Children have no other order that lasts: a widget that is raised moves among its siblings.
class Numbers
{
public:
    Numbers()
        : m_nextHook(qtHookData[QHooks::AddQObject])
        , m_nextRemovalHook(qtHookData[QHooks::RemoveQObject])
    {
    }

    void add(QObject *object)
    {
        if (m_nextHook)
            reinterpret_cast<QHooks::AddQObjectCallback>(m_nextHook)(object);
        const QMutexLocker lock(&m_mutex);
        m_numbers.insert(object, m_nextNumber++);
    }

    void remove(QObject *object)
    {
        if (m_nextRemovalHook)
            reinterpret_cast<QHooks::RemoveQObjectCallback>(m_nextRemovalHook)(object);
        const QMutexLocker lock(&m_mutex);
        m_numbers.remove(object);
    }

    void sort(QObjectList *objects)
    {
        const QMutexLocker lock(&m_mutex);
        for (const QObject *object : qAsConst(*objects)) {
            if (!m_numbers.contains(object))
                m_numbers.insert(object, m_nextEarlyNumber++);
        }
        std::sort(objects->begin(), objects->end(), [this](const QObject *a, const QObject *b) {
            return m_numbers.value(a) < m_numbers.value(b);
        });
    }

private:
    // Those of others, such as a debugger for applications.
    const quintptr m_nextHook;
    const quintptr m_nextRemovalHook;
    // Objects are made in all threads.
    QMutex m_mutex;
    QHash<const QObject *, qint64> m_numbers;
    qint64 m_nextEarlyNumber = std::numeric_limits<qint64>::min();
    qint64 m_nextNumber = 0;
};

// Never deleted: objects come and go up to the end of the process.
Numbers &numbers()
{
    static auto *const all = new Numbers;
    return *all;
}

} // namespace

void watchCreation()
{
    static const bool isWatching = [] {
        numbers();
        qtHookData[QHooks::RemoveQObject] = reinterpret_cast<quintptr>(
            QHooks::RemoveQObjectCallback([](QObject *object) { numbers().remove(object); }));
        qtHookData[QHooks::AddQObject] = reinterpret_cast<quintptr>(
            QHooks::AddQObjectCallback([](QObject *object) { numbers().add(object); }));
        return true;
    }();
    Q_UNUSED(isWatching)
}

QObjectList inCreationOrder(QObjectList objects)
{
    if (objects.size() > 1)
        numbers().sort(&objects);
    return objects;
}

} // namespace Morvex
