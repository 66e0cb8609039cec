#pragma once

#include <QPoint>
#include <QString>
#include <QVector>

namespace Morvex {

/// The way of the mouse while a button is held, for what is drawn freehand. Texts are places "x,y"
/// with blanks between them.
class MouseWay
{
public:
    /// The places after the first thousands are left out.
    void add(const QPoint &place);

    /// The corners between both ends, relative to @p origin. Empty when the way is roughly
    /// straight, as that of somebody who draws a frame.
    QString corners(const QPoint &begin, const QPoint &end, const QPoint &origin) const;

private:
    QVector<QPoint> m_places;
};

/// Empty for a text that is none of corners().
QVector<QPoint> cornersOf(const QString &text);

} // namespace Morvex
