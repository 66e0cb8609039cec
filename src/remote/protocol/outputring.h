#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>

namespace Morvex {

/// The last bytes that an application has written to one of its outputs, in memory that the watcher
/// and the test case share. Byte number n is at n modulo the capacity.
struct OutputRing
{
    static constexpr std::size_t capacity = 1024 * 1024;

    /// How many bytes were written in all. Grows after the bytes are there.
    std::atomic<std::uint64_t> written;
    /// How many bytes are being overwritten: those up to this number less the capacity are lost.
    std::atomic<std::uint64_t> reserved;
    char bytes[capacity];
};

/// The watcher gets it as this descriptor.
struct OutputMemory
{
    static constexpr int descriptor = 4;

    OutputRing standardOutput;
    OutputRing standardError;
};

} // namespace Morvex
