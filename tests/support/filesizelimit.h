#pragma once

#include <csignal>
#include <sys/resource.h>

namespace MorvexTest {

/// What a disk that runs full does, to each file of this process: the write that goes beyond
/// @p bytes is cut, the next one fails.
class FileSizeLimit
{
public:
    explicit FileSizeLimit(rlim_t bytes);
    ~FileSizeLimit();

    FileSizeLimit(const FileSizeLimit &) = delete;
    FileSizeLimit &operator=(const FileSizeLimit &) = delete;

private:
    rlimit m_before = {};
    void (*m_handler)(int);
};

} // namespace MorvexTest
