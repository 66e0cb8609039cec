#pragma once

namespace Morvex {

/// Lets the application handle what is pending, objects that wait for their deletion included, and
/// what comes until @p milliseconds are over.
void turnEventLoop(int milliseconds);

} // namespace Morvex
