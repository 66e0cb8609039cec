#pragma once

#include "morvex_export.h"

#include <QStringList>

#include <cstddef>
#include <deque>
#include <vector>

namespace Morvex {

class Cancellation;
class TestResult;

/// Bytes of a raw report stream on their way to entries.
struct MORVEX_EXPORT DatagramBuffer
{
    /// Bytes of a datagram that is not complete yet.
    std::vector<char> pending;
    /// Complete payloads, oldest first.
    std::deque<std::vector<char>> datagrams;

    /// Moves each datagram that @p data completes to datagrams.
    void append(const char *data, std::size_t size);

    /// Decodes the complete payloads into @p result. The child's run becomes a test case of the
    /// parent's: START and END turn into START_TEST_CASE, with @p retriesLeft as its retry unless
    /// it has one, and END_TEST_CASE.
    void convertToTestResults(TestResult *result, int retriesLeft);
};

/// One child runner for one attempt of one test case.
class MORVEX_EXPORT TestCaseProcess
{
public:
    /// Codes that no exit status of a child can be.
    enum Code {
        CANNOT_START = -42001,
        TIMED_OUT = -42002,
        ABNORMAL_END = -42003,
        CANCELLED = -42004
    };

    /// Starts $MORVEX_PREFIX/bin/morvexrunner with @p args, and logs in @p result what it reports.
    /// Blocks in an event loop. A timeout of 0 is none. @p cancellation may be null. Returns the
    /// exit status of the child or a Code.
    static int run(const QStringList &args, int timeoutSeconds, int retriesLeft, TestResult *result,
                   Cancellation *cancellation = nullptr);

    /// Where the runner's executable lies, according to MORVEX_PREFIX.
    static QString program();
};

} // namespace Morvex
