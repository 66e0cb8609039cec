#pragma once

#include "morvex_export.h"

#include <QFlags>
#include <QString>

#include <cstddef>

class QFile;
class QIODevice;

namespace Morvex {

enum OpenReportFileOption {
    /// Leaves a file that holds something, or that another report has taken, alone and takes the
    /// next free name.
    FreshFileName = 1
};
Q_DECLARE_FLAGS(OpenReportFileOptions, OpenReportFileOption)
Q_DECLARE_OPERATORS_FOR_FLAGS(OpenReportFileOptions)

/// Opens @p file for writing without a buffer on @p fileName, whose directory is created when it
/// does not exist. An empty name and "/dev/stdout" stand for the standard output of this process,
/// "/dev/stderr" for its standard error; @p isStdStream, which may be null, says whether it is one
/// of the two. A file that another report has taken, in this run or another one, is an error.
/// Returns an error text, empty on success.
[[nodiscard]] MORVEX_EXPORT QString openReportFile(const QString &fileName,
                                                   OpenReportFileOptions options, QFile *file,
                                                   bool *isStdStream);

/// Writes again what a write leaves over, as on a disk that runs full, since only then the device
/// knows the reason. False when not all could be written; the device's error text says why. To be
/// used on devices without a buffer: theirs may fail later.
MORVEX_EXPORT bool writeWhole(QIODevice *device, const char *data, qint64 size);

/// The same for a file descriptor; errno says why.
MORVEX_EXPORT bool writeWhole(int descriptor, const char *data, std::size_t size);

/// The line on standard error for a report that lacks its end, which is noted.
MORVEX_EXPORT void reportWriteError(const QString &fileName, const QString &reason);

/// Remembers for the rest of this process that a report is not whole.
MORVEX_EXPORT void noteIncompleteReport();
MORVEX_EXPORT bool hasIncompleteReport();
/// How often that was noted; says whether one of several reports in a row is whole.
MORVEX_EXPORT int incompleteReports();

} // namespace Morvex
