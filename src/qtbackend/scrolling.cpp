#include "qtbackend/scrolling.h"

#include <QScrollArea>
#include <QWidget>

namespace Morvex {
namespace {

// Null when the widget is not what such an area shows.
QScrollArea *areaThatShows(const QWidget *widget)
{
    const QWidget *viewport = widget->parentWidget();
    auto *area = viewport ? qobject_cast<QScrollArea *>(viewport->parentWidget()) : nullptr;
    return area && area->widget() == widget ? area : nullptr;
}

} // namespace

bool isInSight(const QWidget *widget, QPoint place)
{
    while (widget->rect().contains(place) && !widget->isWindow()) {
        place = widget->mapToParent(place);
        widget = widget->parentWidget();
    }
    return widget->rect().contains(place);
}

void scrollIntoSight(QWidget *widget, const QPoint &place)
{
    QPoint inside = place;
    for (QWidget *at = widget; !at->isWindow(); at = at->parentWidget()) {
        QScrollArea *area = areaThatShows(at);
        if (area && !isInSight(at, inside))
            area->ensureVisible(inside.x(), inside.y());
        inside = at->mapToParent(inside);
    }
}

} // namespace Morvex
