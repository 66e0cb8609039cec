#include "support/capture.h"

#include <cstdio>
#include <gtest/gtest.h>

namespace MorvexTest {

std::string standardErrorOf(const std::function<void()> &action)
{
    testing::internal::CaptureStderr();
    action();
    std::fflush(stderr);
    return testing::internal::GetCapturedStderr();
}

std::string standardOutputOf(const std::function<void()> &action)
{
    testing::internal::CaptureStdout();
    action();
    std::fflush(stdout);
    return testing::internal::GetCapturedStdout();
}

} // namespace MorvexTest
