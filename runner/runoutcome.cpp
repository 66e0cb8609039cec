#include "runner/runoutcome.h"

#include "test/report/sectionkind.h"

#include <algorithm>

namespace Morvex {

void RunOutcome::add(const TestResult::Entry &entry)
{
    switch (entry.type) {
    case TestResult::START_TEST_CASE:
        startAttempt(entry);
        break;
    case TestResult::END_TEST_CASE:
    case TestResult::END:
        endAttempt(entry.time);
        break;
    case TestResult::SKIP_SECTION:
        if (m_inTestCase && entry.info == SectionKind::testCase)
            m_testCases.back().wasSkipped = true;
        break;
    case TestResult::FATAL:
    case TestResult::ERROR:
    case TestResult::FAIL:
    case TestResult::XPASS:
        (m_inTestCase ? m_testCases.back().hasFailed : m_hasFailureOutside) = true;
        break;
    default:
        break;
    }
}

// The attempts that are left count down within one test case. The same name again with as many or
// more of them left is another execution, as when a name is given twice.
void RunOutcome::startAttempt(const TestResult::Entry &entry)
{
    endAttempt(entry.time);
    const bool isRetry = !m_testCases.empty() && m_testCases.back().name == entry.info &&
                         entry.retry >= 0 && entry.retry < m_testCases.back().attemptsLeft;
    if (!isRetry) {
        m_testCases.emplace_back();
        m_testCases.back().name = entry.info;
    }
    TestCase &testCase = m_testCases.back();
    testCase.attemptsLeft = entry.retry;
    testCase.hasFailed = false;
    ++testCase.attempts;
    m_inTestCase = true;
    m_attemptStart = entry.time;
}

void RunOutcome::endAttempt(const QDateTime &time)
{
    if (m_inTestCase)
        m_testCases.back().milliseconds += qMax(qint64(0), m_attemptStart.msecsTo(time));
    m_inTestCase = false;
}

int RunOutcome::skippedCount() const
{
    return static_cast<int>(std::count_if(m_testCases.begin(), m_testCases.end(),
                                          [](const TestCase &row) { return row.wasSkipped; }));
}

QStringList RunOutcome::failedTestCases() const
{
    QStringList names;
    for (const TestCase &testCase : m_testCases) {
        if (testCase.hasFailed && !names.contains(testCase.name))
            names += testCase.name;
    }
    return names;
}

QStringList RunOutcome::flakyTestCases() const
{
    QStringList names;
    for (const TestCase &testCase : m_testCases) {
        if (!testCase.hasFailed && testCase.attempts > 1 && !names.contains(testCase.name))
            names += testCase.name;
    }
    return names;
}

bool RunOutcome::hasRun(const QString &testCase) const
{
    return std::any_of(m_testCases.begin(), m_testCases.end(),
                       [&testCase](const TestCase &row) { return row.name == testCase; });
}

bool RunOutcome::hasFailure() const
{
    return m_hasFailureOutside || std::any_of(m_testCases.begin(), m_testCases.end(),
                                              [](const TestCase &row) { return row.hasFailed; });
}

std::vector<RunOutcome::Duration> RunOutcome::slowest(std::size_t count) const
{
    std::vector<Duration> durations;
    for (const TestCase &testCase : m_testCases)
        durations.push_back({testCase.name, testCase.milliseconds});
    std::stable_sort(durations.begin(), durations.end(),
                     [](const auto &a, const auto &b) { return a.milliseconds > b.milliseconds; });
    durations.resize(std::min(count, durations.size()));
    return durations;
}

} // namespace Morvex
