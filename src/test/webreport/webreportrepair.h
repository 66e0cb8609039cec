#pragma once

#include "morvex_export.h"

#include <QByteArray>
#include <QString>

#include <memory>
#include <vector>

namespace Morvex {

class FileLock;

struct WebReportRepair
{
    /// Empty on success. The report can be repaired again otherwise.
    QString error;
    /// Another process writes or repairs the report; this one has waited a moment for it.
    bool isInUse = false;
    bool isRepaired = false;
    /// One line for the user's eye: what was repaired, or that nothing was to be done.
    QString message;
};

/// Closes what a run that was killed left open in the data file of the web report in @p directory,
/// and marks that run as not ended. Entries that are not complete are dropped, and so is what
/// comes after the place where a run stops being a document; all other runs stay byte for byte. A
/// report that a running process still writes is an error, and so is a file that was damaged in
/// another way.
[[nodiscard]] MORVEX_EXPORT WebReportRepair repairWebReport(const QString &directory);

/// The same, and leaves in @p lock what keeps others from the report, repaired or not. Null when it
/// is in use or none.
[[nodiscard]] MORVEX_EXPORT WebReportRepair lockAndRepairWebReport(const QString &directory,
                                                                   std::unique_ptr<FileLock> *lock);

/// A part of a data file, from byte @p begin to byte @p end, and what replaces it.
struct WebReportEdit
{
    qint64 begin;
    qint64 end;
    QByteArray text;
    /// Which run of the file it is, from 1.
    int run;
    bool isEnded;
};

struct WebReportEdits
{
    /// Empty on success.
    QString error;
    /// In the order of the file; empty when it is whole.
    std::vector<WebReportEdit> edits;
    int runs = 0;
};

/// What has to be changed in the @p size bytes of a data file at @p data.
MORVEX_EXPORT WebReportEdits webReportEdits(const char *data, qint64 size);

/// Makes the edits in a file whose content is at @p data. An error text, empty on success; the file
/// is as it was then, unless just its end was to be edited. A kill leaves it as it was or edited,
/// where it can be replaced as writeFileSafely() says.
[[nodiscard]] MORVEX_EXPORT QString replaceWebReportData(const QString &fileName, const char *data,
                                                         qint64 size,
                                                         const std::vector<WebReportEdit> &edits);

/// The data file with the edits made.
MORVEX_EXPORT QByteArray applyWebReportEdits(const char *data, qint64 size,
                                             const std::vector<WebReportEdit> &edits);

} // namespace Morvex
