#pragma once

#include <sys/types.h>

namespace MorvexTest {

/// Whether a process runs: one that has ended may wait for its parent to ask for its status.
bool isRunning(pid_t process);

/// 0 when the process doesn't exist.
pid_t parentOf(pid_t process);

} // namespace MorvexTest
