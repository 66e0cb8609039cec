#pragma once

namespace Morvex {

/// Removes a directory with all that is in it, also what its owner may not write to, but not what
/// symbolic links lead to or what is mounted there.
void removeTree(const char *path);

} // namespace Morvex
