#pragma once

#include "test/testresult.h"

#include <vector>

namespace Morvex {

/// Whether the entry begins a test case, or a section that may be repeated.
bool isAttemptStart(const TestResult::Entry &entry);

/// Whether only attempts have failed that were made again. @p entries are the starts of attempts
/// and the failures of a run, in order; false when there are none.
bool isSuccessfulRetry(const std::vector<TestResult::Entry> &entries);

} // namespace Morvex
