#pragma once

namespace Morvex {

struct RunnerOptions;

/// Records a test case: starts the application and writes what its user does as a script once it
/// has ended, or at SIGINT. Returns the exit status.
int recordTestCase(const RunnerOptions &options);

} // namespace Morvex
