#pragma once

#include <QString>

class QAction;
class QObject;
class QWidget;

namespace Morvex {

/// Why a user can't do anything to the object now; empty when nothing is in the way. What covers a
/// part of a widget is not looked at.
[[nodiscard]] QString whyBlocked(const QObject *object);
[[nodiscard]] QString whyBlocked(const QAction *action);

/// As whyBlocked, but lets popups be: that which is open may be one that the keys before have
/// opened, and the next ones are for it.
[[nodiscard]] QString whyBlockedWhileTyping(const QObject *object);

[[nodiscard]] bool isBlockedByDialog(const QWidget *widget);

} // namespace Morvex
