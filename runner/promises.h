#pragma once

namespace Morvex {

/// Runs what the promises of scripts have left to do, and what that leads to. A chain without end
/// is a script without end.
void keepPromises();

} // namespace Morvex
