#pragma once

namespace Morvex {

/// Lets a test case that has started this program use it. For programs that Qt is linked to
/// statically; no other one has to call it. Call it in the main thread after the application object
/// is made; without such a test case, and when there is an agent already, it does nothing.
void startAgent();

} // namespace Morvex
