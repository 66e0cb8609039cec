#pragma once

#include "morvex_export.h"

#include <QDateTime>

namespace Morvex {

/// The current local time, as QDateTime::currentDateTime gives it. Asked again within the same
/// millisecond it costs no more than a look at the clock: the conversion to local time, which looks
/// after the file of the time zone, takes longer than all else that is done for a log entry.
MORVEX_EXPORT QDateTime currentLocalTime();

} // namespace Morvex
