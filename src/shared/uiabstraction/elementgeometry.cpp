#include "shared/uiabstraction/elementgeometry.h"

#include <QDataStream>

namespace Morvex::UIAbstraction {
namespace {

qint64 difference(int a, int b)
{
    return qint64(a) - b;
}

} // namespace

ElementGeometry::ElementGeometry(const QRect &rect, bool isRelative)
    : m_rect(rect)
    , m_isRelative(isRelative)
{
}

int ElementGeometry::width() const
{
    return saturated(difference(m_rect.right(), m_rect.left()) + 1);
}

int ElementGeometry::height() const
{
    return saturated(difference(m_rect.bottom(), m_rect.top()) + 1);
}

ElementGeometry ElementGeometry::relativeTo(const ElementGeometry &base) const
{
    if (m_isRelative)
        return *this;
    if (!base.m_rect.isValid())
        return ElementGeometry(movedTo(0, 0), true);
    const QPoint origin = base.m_rect.topLeft();
    return ElementGeometry(
        movedTo(difference(m_rect.left(), origin.x()), difference(m_rect.top(), origin.y())), true);
}

QRect ElementGeometry::translatedRect(const QPoint &offset) const
{
    return movedTo(qint64(m_rect.left()) + offset.x(), qint64(m_rect.top()) + offset.y());
}

QRect ElementGeometry::movedTo(qint64 x, qint64 y) const
{
    const qint64 right = x + difference(m_rect.right(), m_rect.left());
    const qint64 bottom = y + difference(m_rect.bottom(), m_rect.top());
    return QRect(QPoint(saturated(x), saturated(y)), QPoint(saturated(right), saturated(bottom)));
}

void ElementGeometry::serialize(QDataStream *stream) const
{
    *stream << m_rect << m_isRelative;
}

void ElementGeometry::deserialize(QDataStream *stream)
{
    *stream >> m_rect >> m_isRelative;
}

bool ElementGeometry::operator==(const ElementGeometry &other) const
{
    return m_rect == other.m_rect && m_isRelative == other.m_isRelative;
}

} // namespace Morvex::UIAbstraction
