#pragma once

#include "qtbackend/textcursorstate.h"

#include <QPointer>
#include <QWidget>

namespace Morvex {

class ActionReport;

/// The text selected anywhere on the screen that the middle button pastes into a field or an
/// editor. It is typed there, as a script has no such selection.
class SelectionPaste
{
public:
    explicit SelectionPaste(ActionReport &report)
        : m_report(report)
    {
    }

    /// The button is released in it, which it has not seen yet.
    void begin(QWidget *target, const QPoint &globalPlace);
    /// Looks what has become of it.
    void settle();

private:
    void reportKeys(QWidget *target, const QString &keys) const;

    ActionReport &m_report;
    QPointer<QWidget> m_target;
    QString m_name;
    int m_place = 0;
    TextCursorState m_before;
    // Those that bring the cursor to the place.
    QString m_way;
};

} // namespace Morvex
