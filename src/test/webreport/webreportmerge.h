#pragma once

#include "morvex_export.h"

#include <QString>
#include <QStringList>

namespace Morvex {

struct WebReportMerge
{
    /// Empty on success; there is no target then.
    QString error;
    /// What the merged report does not hold as the others did, a line each.
    QStringList warnings;
    int runs = 0;
};

/// Makes the web report @p target of the runs of the other ones, in the order in which they
/// started, with the files they name. The others stay as they are; what is cut in them is closed in
/// the target. With @p joinRuns runs of suites of one name that started in the same second, as
/// shards of one run do, become one run.
[[nodiscard]] MORVEX_EXPORT WebReportMerge mergeWebReports(const QString &target,
                                                           const QStringList &reports,
                                                           bool joinRuns);

} // namespace Morvex
