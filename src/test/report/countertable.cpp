#include "test/report/countertable.h"

#include <algorithm>

namespace Morvex {
namespace {

using Counters = TestReportGenerator::Counters;

unsigned bits(std::initializer_list<TestResult::ResultType> types)
{
    unsigned mask = 0;
    for (const TestResult::ResultType type : types)
        mask |= 1U << type;
    return mask;
}

CounterRow row(CounterRow::Member member, const char *key, const char *name, const char *label,
               std::initializer_list<TestResult::ResultType> types, TestResult::ResultType own)
{
    return {member, QLatin1String(key), QLatin1String(name), QLatin1String(label), bits(types),
            own};
}

} // namespace

const std::array<CounterRow, 9> &counterTable()
{
    using T = TestResult;
    static const std::array<CounterRow, 9> table{{
        row(&Counters::tests, "tests", "tests", "Tests", {T::PASS, T::FAIL, T::XFAIL, T::XPASS},
            T::NONE),
        row(&Counters::fails, "fails", "fails", "Fails", {T::FAIL, T::XPASS}, T::FAIL),
        row(&Counters::passes, "passes", "passes", "Passes", {T::PASS, T::XFAIL}, T::PASS),
        row(&Counters::xfails, "xfails", "expected_fails", "Expected Fails", {T::XFAIL}, T::XFAIL),
        row(&Counters::xpasses, "xpasses", "unexpected_passes", "Unexpected Passes", {T::XPASS},
            T::XPASS),
        row(&Counters::testcases, "testcases", "testcases", "Test Cases", {T::START_TEST_CASE},
            T::START_TEST_CASE),
        row(&Counters::errors, "errors", "errors", "Errors", {T::ERROR}, T::ERROR),
        row(&Counters::fatals, "fatals", "fatals", "Fatals", {T::FATAL}, T::FATAL),
        row(&Counters::warnings, "warnings", "warnings", "Warnings", {T::WARNING}, T::WARNING),
    }};
    return table;
}

const CounterRow &counterRow(CounterRow::Member member)
{
    return *std::find_if(counterTable().begin(), counterTable().end(),
                         [member](const CounterRow &row) { return row.member == member; });
}

const std::array<CounterRow::Member, 7> &flatCounters()
{
    static const std::array<CounterRow::Member, 7> members{
        {&Counters::passes, &Counters::fails, &Counters::xfails, &Counters::xpasses,
         &Counters::errors, &Counters::fatals, &Counters::warnings}};
    return members;
}

void countResult(Counters &counters, TestResult::ResultType type)
{
    for (const CounterRow &row : counterTable()) {
        if (row.counts(type))
            ++(counters.*row.member);
    }
}

} // namespace Morvex
