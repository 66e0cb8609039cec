#include "qtbackend/embedded.h"

#include <QGraphicsProxyWidget>
#include <QGraphicsScene>
#include <QGraphicsView>

#include <algorithm>

namespace Morvex {

QGraphicsProxyWidget *proxyOf(const QWidget *widget)
{
    return widget->window()->graphicsProxyWidget();
}

QGraphicsView *viewOfEmbedded(const QWidget *widget)
{
    const QGraphicsProxyWidget *proxy = proxyOf(widget);
    const QList<QGraphicsView *> views =
        proxy && proxy->scene() ? proxy->scene()->views() : QList<QGraphicsView *>();
    const auto visible = std::find_if(views.begin(), views.end(),
                                      [](const QGraphicsView *view) { return view->isVisible(); });
    return visible == views.end() ? nullptr : *visible;
}

bool isEmbeddedIn(const QWidget *widget, const QWidget *view)
{
    const QGraphicsProxyWidget *proxy = proxyOf(widget);
    const auto *shown = qobject_cast<const QGraphicsView *>(view);
    if (!shown && view)
        shown = qobject_cast<const QGraphicsView *>(view->parentWidget());
    return proxy && shown && proxy->scene() == shown->scene();
}

QWidget *focusWithin(QWidget *focus)
{
    const auto *view = qobject_cast<const QGraphicsView *>(focus);
    const QGraphicsItem *item = view && view->scene() ? view->scene()->focusItem() : nullptr;
    const auto *proxy = qgraphicsitem_cast<const QGraphicsProxyWidget *>(item);
    QWidget *window = proxy ? proxy->widget() : nullptr;
    if (!window)
        return focus;
    return window->focusWidget() ? window->focusWidget() : window;
}

} // namespace Morvex
