#pragma once

#include "morvex_export.h"
#include "objectmodel/fvector.h"

#include <QString>
#include <QStringList>
#include <QTime>

namespace Morvex {

/// An argument of a recorded method call.
struct MORVEX_EXPORT EventDataArg
{
    enum Kind {
        TEXT = 0,
        NUMBER = 1,
        /// A key, "=" and a value: how something is done, or which of several is meant.
        OPTION = 2,
        /// The real name of another object. What follows is about that one.
        OBJECT = 3
    };

    QString value;
    Kind kind = TEXT;
};

/// A user action that the application under test reports while a test is recorded.
class MORVEX_EXPORT EventData
{
public:
    enum Kind { METHOD_CALL = 1, GLOBAL_CALL = 3, APPLICATION_START = 4 };

    EventData() = default;
    explicit EventData(int kind);

    /// A call of a function that belongs to no object. A @p resultName that is not empty names the
    /// variable for its result.
    EventData(const QString &method, const QStringList &arguments, const QString &resultName);

    /// Of one of Kind; other numbers are events without a method.
    int kind() const { return m_kind; }

    /// Empty for events that are not calls.
    QString methodName() const;
    void setMethodName(const QString &name) { m_methodName = name; }

    QString objectName() const { return m_objectName; }
    void setObjectName(const QString &name) { m_objectName = name; }
    QString resultName() const { return m_resultName; }

    const FVector<EventDataArg> &arguments() const { return m_arguments; }
    void addArgument(const EventDataArg &argument) { m_arguments.append(argument); }

    /// Local time; may be invalid.
    QTime time() const { return m_time; }
    void setTime(const QTime &time) { m_time = time; }

    int contextId() const { return m_contextId; }
    void setContextId(int id) { m_contextId = id; }

    /// Milliseconds since the event before.
    int snooze() const { return m_snooze; }
    void setSnooze(int milliseconds) { m_snooze = milliseconds; }

    /// Null unless the event names an item.
    QString itemText() const { return m_itemText; }
    void setItemText(const QString &text) { m_itemText = text; }

    /// The order in which events happened, before their times: a time of day starts again at
    /// midnight.
    quint64 sequence() const { return m_sequence; }
    void setSequence(quint64 sequence) { m_sequence = sequence; }

    friend bool operator<(const EventData &a, const EventData &b)
    {
        return a.m_sequence != b.m_sequence ? a.m_sequence < b.m_sequence : a.m_time < b.m_time;
    }

private:
    int m_kind = 0;
    QString m_methodName;
    QString m_objectName;
    QString m_resultName;
    FVector<EventDataArg> m_arguments;
    QTime m_time;
    int m_contextId = 0;
    int m_snooze = 0;
    QString m_itemText;
    quint64 m_sequence = 0;
};

} // namespace Morvex
