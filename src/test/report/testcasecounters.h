#pragma once

#include "morvex_export.h"
#include "test/testresult.h"

namespace Morvex {

/// The counts of the current test case, as the classic formats show them at its start. An expected
/// failure is among the passes, an unexpected pass among the fails.
struct MORVEX_EXPORT TestCaseCounters
{
    int fails = 0;
    int passes = 0;
    int xfails = 0;
    int xpasses = 0;
    int errors = 0;
    int fatals = 0;
    int warnings = 0;

    void count(TestResult::ResultType type);
};

} // namespace Morvex
