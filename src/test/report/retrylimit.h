#pragma once

#include "morvex_export.h"
#include "test/testresult.h"

namespace Morvex {

/// How often the test case or scenario that is running may be retried, as far as its entries show:
/// the first attempt knows how many remain, the last one that none does.
class MORVEX_EXPORT RetryLimit
{
public:
    /// 0 when no retry applies.
    int value() const { return m_value; }

    /// To be called with each entry before it is written.
    void beforeEntry(const TestResult::Entry &entry);
    /// To be called with each entry after it was written.
    void afterEntry(const TestResult::Entry &entry);

private:
    int m_value = 0;
};

} // namespace Morvex
