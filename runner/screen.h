#pragma once

namespace Morvex {

/// Whether applications that are started from here show windows to a user.
bool hasScreen();

} // namespace Morvex
