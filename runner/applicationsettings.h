#pragma once

#include "runner/applications.h"

namespace Morvex {

class TestSuite;
struct RunnerOptions;

/// Makes what the command line of a run and its suite say about applications known to its test
/// cases, for which their own command lines have no place.
void passOnApplicationOptions(const RunnerOptions &options, const TestSuite &suite);

/// What holds for the applications of a test case, by its command line, that of the run, and
/// suite.conf in the current directory, in this order.
Applications::Settings applicationSettings(const RunnerOptions &options);

} // namespace Morvex
