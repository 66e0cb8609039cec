#pragma once

#include "morvex_export.h"
#include "objectmodel/eventdata.h"

#include <QMap>
#include <QString>
#include <QTime>

#include <memory>

namespace Morvex {

class Class;
class ScriptedObjectMap;

/// Turns the events of a recording into statements of a script language, which a subclass prints:
/// collects them, puts them into the order in which they happened, and adds what the script needs
/// beyond the events, such as switching between applications. Use an object from one thread.
class MORVEX_EXPORT EventRecorder
{
public:
    /// How recorded code waits for the application.
    enum Synchronization : int {
        NO_SYNC = 0,
        /// For the time that passed while recording.
        SNOOZE_SYNC = 1,
        /// For objects. Of setSynchronization this suppresses waiting; a recorder that waits for
        /// objects is constructed as one.
        OBJECT_SYNC = 2
    };

    /// @p map is not owned and may be null: then names come from the installed ObjectMap.
    EventRecorder(bool suppressSync, bool objectSync, ScriptedObjectMap *map);
    virtual ~EventRecorder();

    EventRecorder(const EventRecorder &) = delete;
    EventRecorder &operator=(const EventRecorder &) = delete;

    /// Prints the statement of an event. Called from dequeueEvents, in the order of the script.
    virtual void recordEvent(const EventData &event) = 0;
    virtual QString recordSnooze(int timeoutMs) = 0;
    virtual QString recordObjectWait(const QString &objectName, int timeoutMs) = 0;
    virtual QString recordItemWait(const QString &objectName, const QString &item,
                                   int timeoutMs) = 0;
    virtual QString recordCellWait(const QString &objectName, int row, int column,
                                   int timeoutMs) = 0;

    void queueEvent(const EventData &event);
    /// Records all queued events and forgets them. The variables of contexts are numbered from
    /// "ctx_0" in each call.
    void dequeueEvents();

    /// The code that waits before an action on an object; empty when nothing is waited for.
    /// @p objectName is an expression of the script.
    QString recordSync(const QString &objectName, int timeoutMs);
    QString recordSync(const QString &objectName, const EventData &event, int timeoutMs);
    /// Whether the statement of the event waits by itself.
    bool skipRecordSyncFor(const EventData &event) const;

    int synchronization() const;
    void setSynchronization(EventRecorder::Synchronization synchronization);

    /// Of names of gestures; filled by the subclass.
    QMap<QString, QString> &gestureMap() { return m_gestureMap; }
    const QMap<QString, QString> &gestureMap() const { return m_gestureMap; }

    ScriptedObjectMap *scriptedObjectMap() const { return m_map; }
    /// The expression that stands for an object in the script. Without any map the real name.
    QString createSymbolicName(const QString &realName);

    static bool isItemMethod(const QString &method);
    static bool hasItemRowAndColumn(const EventData &event);
    /// The name to print: a marker within the recording becomes the method that it stands for.
    static QString cleansedMethodName(const QString &method);
    /// Whether the method is one that scripts call without waiting for an object first.
    static bool useWaitForForMethod(const QString &method);
    /// Seconds with one decimal.
    static QString formatSnoozeSecs(int ms);
    /// With the prefix that the language wants for the module of the class.
    static QString generateFullyQualifiedClassName(const Class *objectClass,
                                                   const QString &language,
                                                   const QString &separator);

private:
    class Sequencer;

    bool m_suppressSync;
    bool m_objectSync;
    QMap<QString, QString> m_gestureMap;
    struct Private;
    std::unique_ptr<Private> d;
    ScriptedObjectMap *m_map;
};

/// A short name that no other gesture of the same millisecond clock has; @p time is local, today.
MORVEX_EXPORT QString generateGestureName(const QTime &time);

} // namespace Morvex
