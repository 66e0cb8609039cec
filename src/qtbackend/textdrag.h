#pragma once

#include "qtbackend/textcursorstate.h"

#include <QPointer>
#include <QString>
#include <QWidget>

namespace Morvex {

class ActionReport;

/// A selected text that is dragged to another place, in the same field or editor or in another one:
/// it is cut, or copied, and pasted there.
class TextDrag
{
public:
    explicit TextDrag(ActionReport &report)
        : m_report(report)
    {
    }

    /// The selection in this field or editor is being dragged; null for anything else.
    void begin(QWidget *source);
    bool isActive() const { return m_source; }
    /// Before it is delivered. False where there is no text.
    bool drop(QWidget *target, const QPoint &globalPlace, bool isMove);
    /// Looks what has become of it.
    void settle();
    /// What was not dropped is no longer dragged.
    void end();

private:
    QString keysWithin() const;

    ActionReport &m_report;
    QPointer<QWidget> m_source;
    QPointer<QWidget> m_target;
    QString m_sourceName;
    QString m_targetName;
    QString m_textBefore;
    TextCursorState m_cursorBefore;
    // The keys that bring the cursor to the place of the drop.
    QString m_way;
    // In the source, from where the text was.
    QString m_wayWithin;
    // Those that select what was dropped.
    QString m_selection;
    int m_start = 0;
    int m_end = 0;
    int m_place = 0;
    bool m_isMove = false;
};

} // namespace Morvex
