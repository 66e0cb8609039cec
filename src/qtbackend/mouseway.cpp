#include "qtbackend/mouseway.h"

#include <QLineF>
#include <QStringList>

#include <algorithm>
#include <cmath>

namespace Morvex {
namespace {

const int maxPlaces = 5000;
const int maxCorners = 1000;
// What is nearer to the line between two corners makes no corner.
const qreal tolerance = 2;
// Nobody moves the mouse quite straight.
const qreal straightTolerance = 10;
const qreal straightShare = 0.15;

qreal distanceTo(const QLineF &line, const QPointF &place)
{
    const QPointF way = line.p2() - line.p1();
    const qreal square = QPointF::dotProduct(way, way);
    const qreal share =
        square > 0 ? qBound(0.0, QPointF::dotProduct(place - line.p1(), way) / square, 1.0) : 0;
    return QLineF(line.pointAt(share), place).length();
}

// The place between both that is farthest from the line between them.
int farthest(const QVector<QPoint> &places, int first, int last, qreal *distance)
{
    int found = first;
    *distance = 0;
    for (int i = first + 1; i < last; ++i) {
        const qreal each = distanceTo(QLineF(places[first], places[last]), places[i]);
        if (each > *distance) {
            *distance = each;
            found = i;
        }
    }
    return found;
}

// In the order of the way, without both ends; without recursion, as the way may be long.
QVector<int> cornersBetween(const QVector<QPoint> &places)
{
    QVector<int> corners;
    QVector<QPair<int, int>> left{{0, places.size() - 1}};
    while (!left.isEmpty()) {
        const auto [first, last] = left.takeLast();
        qreal distance = 0;
        const int corner = farthest(places, first, last, &distance);
        if (distance <= tolerance)
            continue;
        corners += corner;
        left += {{first, corner}, {corner, last}};
    }
    std::sort(corners.begin(), corners.end());
    return corners;
}

bool isAboutStraight(const QVector<QPoint> &places)
{
    qreal distance = 0;
    farthest(places, 0, places.size() - 1, &distance);
    const qreal length = QLineF(places.first(), places.last()).length();
    return distance <= std::max(straightTolerance, straightShare * length);
}

} // namespace

void MouseWay::add(const QPoint &place)
{
    const bool isNear = !m_places.isEmpty() && (place - m_places.last()).manhattanLength() <= 1;
    if (!isNear && m_places.size() < maxPlaces)
        m_places += place;
}

QString MouseWay::corners(const QPoint &begin, const QPoint &end, const QPoint &origin) const
{
    const QVector<QPoint> places = QVector<QPoint>{begin} + m_places + QVector<QPoint>{end};
    QStringList texts;
    if (isAboutStraight(places))
        return {};
    for (const int corner : cornersBetween(places)) {
        const QPoint place = places[corner] - origin;
        texts += QStringLiteral("%1,%2").arg(place.x()).arg(place.y());
    }
    return QStringList(texts.mid(0, maxCorners)).join(QLatin1Char(' '));
}

QVector<QPoint> cornersOf(const QString &text)
{
    QVector<QPoint> corners;
    const QStringList words = text.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    for (const QString &word : words.mid(0, maxCorners)) {
        const QStringList numbers = word.split(QLatin1Char(','));
        bool isX = false;
        bool isY = false;
        const QPoint corner(numbers.value(0).toInt(&isX), numbers.value(1).toInt(&isY));
        if (!isX || !isY || numbers.size() != 2)
            return {};
        corners += corner;
    }
    return corners;
}

} // namespace Morvex
