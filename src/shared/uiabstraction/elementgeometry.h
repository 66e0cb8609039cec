#pragma once

#include "morvex_export.h"

#include <QRect>

#include <limits>

class QDataStream;

namespace Morvex::UIAbstraction {

/// Sums and differences of coordinates from outside are made in 64 bits and brought back by this.
inline int saturated(qint64 number)
{
    using Limits = std::numeric_limits<int>;
    return static_cast<int>(qBound<qint64>(Limits::min(), number, Limits::max()));
}

/// Where an element is: on the screen, or in its parent when it is relative. The coordinates may
/// be any: QRect's own width, height and sums overflow for some.
class MORVEX_EXPORT ElementGeometry
{
public:
    ElementGeometry() = default;
    explicit ElementGeometry(const QRect &rect, bool isRelative = false);

    QRect rect() const { return m_rect; }
    /// Saturated.
    int width() const;
    int height() const;

    bool isRelative() const { return m_isRelative; }
    void setRelative(bool isRelative) { m_isRelative = isRelative; }

    /// The same size at a place relative to @p base. A geometry that is relative already keeps its
    /// place; relative to an invalid base any other is at 0, 0.
    ElementGeometry relativeTo(const ElementGeometry &base) const;
    /// The rectangle moved by @p offset, saturated.
    QRect translatedRect(const QPoint &offset) const;

    void serialize(QDataStream *stream) const;
    void deserialize(QDataStream *stream);

    bool operator==(const ElementGeometry &other) const;
    bool operator!=(const ElementGeometry &other) const { return !(*this == other); }

private:
    QRect movedTo(qint64 x, qint64 y) const;

    QRect m_rect;
    bool m_isRelative = false;
};

} // namespace Morvex::UIAbstraction
