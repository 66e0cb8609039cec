#pragma once

class QObject;
class QPoint;

namespace Morvex {

// What items of Qt Quick do with the mouse beyond clicks, as far as it can be seen from outside.

/// Whether anything is done when the item says it.
bool isConnected(const QObject *item, const char *signal);

bool hasTapHandler(const QObject *item);

/// The milliseconds after which it matters that a button is held on the item that has the press;
/// more than anybody holds it where it never does.
int holdIntervalOf(const QObject *taker);

/// The item around this one that may show it only while the mouse is over it; null for none.
QObject *hoveredAround(const QObject *item, const QPoint &windowPlace);

/// The item there that has a use for the wheel of its own; null for none.
QObject *wheeledAt(QObject *root, const QPoint &windowPlace);

/// That in the item over which something is dragged now; null for none.
QObject *dropAreaAt(const QObject *item, const QPoint &windowPlace);

/// Whether the mouse that is moved with a button pressed does something in the item that has the
/// press.
bool isDragged(const QObject *taker);

/// Whether it moves an item then.
bool movesItem(const QObject *taker);

/// The item with a handler of drags that a press on the item comes to; null for none.
QObject *draggedAround(QObject *item);

/// Whether the handler of the item drags now.
bool isDragging(const QObject *item);

/// Whether the item stops to move when it is pressed.
bool isMoving(const QObject *item);

/// Items that are moved by dragging what is in them.
bool isScrolling(const QObject *item);

} // namespace Morvex
