#include "runner/runoutcome.h"

#include <gtest/gtest.h>

using namespace Morvex;

namespace {

// "a:2" starts the test case a with two attempts left, "." ends it; other words are types.
RunOutcome outcomeOf(const QString &steps)
{
    RunOutcome outcome;
    QDateTime time(QDate(2024, 1, 1), QTime(0, 0));
    for (const QString &step : steps.split(' ', Qt::SkipEmptyParts)) {
        TestResult::Entry entry;
        time = time.addSecs(1);
        entry.time = time;
        if (step.contains(':')) {
            entry.type = TestResult::START_TEST_CASE;
            entry.info = step.section(':', 0, 0);
            entry.retry = step.section(':', 1).toInt();
        } else {
            entry.type = step == "." ? TestResult::END_TEST_CASE : TestResult::stringToResult(step);
        }
        if (entry.type == TestResult::SKIP_SECTION)
            entry.info = "testcase";
        outcome.add(entry);
    }
    return outcome;
}

} // namespace

TEST(RunOutcomeTest, TheLastAttemptOfATestCaseDecides)
{
    const std::tuple<const char *, QStringList, QStringList, int, bool> rows[] = {
        {"a:0 PASS . b:0 FAIL .", {"b"}, {}, 2, true},
        {"a:2 FAIL . a:1 PASS .", {}, {"a"}, 1, false},
        {"a:1 ERROR . a:0 FATAL .", {"a"}, {}, 1, true},
        {"a:0 XPASS . b:0 XFAIL . c:0 WARNING .", {"a"}, {}, 3, true},
        // Named twice on the command line: two executions.
        {"a:0 FAIL . a:0 PASS .", {"a"}, {}, 2, true},
        {"a:1 FAIL . a:0 PASS . a:1 PASS .", {}, {"a"}, 2, false},
        // Left without its end.
        {"a:0 FAIL b:0 PASS END", {"a"}, {}, 2, true},
        {"FAIL a:0 PASS .", {}, {}, 1, true},
        {"", {}, {}, 0, false},
    };
    for (const auto &[steps, failed, flaky, testCases, hasFailure] : rows) {
        const RunOutcome outcome = outcomeOf(steps);
        EXPECT_EQ(outcome.failedTestCases(), failed) << steps;
        EXPECT_EQ(outcome.flakyTestCases(), flaky) << steps;
        EXPECT_EQ(outcome.testCaseCount(), testCases) << steps;
        EXPECT_EQ(outcome.hasFailure(), hasFailure) << steps;
    }
}

TEST(RunOutcomeTest, TimesOfAllAttemptsAddUp)
{
    const RunOutcome outcome = outcomeOf("a:0 LOG . b:1 FAIL LOG . b:0 LOG . c:-1 SKIP_SECTION .");
    const auto slowest = outcome.slowest(2);
    ASSERT_EQ(slowest.size(), 2U);
    EXPECT_EQ(slowest[0].testCase, "b");
    EXPECT_EQ(slowest[0].milliseconds, 5000);
    EXPECT_EQ(slowest[1].milliseconds, 2000);
    EXPECT_EQ(outcome.skippedCount(), 1);
}
