#pragma once

class QAbstractItemDelegate;
class QWidget;

namespace Morvex {

/// Whether the widget's class is one of the application or of its libraries, and not one of the
/// toolkit.
bool isOfOwnClass(const QWidget *widget);

/// Whether such a widget is a part of its window that has none itself, such as a label that the
/// application has made clickable.
bool isOwnPart(const QWidget *widget);

/// Whether such a class handles what the mouse does in an item, so that the place may matter.
bool handlesMouse(const QAbstractItemDelegate *delegate);

} // namespace Morvex
