#pragma once

#include "morvex_export.h"

#include <QString>

class QFile;

namespace Morvex {

// A file that is open for one report: no other report, of this run or of another one, can take it
// before it is closed. A device, and a file of a file system without locks, can be taken by many.
// Child processes do not inherit it.

enum class TargetContent { Replaced, ReplacedAndRead, Kept };

/// Opens @p file without a buffer on @p fileName, at its start, or with TargetContent::Kept for
/// writing at its end. Its content is dropped only once it is sure that no other report has it.
/// Returns why it can't be opened, empty on success.
[[nodiscard]] MORVEX_EXPORT QString openReportTarget(const QString &fileName, TargetContent content,
                                                     QFile *file);

/// Leaves a file that holds something, or that another report has taken, alone and opens the first
/// name with a number that is free instead.
[[nodiscard]] MORVEX_EXPORT QString openFreeReportTarget(const QString &fileName, QFile *file);

} // namespace Morvex
