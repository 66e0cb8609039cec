#pragma once

#include "test/suite/runoptions.h"

#include <QString>
#include <QStringList>

#include <string>
#include <vector>

namespace Morvex {

class FilterInterface;
class LineInfo;
class TestResult;
class TestSuite;

/// One run of a suite's test cases, each attempt in a child process, logged in a result.
class SuiteRun
{
public:
    /// What became of an attempt.
    struct AttemptEnd
    {
        /// An exit status, or a TestCaseProcess::Code.
        int code = 0;
        /// Whether it was cancelled before its child had ended the test case in the log.
        bool wasCutOff = false;
    };

    /// @p suite and @p result have to outlive this object.
    SuiteRun(const TestSuite &suite, TestResult *result, const RunOptions &options);

    /// See TestSuite::run.
    void run(const QStringList &testCases);

    /// See TestSuite::runTestCase.
    AttemptEnd runAttempt(const QString &testCase, int retriesLeft, int retryOption);

    /// Names the suite to the children of this process.
    static void setSuiteDirVariable(const TestSuite &suite);

private:
    enum class Decision { Run, LeaveOut, Abort };

    void logRandomOrder() const;
    void logLeftOut(const QStringList &testCases) const;
    bool runTestCases(const QStringList &testCases, FilterInterface *filter);
    Decision decide(const QString &testCase, FilterInterface *filter) const;
    void warnOfReservedTags(const QString &testCase, const std::vector<std::string> &tags) const;
    bool runWithRetries(const QString &testCase);
    bool isCancelled() const;
    void logStart(const QString &testCase, int retry) const;
    void logSkipped(const QString &testCase) const;
    void logCrash(int signal, const LineInfo &lastPlace) const;
    void closeTestCase(const QString &testCase, int code, bool wasStarted) const;

    const TestSuite &m_suite;
    TestResult *m_result;
    RunOptions m_options;
    int m_retryCount;
};

} // namespace Morvex
