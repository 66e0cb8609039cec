#pragma once

#include <QPoint>

class QAbstractButton;
class QMenu;
class QObject;
class QToolButton;
class QWidget;

namespace Morvex {

// Buttons that have a menu of their own.

/// Null for any other object.
QMenu *menuOfButton(const QObject *button);

/// Whether a click at this place does nothing but open the menu.
bool opensMenu(const QAbstractButton *button, const QPoint &place);
/// The same for the space bar.
bool opensMenu(const QAbstractButton *button);

/// Whether the button is shown as pressed, as it is while its menu is open.
bool isPressed(const QWidget *button);

/// Opens the menu as a user does, which may run a loop of its own.
void openMenuOf(QWidget *button);

} // namespace Morvex
