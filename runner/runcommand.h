#pragma once

namespace Morvex {

struct RunnerOptions;

/// Does what the command line asks for and returns the exit status.
int runCommand(const RunnerOptions &options);

} // namespace Morvex
