#pragma once

#include <QPoint>
#include <QString>

#include <optional>

class QObject;

namespace Morvex {

/// What a user does to an object. Each returns an error text, empty on success: an object that is
/// hidden, disabled, covered, or blocked by a modal dialog or an open popup can't be used.

enum class ClickKind { Single, Double };

/// Presses and releases the left mouse button at @p place in the widget, in a scroll area in what
/// it shows; without a place where the widget reacts, mostly in its middle. Reaches the widget
/// inside that is there. Triggers an action.
[[nodiscard]] QString clickObject(QObject *object, const std::optional<QPoint> &place,
                                  ClickKind kind = ClickKind::Single);

/// Whether input to the object has to wait until its window is active, for which it asks then.
/// False for an object that can't be used, and for null.
bool activateForInput(QObject *object);

/// Types a text with the keyboard, beginning in the widget: keys go where the focus is. "<Return>",
/// "<Ctrl+A>" and the like are keys; "<<" is "<".
[[nodiscard]] QString typeText(QObject *object, const QString &text);

} // namespace Morvex
