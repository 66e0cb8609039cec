#include "test/report/retrylimit.h"

#include "test/report/sectionkind.h"

namespace Morvex {

void RetryLimit::beforeEntry(const TestResult::Entry &entry)
{
    const bool isAttempt = entry.type == TestResult::START_TEST_CASE ||
                           (entry.type == TestResult::START_SECTION && isScenario(entry.info));
    if (isAttempt && m_value == 0 && entry.retry >= 0)
        m_value = entry.retry;
}

void RetryLimit::afterEntry(const TestResult::Entry &entry)
{
    const bool isStart =
        entry.type == TestResult::START_TEST_CASE || entry.type == TestResult::START_SECTION;
    if (isStart && entry.retry == 0)
        m_value = 0;
}

} // namespace Morvex
