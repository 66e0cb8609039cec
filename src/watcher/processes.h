#pragma once

#include <sys/types.h>

namespace Morvex {

/// How many processes below this one, at any depth, were sent the signal. Those that have ended and
/// are not reaped yet don't count.
int signalDescendants(int signal);

/// Ends all processes below this one: first as their desktop would, then by force. Gives up after
/// some seconds, when one starts more than can be ended. This process has to be the one that
/// orphans among them are given to.
void endDescendants();

/// Ends all processes by force whose environment has a variable that begins with @p beginning, such
/// as "NAME=/directory/": those that a watcher which was killed has left.
void endOthersWith(const char *beginning);

} // namespace Morvex
