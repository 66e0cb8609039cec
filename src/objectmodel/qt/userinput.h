#pragma once

#include <QPoint>
#include <QString>

#include <optional>

class QObject;

namespace Morvex {

/// What a user does to an object. Each returns an error text, empty on success: a hidden or
/// disabled object can't be used.

/// Presses and releases the left mouse button in the middle, or at @p place in the widget; triggers
/// an action.
QString clickObject(QObject *object, const std::optional<QPoint> &place);

/// Types a text with the keyboard. "<Return>", "<Ctrl+A>" and the like are keys; "<<" is "<".
QString typeText(QObject *object, const QString &text);

} // namespace Morvex
