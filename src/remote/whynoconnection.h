#pragma once

#include <QString>

namespace Morvex {

class WatchedProcess;

/// What is known of a program that can't be tested. Silence would be the worst answer. @p waited is
/// how long it was waited for, in milliseconds; negative when it has ended before.
QString whyNoConnection(const QString &program, const WatchedProcess &process, int waited);

} // namespace Morvex
