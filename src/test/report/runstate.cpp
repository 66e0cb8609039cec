#include "test/report/runstate.h"

namespace Morvex {

void RunState::update(TestResult::ResultType type)
{
    switch (type) {
    case TestResult::START:
        isStarted = true;
        break;
    case TestResult::END:
        isComplete = true;
        break;
    case TestResult::START_TEST_CASE:
        isTestCaseComplete = false;
        currentTestHasFailure = false;
        break;
    case TestResult::END_TEST_CASE:
        isTestCaseComplete = true;
        break;
    case TestResult::FATAL:
    case TestResult::ERROR:
    case TestResult::FAIL:
        currentTestHasFailure = true;
        lastScenarioHasError = true;
        break;
    case TestResult::START_SECTION:
    case TestResult::END_SECTION:
    case TestResult::SKIP_SECTION:
    case TestResult::LOG:
    case TestResult::PASS:
    case TestResult::XFAIL:
    case TestResult::XPASS:
    case TestResult::WARNING:
    case TestResult::ATTACHMENT:
    case TestResult::STARTVIDEOCAPTURE:
    case TestResult::ENDVIDEOCAPTURE:
    case TestResult::NONE:
        break;
    }
}

} // namespace Morvex
