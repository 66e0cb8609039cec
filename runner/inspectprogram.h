#pragma once

namespace Morvex {

struct RunnerOptions;

/// Starts a program and prints its objects with their names, or what the user clicks on in it until
/// it ends. Returns the status of the exit.
int inspectProgram(const RunnerOptions &options);

} // namespace Morvex
