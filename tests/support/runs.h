#pragma once

#include "test/testresult.h"

#include <vector>

namespace MorvexTest {

/// A run to feed to reports, without START and END.
struct SampleRun
{
    const char *name;
    void (*log)(Morvex::TestResult &result);
};

/// The situations that every report has to get right: from an empty run to one with all that may go
/// wrong at once.
const std::vector<SampleRun> &allRuns();

/// START, the entries of the run and END.
void logRun(const SampleRun &run, Morvex::TestResult &result);

/// Nested and dangling sections, retries, a crash, expected failures, texts of a megabyte and of
/// control characters, names with dots and slashes, results outside of any test case.
void logHardRun(Morvex::TestResult &result);

/// U+0001 to U+00A0 and U+FFFE, U+FFFF, halves of surrogate pairs, markup, a terminator of a CDATA
/// section, an escape sequence of a terminal and a character beyond the BMP.
QString hostileText();

} // namespace MorvexTest
