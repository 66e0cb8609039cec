#pragma once

#include "test/testresult.h"

/// Logs this many equal results of checks in a script, in a run that it starts and does not end.
inline void logPassingChecks(Morvex::TestReportGenerator *generator, int count)
{
    using Morvex::TestResult;
    TestResult result(generator);
    result.start("suite", {}, {});
    const Morvex::LineInfo line("/suites/suite_a/tst_a/script.js", 42);
    const QString message = "The condition holds";
    const QString details = "Got expected 'value'.";
    for (int i = 0; i < count; ++i)
        result.addResult(TestResult::PASS, message, details, line, {}, -1);
}
