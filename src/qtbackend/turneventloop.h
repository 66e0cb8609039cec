#pragma once

#include "morvex_qtbackend_export.h"

namespace Morvex {

/// Lets the application handle what is pending, objects that wait for their deletion included, and
/// what comes until @p milliseconds are over. Waits also after the end that the application has
/// given its own event loop. Called in the main thread.
MORVEX_QTBACKEND_EXPORT void turnEventLoop(int milliseconds);

/// While held, turnEventLoop does nothing: the event loop is that of an application that has one
/// running. Not held at first. Called in the main thread.
MORVEX_QTBACKEND_EXPORT void setEventLoopHeld(bool held);

} // namespace Morvex
