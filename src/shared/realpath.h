#pragma once

#include "morvex_export.h"

#include <QString>

namespace Morvex {

/// The absolute path with all symbolic links resolved; @p path unchanged when it can't be resolved,
/// for instance since the file does not exist.
MORVEX_EXPORT QString realPath(const QString &path);

} // namespace Morvex
