#include "test/report/testcasecounters.h"

namespace Morvex {

void TestCaseCounters::count(TestResult::ResultType type)
{
    switch (type) {
    case TestResult::FATAL:
        ++fatals;
        break;
    case TestResult::ERROR:
        ++errors;
        break;
    case TestResult::PASS:
        ++passes;
        break;
    case TestResult::FAIL:
        ++fails;
        break;
    case TestResult::XFAIL:
        ++passes;
        ++xfails;
        break;
    case TestResult::XPASS:
        ++fails;
        ++xpasses;
        break;
    case TestResult::WARNING:
        ++warnings;
        break;
    default:
        break;
    }
}

} // namespace Morvex
