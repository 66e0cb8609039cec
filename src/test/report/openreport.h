#pragma once

#include "morvex_export.h"
#include "shared/files/filelock.h"
#include "test/output/reportfile.h"
#include "test/output/reportstream.h"
#include "test/testreportgenerator.h"

#include <QLatin1String>
#include <QString>

#include <memory>
#include <ostream>
#include <utility>

namespace Morvex {

// Opening what a report is written to, as the static create of each format does it.

/// The generator that @p make makes of the open file at @p path, or the error.
template <typename Make>
TestReportGenerator::Result createInFile(const QString &path, OpenReportFileOptions options,
                                         ReportFile::Encoding encoding, Make make)
{
    auto file = std::make_unique<ReportFile>();
    const QString error = file->open(path, options, encoding);
    if (!error.isEmpty())
        return {nullptr, error};
    return {make(std::move(file)), QString()};
}

/// An open stream or a non-empty error text.
struct StreamResult
{
    std::unique_ptr<std::ostream> stream;
    QString error;
};

/// Makes the directory @p path, which no other run can take before the stream is deleted, and opens
/// @p fileName in it. Records the directory in @p resultDir.
MORVEX_EXPORT StreamResult openInDirectory(QLatin1String format, const QString &path,
                                           const QString &fileName,
                                           ReportStream::Buffering buffering, QString *resultDir);

/// What openInDirectory begins with: an error text when there is no path, or another result
/// directory already; otherwise empty.
[[nodiscard]] MORVEX_EXPORT QString resultDirectoryError(QLatin1String format, const QString &path,
                                                         const QString &resultDir);

/// What openInDirectory ends with. @p lock, which may be null, is kept as long as the stream.
MORVEX_EXPORT StreamResult openStream(const QString &fileName, TargetContent content,
                                      ReportStream::Buffering buffering,
                                      std::unique_ptr<FileLock> lock);

} // namespace Morvex
