#pragma once

#include "test/testresult.h"

namespace Morvex {

/// How far a log has come, and whether there were failures.
struct RunState
{
    /// To be called with the type of each entry.
    void update(TestResult::ResultType type);

    bool isStarted = false;
    bool isComplete = false;
    bool isTestCaseComplete = false;
    bool currentTestHasFailure = false;
    /// Of all since the owner has cleared it.
    bool lastScenarioHasError = false;
};

} // namespace Morvex
