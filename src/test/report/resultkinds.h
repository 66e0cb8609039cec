#pragma once

#include "test/testresult.h"

namespace Morvex {

/// Whether the type is the outcome of a check.
inline bool isVerification(TestResult::ResultType type)
{
    return type == TestResult::PASS || type == TestResult::FAIL || type == TestResult::XFAIL ||
           type == TestResult::XPASS;
}

/// Whether a result of this type makes its test case fail.
inline bool isFailure(TestResult::ResultType type)
{
    return type == TestResult::FAIL || type == TestResult::XPASS || type == TestResult::FATAL ||
           type == TestResult::ERROR;
}

} // namespace Morvex
