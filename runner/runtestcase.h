#pragma once

namespace Morvex {

struct RunnerOptions;
class UiCoverage;

/// Runs one test case of the suite in the current directory, in this process: what a child runner
/// does. @p coverage, which may be null, collects what it leaves, and puts its page into the log.
/// Returns the exit status.
int runTestCase(const RunnerOptions &options, UiCoverage *coverage);

} // namespace Morvex
