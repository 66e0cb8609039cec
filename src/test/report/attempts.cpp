#include "test/report/attempts.h"

#include "test/report/resultkinds.h"
#include "test/report/sectionkind.h"

namespace Morvex {

bool isAttemptStart(const TestResult::Entry &entry)
{
    return entry.type == TestResult::START_TEST_CASE ||
           (entry.type == TestResult::START_SECTION && isRepeatable(entry.info));
}

bool isSuccessfulRetry(const std::vector<TestResult::Entry> &entries)
{
    int first = 0;
    int current = 1;
    for (const TestResult::Entry &entry : entries) {
        if (isAttemptStart(entry))
            (first == 0 ? first : current) = entry.retry;
        else if (isFailure(entry.type) && (current > first || current < 1))
            return false;
    }
    return !entries.empty();
}

} // namespace Morvex
