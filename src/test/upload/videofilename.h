#pragma once

#include "morvex_export.h"

#include <QString>

namespace Morvex {

/// The name under which the server keeps the video of @p path. With @p create, a new one for each
/// capture; otherwise that of the last capture, or a new one when there was none. May be called
/// from any thread.
MORVEX_EXPORT QString makeFileName(const QString &path, bool create);

} // namespace Morvex
