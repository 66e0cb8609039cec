#pragma once

#include <QObject>

class QWindow;

namespace Morvex {

// The tree in which names look for objects: the one of the toolkit, but for items of Qt Quick,
// which are where they are seen.

/// In the order in which they were made.
QObjectList childObjectsOf(const QObject *object);
QObject *parentObjectOf(const QObject *object);

/// Those of items that are in no other window, in the order in which they were made; each is an
/// object with its items.
QObjectList sceneWindows();

/// The item that has all those of the window or widget that an event is for; null where there are
/// none.
QObject *sceneRootOf(QObject *receiver);

/// Whether it is an item of Qt Quick.
bool isSceneItem(const QObject *object);

/// The name of the object's type; without the number that Qt Quick gives to those of its files.
QString typeNameOf(const QMetaObject *type);

} // namespace Morvex
