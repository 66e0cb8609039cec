#pragma once

#include "morvex_export.h"
#include "test/testresult.h"

#include <cstddef>
#include <deque>
#include <vector>

namespace Morvex {

/// Bytes of a raw report stream on their way to entries.
struct MORVEX_EXPORT DatagramBuffer
{
    /// Bytes of a datagram that is not complete yet.
    std::vector<char> pending;
    /// Complete payloads, oldest first.
    std::deque<std::vector<char>> datagrams;
    /// Where the last entry that has a place in a script came from.
    LineInfo lastPlace;

    /// Moves each datagram that @p data completes to datagrams.
    void append(const char *data, std::size_t size);

    /// Decodes the complete payloads into @p result. The child's run becomes a test case of the
    /// parent's: START and END turn into START_TEST_CASE, with @p retriesLeft as its retry unless
    /// it has one, and END_TEST_CASE.
    void convertToTestResults(TestResult *result, int retriesLeft);
};

} // namespace Morvex
