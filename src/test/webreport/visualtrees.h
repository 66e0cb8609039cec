#pragma once

#include "morvex_export.h"

#include <QString>

namespace Morvex {

/// Writes what the page shows of a visual verification of `object` that failed: both trees of
/// elements with the differences marked, compared again from the file of the point and the stored
/// snapshot. It is beside the snapshot as its path and ".js"; where one of the two can't be read,
/// it says so. False when it could not be written.
MORVEX_EXPORT bool writeVisualTrees(const QString &pointFile, const QString &object,
                                    const QString &snapshotFile);

} // namespace Morvex
