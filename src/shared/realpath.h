#pragma once

#include "morvex_export.h"

#include <QString>

namespace Morvex {

/// The absolute path with all symbolic links resolved; @p path unchanged when it can't be resolved,
/// for instance since the file does not exist.
MORVEX_EXPORT QString realPath(const QString &path);

/// The absolute path without "." and "..". Links are followed only where ".." goes up from one: the
/// name of a link to a directory stays.
MORVEX_EXPORT QString cleanedPath(const QString &path);

} // namespace Morvex
