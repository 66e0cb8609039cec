#pragma once

namespace Morvex {

struct RunnerOptions;

/// Runs a suite, or lists its test cases, in the parent runner. Returns the exit status.
int runSuite(const RunnerOptions &options);

} // namespace Morvex
