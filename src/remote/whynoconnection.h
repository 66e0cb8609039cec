#pragma once

#include <QStringList>

namespace Morvex {

class WatchedProcess;

/// What is known of a program that can't be tested. Silence would be the worst answer. @p waited is
/// how long it was waited for, in milliseconds; negative when it has ended before. @p unlisted are
/// programs of its processes that could be tested, if the white list named them.
QString whyNoConnection(const QString &program, WatchedProcess &process, int waited,
                        const QStringList &unlisted);

} // namespace Morvex
