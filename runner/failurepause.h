#pragma once

#include "test/testresult.h"

#include <QString>

namespace Morvex {

/// Makes the test cases started by this process wait after each failure, or not. Returns an error
/// text, empty on success: to wait takes a terminal.
[[nodiscard]] QString setPauseOnFailure(bool isWanted);

/// After a result of this type: when failures are waited for and the script uses an application,
/// leaves everything as it is until a key is pressed in the terminal.
void pauseAfter(TestResult::ResultType type);

} // namespace Morvex
