#pragma once

#include "morvex_export.h"
#include "test/testreportgenerator.h"

#include <QLatin1String>
#include <QString>

#include <array>

namespace Morvex {

/// One of the counters of a run or a test case, and what the formats call it.
struct CounterRow
{
    using Member = int TestReportGenerator::Counters::*;

    bool counts(TestResult::ResultType type) const { return types >> type & 1; }

    Member member;
    /// Of TestReportGenerator::resultCount.
    QLatin1String key;
    /// As an attribute in XML.
    QLatin1String name;
    /// For the user's eye.
    QLatin1String label;
    /// A bit for each type that is counted.
    unsigned types;
    /// The type whose count this is; NONE for a sum.
    TestResult::ResultType own;
};

/// In the order of the summaries.
MORVEX_EXPORT const std::array<CounterRow, 9> &counterTable();
MORVEX_EXPORT const CounterRow &counterRow(CounterRow::Member member);

/// What the flat formats count in each test case, in their order.
MORVEX_EXPORT const std::array<CounterRow::Member, 7> &flatCounters();

MORVEX_EXPORT void countResult(TestReportGenerator::Counters &counters,
                               TestResult::ResultType type);

} // namespace Morvex
