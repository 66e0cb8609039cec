#pragma once

#include "morvex_export.h"

#include <QString>

namespace Morvex {

/// Copies what is in the directory @p source into the directory @p target. Links are made again; of
/// one to a file outside of @p source there is a copy of the file, so that nobody writes to it.
/// Sockets and pipes are left out. Returns the path of what could not be copied; empty on success.
[[nodiscard]] MORVEX_EXPORT QString copyTree(const QString &source, const QString &target);

} // namespace Morvex
