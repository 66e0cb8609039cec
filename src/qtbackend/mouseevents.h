#pragma once

#include <QPoint>
#include <QPointer>
#include <QWindow>

class QWidget;

namespace Morvex {

/// A place in a window of the screen.
struct MouseSpot
{
    QPointer<QWindow> window;
    /// In the window's coordinates.
    QPoint place;

    bool isValid() const { return window; }

    /// Where a place in the widget is on the screen, also when the widget is drawn within a scene.
    /// Not valid for a widget that no window of the screen shows.
    static MouseSpot of(const QWidget *widget, const QPoint &place);

    /// The same place of the screen in the coordinates of another window.
    MouseSpot in(QWindow *other) const;
};

// What the mouse reports to the application. It is queued and handled when the event loop turns,
// also one that runs in the handling of an event before.

void moveMouse(const MouseSpot &spot, Qt::MouseButtons pressed, Qt::KeyboardModifiers modifiers);
void pressMouse(const MouseSpot &spot, Qt::MouseButton button, Qt::KeyboardModifiers modifiers);
void releaseMouse(const MouseSpot &spot, Qt::MouseButton button, Qt::KeyboardModifiers modifiers);
/// @p steps of the wheel to the right and toward the user.
void turnWheel(const MouseSpot &spot, const QPointF &steps, Qt::KeyboardModifiers modifiers);

/// Delays what follows by this time.
void passTime(int milliseconds);

/// Keeps what follows from being taken for a part of the same double click.
void endClicks();

} // namespace Morvex
