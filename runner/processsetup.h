#pragma once

namespace Morvex {

/// Makes this process independent of what its caller left it: closed standard descriptors are
/// opened on /dev/null, so that no other file takes their numbers; a reader that went away and a
/// limit on the size of files are errors of a write instead of the end of the process; the ends of
/// children are noticed. To be called first. The children of this process start with the caller's
/// signals.
void setUpProcess();

/// Makes a path in the environment absolute, if it is set: the runner changes its directory.
void makeVariableAbsolute(const char *name);

} // namespace Morvex
