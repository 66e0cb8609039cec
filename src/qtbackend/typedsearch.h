#pragma once

#include <QElapsedTimer>
#include <QPersistentModelIndex>
#include <QPointer>
#include <QString>
#include <QWidget>

namespace Morvex {

class ActionReport;

/// Letters that find an item of a view or of a closed combo box. As it depends on the time between
/// them what they find, the item is reported in their place.
class TypedSearch
{
public:
    explicit TypedSearch(ActionReport &report)
        : m_report(report)
    {
    }

    /// A text that was reported under the number and is not delivered yet.
    void begin(QWidget *target, const QString &text, int number);
    /// It was a shortcut.
    void cancel() { m_number = 0; }
    /// Looks what has become of it.
    void settle();

private:
    bool isFound() const;

    ActionReport &m_report;
    QPointer<QWidget> m_target;
    QPersistentModelIndex m_before;
    int m_rowsBefore = 0;
    // 0 for none.
    int m_number = 0;
    // The letters of one search, and the last action of it.
    QString m_searched;
    QPointer<QWidget> m_searchedIn;
    int m_lastFound = 0;
    QElapsedTimer m_sinceLast;
};

} // namespace Morvex
