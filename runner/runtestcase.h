#pragma once

namespace Morvex {

struct RunnerOptions;

/// Runs one test case of the suite in the current directory, in this process: what a child runner
/// does. Returns the exit status.
int runTestCase(const RunnerOptions &options);

} // namespace Morvex
