#pragma once

#include "morvex_export.h"
#include "test/testresult.h"

namespace Morvex {

/// False when MORVEX_NOREPORTSUMMARY is set: then generateSummary is not called.
MORVEX_EXPORT bool isReportSummaryWanted();

/// Tells a format that it is being destroyed in the midst of a run. What it has is all that is ever
/// known of this run, so it writes it, with the entry below as the last one: a report that breaks
/// off must not look like a run that passed.
class MORVEX_EXPORT RunWatch
{
public:
    void see(TestResult::ResultType type);

    bool isGivenUp() const { return m_isStarted && !m_isEnded; }
    bool isEnded() const { return m_isEnded; }

    /// An ERROR.
    static TestResult::Entry givenUpEntry();

private:
    bool m_isStarted = false;
    bool m_isEnded = false;
};

} // namespace Morvex
