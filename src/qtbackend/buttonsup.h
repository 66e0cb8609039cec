#pragma once

#include "morvex_qtbackend_export.h"

#include <functional>

namespace Morvex {

/// Whether no more buttons are down than now. One that is used by a key is down for a while, and
/// works after that only.
MORVEX_QTBACKEND_EXPORT std::function<bool()> buttonsUpAgain();

} // namespace Morvex
