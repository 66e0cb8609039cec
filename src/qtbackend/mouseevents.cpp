#include "qtbackend/mouseevents.h"

#include "qtbackend/embedded.h"

#include <QGraphicsProxyWidget>
#include <QGraphicsView>
#include <QGuiApplication>
#include <QStyleHints>
#include <QWidget>
#include <qpa/qwindowsysteminterface.h>

// The way of the mouse into a window, which the toolkit exports for its own library for tests.
QT_BEGIN_NAMESPACE
extern Q_GUI_EXPORT void qt_handleMouseEvent(QWindow *window, const QPointF &local,
                                             const QPointF &global, Qt::MouseButtons state,
                                             Qt::MouseButton button, QEvent::Type type,
                                             Qt::KeyboardModifiers modifiers, int timestamp);
QT_END_NAMESPACE

namespace Morvex {
namespace {

// What one step of most mice reports.
const int angleOfStep = 120;

int lastTimestamp = 0;

void send(const MouseSpot &spot, Qt::MouseButtons state, Qt::MouseButton button, QEvent::Type type,
          Qt::KeyboardModifiers modifiers)
{
    if (spot.isValid())
        qt_handleMouseEvent(spot.window, spot.place, spot.window->mapToGlobal(spot.place), state,
                            button, type, modifiers, ++lastTimestamp);
}

} // namespace

MouseSpot MouseSpot::of(const QWidget *widget, const QPoint &place)
{
    const QWidget *window = widget->window();
    const QPoint inWindow = widget->mapTo(window, place);
    const QGraphicsProxyWidget *proxy = proxyOf(widget);
    if (!proxy)
        return {window->windowHandle(), inWindow};
    const QGraphicsView *view = viewOfEmbedded(widget);
    return view ? of(view->viewport(), view->mapFromScene(proxy->mapToScene(inWindow)))
                : MouseSpot();
}

MouseSpot MouseSpot::in(QWindow *other) const
{
    return {other, other && window ? other->mapFromGlobal(window->mapToGlobal(place)) : place};
}

void moveMouse(const MouseSpot &spot, Qt::MouseButtons pressed, Qt::KeyboardModifiers modifiers)
{
    send(spot, pressed, Qt::NoButton, QEvent::MouseMove, modifiers);
}

void pressMouse(const MouseSpot &spot, Qt::MouseButton button, Qt::KeyboardModifiers modifiers)
{
    send(spot, button, button, QEvent::MouseButtonPress, modifiers);
}

void releaseMouse(const MouseSpot &spot, Qt::MouseButton button, Qt::KeyboardModifiers modifiers)
{
    send(spot, Qt::NoButton, button, QEvent::MouseButtonRelease, modifiers);
}

void turnWheel(const MouseSpot &spot, const QPointF &steps, Qt::KeyboardModifiers modifiers)
{
    if (!spot.isValid())
        return;
    const QPoint angle = (steps * -angleOfStep).toPoint();
    QWindowSystemInterface::handleWheelEvent(spot.window, static_cast<ulong>(++lastTimestamp),
                                             spot.place, spot.window->mapToGlobal(spot.place),
                                             QPoint(), angle, modifiers);
}

void passTime(int milliseconds)
{
    lastTimestamp += milliseconds;
}

void endClicks()
{
    lastTimestamp += QGuiApplication::styleHints()->mouseDoubleClickInterval() + 1;
}

} // namespace Morvex
