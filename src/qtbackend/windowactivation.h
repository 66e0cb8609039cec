#pragma once

#include "qtbackend/inputsequence.h"

namespace Morvex {

/// The next step waits until that holds, which takes a window manager. It may refuse: one that has
/// done so is given less time from then on.
void waitForActivation(const InputSequence::Condition &isActive, InputSequence &input);

/// The next step waits until the window of the object is active, for which this asks, when input to
/// the object needs that. Does nothing for an object that can't be used, and for null.
void waitForActiveWindow(QObject *object, InputSequence &input);

} // namespace Morvex
