#pragma once

#include <QPointer>
#include <QVariant>
#include <QWidget>

namespace Morvex {

struct RecordedTarget;

/// A tab or a section of a header that the user may be about to move to another place in its bar.
class BarMove
{
public:
    BarMove() = default;
    /// The mouse is pressed on the target, which is in this widget.
    BarMove(const RecordedTarget &target, const QWidget *pressed, const QPoint &globalPlace);

    bool isPossible() const { return m_bar && m_from >= 0; }
    /// How a script named what was at the place where it is now. Empty when it was not moved.
    QVariantList movedTo() const;

private:
    int place() const;

    QPointer<const QWidget> m_bar;
    // Of a header.
    int m_section = -1;
    int m_from = -1;
    // In the order before.
    QList<QVariantList> m_items;
};

} // namespace Morvex
