#pragma once

namespace Morvex {

/// To be called while a window gets an event that it is to be closed: whether the application does
/// that itself, where the toolkit marks both alike. False where it can't be seen.
bool isClosedByProgram();

} // namespace Morvex
