#pragma once

namespace Morvex {

/// Makes engines take the modules of this program as they were compiled with it. A module that was
/// compiled for another version of Qt than the one that runs is compiled again from its source.
void useCompiledScripts();

} // namespace Morvex
