#pragma once

#include <QPointer>
#include <QString>

namespace Morvex {

class ActionReport;

/// Reports keys one by one, as they are pressed.
class KeyReport
{
public:
    explicit KeyReport(ActionReport &report)
        : m_report(report)
    {
    }

    /// The keys as typeText takes them. Returns the number of the action.
    int add(QObject *target, const QString &keys);
    /// A key is pressed in it: what is typed next goes to the object of the name that it has now,
    /// as it may show modifiers in place of its text.
    void keepName(QObject *target);
    /// That something is typed that is not for others to see: once for all keys, as their number
    /// is a secret, too.
    void addSecret(QObject *target);

private:
    bool isContinued(const QObject *target) const;

    ActionReport &m_report;
    int m_lastSecret = 0;
    // What was typed into last, as long as nothing else was done.
    QPointer<QObject> m_typedInto;
    QString m_typedIntoName;
    int m_lastTyped = 0;
    QPointer<QObject> m_named;
    QString m_keptName;
};

} // namespace Morvex
