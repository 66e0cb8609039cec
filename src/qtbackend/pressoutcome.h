#pragma once

#include "qtbackend/barmove.h"
#include "qtbackend/recordedtarget.h"
#include "qtbackend/textcursorstate.h"

#include <QPersistentModelIndex>

namespace Morvex {

class ActionReport;

/// What a mouse button that is pressed on something leads to, as far as it shows only once the
/// application has had the event.
class PressOutcome
{
public:
    PressOutcome() = default;
    PressOutcome(const RecordedTarget &target, const ActionReport &report);

    /// The press was reported so; @p index is the item, if any.
    void setReported(int number, const QVariantMap &more, const QModelIndex &index,
                     const BarMove &move, const ActionReport &report);

    /// A widget may change once more after the button was released.
    void setReleased() { m_isReleased = true; }
    bool isReleased() const { return m_isReleased; }

    /// Clicked, a bar may show another part of it, but none has another place.
    void setNotMoved() { m_move = {}; }

    void settle(ActionReport &report) const;

private:
    void settleValue(ActionReport &report) const;
    void settleCursor(ActionReport &report) const;
    void settleCheck(ActionReport &report) const;
    void settleMove(ActionReport &report) const;

    RecordedTarget m_target;
    bool m_isReleased = false;
    QString m_name;
    TextCursorState m_cursor;
    QVariant m_value;
    QPersistentModelIndex m_index;
    QVariant m_checkState;
    BarMove m_move;
    QVariantMap m_more;
    int m_number = 0;
};

} // namespace Morvex
