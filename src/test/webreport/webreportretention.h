#pragma once

#include "morvex_export.h"

#include <QString>

namespace Morvex {

struct WebReportRetention
{
    /// Empty on success.
    QString error;
    int removedRuns = 0;
};

/// Removes all but the latest @p keptRuns runs of the suite in @p suiteDirectory, or of each suite
/// when that is empty, from the web report in @p directory, and the files of the report that no run
/// names then. A kill leaves a report with all of its runs, or without them and a list of the
/// files, which the next call works off. Without a lock, as on some file systems, nothing is
/// removed: another process may be writing.
[[nodiscard]] MORVEX_EXPORT WebReportRetention removeOldRuns(const QString &directory,
                                                             unsigned int keptRuns,
                                                             const QString &suiteDirectory);

} // namespace Morvex
