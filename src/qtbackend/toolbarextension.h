#pragma once

class QAction;
class QObject;
class QWidget;

namespace Morvex {

bool isInToolBar(const QWidget *widget);

/// Whether the object is the button of a tool bar that shows what the bar has no room for. That
/// depends on the width of the window.
bool isToolBarExtension(const QObject *object);

/// The widget for the action in the tool bar of such a button; null when there is none.
QWidget *overflowWidgetOf(const QWidget *extension, QAction *action);

/// Shows the object if it is a widget that its tool bar has no room for, as a user does. Returns
/// what stands for it: the object, or its action where that is in a menu of the bar. A bar that
/// was unfolded for another object is folded up.
QObject *reachInToolBar(QObject *object);

} // namespace Morvex
