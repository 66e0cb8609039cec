#pragma once

class QObject;
class QWidget;
class QWindow;

namespace Morvex {

// Widgets that show items of Qt Quick. The toolkit has a window for the items of each, which is
// never on the screen; here they are in the widget.

/// The item in which all others of the widget are; null for any other object.
QObject *rootItemOf(const QObject *widget);

/// The widget that shows the item; null for one in a window of its own, and for any other object.
QWidget *widgetOf(const QObject *item);

/// Whether it is the window of such a widget.
bool isOfWidget(const QWindow *window);

} // namespace Morvex
