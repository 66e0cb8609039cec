#pragma once

namespace Morvex {

struct RunnerOptions;
class UiCoverage;

/// Runs a suite, or lists its test cases, in the parent runner. @p coverage, which may be null,
/// collects what the test cases leave, and puts its page into the log. Returns the exit status.
int runSuite(const RunnerOptions &options, UiCoverage *coverage);

} // namespace Morvex
