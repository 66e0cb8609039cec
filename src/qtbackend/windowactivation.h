#pragma once

#include "qtbackend/inputsequence.h"

namespace Morvex {

/// The next step waits until that holds, which takes a window manager. It may refuse: one that has
/// done so is given less time from then on.
void waitForActivation(const InputSequence::Condition &isActive, InputSequence &input);

} // namespace Morvex
