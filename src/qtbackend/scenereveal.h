#pragma once

class QObject;

namespace Morvex {

class InputSequence;

/// Adds what has to be done before an item of Qt Quick can be used: activates its window, waits
/// until nothing moves, scrolls.
void revealSceneItem(QObject *item, InputSequence &input);

/// Waits until nothing moves around the item and no popup opens or closes.
void waitForSceneAtRest(QObject *item, InputSequence &input);

} // namespace Morvex
