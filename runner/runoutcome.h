#pragma once

#include "test/testresult.h"

#include <QDateTime>
#include <QString>
#include <QStringList>

#include <vector>

namespace Morvex {

/// What became of each test case of a run, judged by its last attempt. Fed with the entries of the
/// log in order.
class RunOutcome
{
public:
    void add(const TestResult::Entry &entry);

    int testCaseCount() const { return static_cast<int>(m_testCases.size()); }
    int skippedCount() const;
    /// Each name once, in the order of the run.
    QStringList failedTestCases() const;
    /// Those that passed after a failed attempt.
    QStringList flakyTestCases() const;
    bool hasRun(const QString &testCase) const;

    /// Whether a test case failed, or something outside of all test cases.
    bool hasFailure() const;

    struct Duration
    {
        QString testCase;
        qint64 milliseconds;
    };

    /// The test cases that took longest, all attempts together, longest first.
    std::vector<Duration> slowest(std::size_t count) const;

private:
    struct TestCase
    {
        QString name;
        int attemptsLeft = -1;
        int attempts = 0;
        bool hasFailed = false;
        bool wasSkipped = false;
        qint64 milliseconds = 0;
    };

    void startAttempt(const TestResult::Entry &entry);
    void endAttempt(const QDateTime &time);

    std::vector<TestCase> m_testCases;
    bool m_inTestCase = false;
    QDateTime m_attemptStart;
    bool m_hasFailureOutside = false;
};

} // namespace Morvex
