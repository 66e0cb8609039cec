#pragma once

#include "qtbackend/mousetarget.h"

#include <QPointF>
#include <QString>
#include <QVector>

namespace Morvex {

class InputSequence;

/// What a user does to objects. Each adds steps to a sequence and returns an error text, empty on
/// success: an object that is hidden, disabled, covered, or blocked by a modal dialog or an open
/// popup can't be used. Without steps all was done at once.

struct MouseUse
{
    /// "click", "doubleClick", "hover", "drag" or "wheel".
    QString gesture;
    MouseTarget::Place from;
    /// The end of a drag.
    MouseTarget::Place to;
    /// Between both, counted as the place where the drag begins.
    QVector<QPoint> via;
    Qt::MouseButton button = Qt::LeftButton;
    Qt::KeyboardModifiers modifiers;
    /// How many milliseconds a click holds the button.
    int hold = 0;
    /// Steps of the wheel to the right and toward the user.
    QPointF wheel;
};

/// Reaches the widget inside that is there. A click triggers an action that no open menu shows.
[[nodiscard]] QString useMouse(const MouseUse &use, InputSequence &input);

/// Types a text with the keyboard, beginning in the widget: keys go where the focus is. "<Return>",
/// "<Ctrl+A>" and the like are keys; "<<" is "<".
[[nodiscard]] QString typeText(QObject *object, const QString &text, InputSequence &input);

/// The same without a look at whether the widget takes keys, and without giving it the focus.
[[nodiscard]] QString typeKeys(QWidget *widget, const QString &text, InputSequence &input);

/// Adds what closes the window that the object is, or is in, as a user does by its frame. Returns
/// an error text, empty on success.
[[nodiscard]] QString closeWindow(QObject *object, InputSequence &input);

} // namespace Morvex
