#pragma once

#include <functional>
#include <string>

namespace MorvexTest {

/// What @p action writes to the standard error output, Qt's warnings included.
std::string standardErrorOf(const std::function<void()> &action);
std::string standardOutputOf(const std::function<void()> &action);

} // namespace MorvexTest
