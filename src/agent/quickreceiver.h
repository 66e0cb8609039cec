#pragma once

#include <QObjectList>
#include <QPointF>

class QQuickItem;

namespace Morvex {

/// The item that a click at a place of the scene is for: that which takes the mouse, of a mouse
/// area the one that it is in. Where none does, the topmost one that is drawn, else @p root.
QQuickItem *clickedItem(QQuickItem *root, const QPointF &place);

/// The item that gets a press of the button at a place of the scene first; null for none.
QQuickItem *takerAt(QQuickItem *root, const QPointF &place, Qt::MouseButton button);

/// The topmost item at a place of the scene that draws something; null for none.
QQuickItem *drawnItem(QQuickItem *root, const QPointF &place);

/// The popups that are open in the item that is above all for them.
QObjectList popupsOf(const QQuickItem &overlay);

/// The item that would take a click at this place of the scene in place of @p item; null for none.
/// Items around it and in it are for it, and so is a mouse area beside it.
QQuickItem *coverOf(QQuickItem *root, const QQuickItem *item, const QPointF &place);

} // namespace Morvex
