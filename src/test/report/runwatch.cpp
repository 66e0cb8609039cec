#include "test/report/runwatch.h"

#include "shared/environment.h"

namespace Morvex {

bool isReportSummaryWanted()
{
    return Environment::getVariable("MORVEX_NOREPORTSUMMARY").empty();
}

void RunWatch::see(TestResult::ResultType type)
{
    m_isStarted = true;
    m_isEnded |= type == TestResult::END;
}

TestResult::Entry RunWatch::givenUpEntry()
{
    TestResult::Entry entry;
    entry.time = QDateTime::currentDateTime();
    entry.type = TestResult::ERROR;
    entry.message = QStringLiteral("Run given up");
    entry.details =
        QStringLiteral("The run was given up before its end. This report holds what was "
                       "logged up to then.");
    entry.vpCounter = 0;
    return entry;
}

} // namespace Morvex
