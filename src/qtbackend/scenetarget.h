#pragma once

#include "qtbackend/recordedtarget.h"

namespace Morvex {

/// What a press of the button on @p taker, the item of Qt Quick that gets it, is about.
RecordedTarget sceneTarget(QObject *taker, const QPoint &windowPlace, Qt::MouseButton button);

/// The place in that object or item.
QPoint placeInSceneTarget(QObject *taker, const QPoint &windowPlace);

/// The item of Qt Quick itself, or as a row of the view that it is in.
RecordedTarget sceneItemTarget(QObject *item);

/// What a user who wants to check something there would point at.
QObject *sceneItemAt(QObject *root, const QPoint &windowPlace);

bool isSceneText(const QObject *item);

/// The window that has all items of this one, or the widget.
QObject *sceneWindowOf(QObject *item);

/// The control that an item is a part of, such as the spin box of a text input; otherwise the item.
QObject *sceneOwnerOf(QObject *item);

} // namespace Morvex
