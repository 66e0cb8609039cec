#pragma once

#include <QString>

#include <functional>

namespace Morvex {

/// Where the threads of a process are, as gdb prints it. Empty when there is no gdb, or it is not
/// allowed to look, or takes longer than @p timeout milliseconds. @p idle is called again and again
/// meanwhile; it may be empty.
QString stackTrace(qint64 processId, int timeout, const std::function<void()> &idle);

} // namespace Morvex
