#include "test/report/openreport.h"

#include "shared/realpath.h"
#include "shared/system/trace.h"

#include <QDir>

namespace Morvex {
namespace {

QString reason(const QString &error)
{
    return error.isEmpty() ? QString() : QLatin1String(": ") + error;
}

} // namespace

QString resultDirectoryError(QLatin1String format, const QString &path, const QString &resultDir)
{
    if (!resultDir.isEmpty())
        return QStringLiteral("Cannot create %1 report, another result directory is already set: "
                              "%2")
            .arg(format, resultDir);
    return path.isEmpty() ? QStringLiteral("Missing target directory") : QString();
}

StreamResult openInDirectory(QLatin1String format, const QString &path, const QString &fileName,
                             ReportStream::Buffering buffering, QString *resultDir)
{
    const QString error = resultDirectoryError(format, path, *resultDir);
    if (!error.isEmpty())
        return {nullptr, error};
    const QDir dir(cleanedPath(path));
    if (!dir.mkpath(QStringLiteral(".")))
        return {nullptr, QStringLiteral("Could not create directory '%1'").arg(dir.path())};
    auto lock = std::make_unique<FileLock>(dir.path());
    if (lock->isHeldElsewhere())
        return {nullptr, QStringLiteral("Another run is writing a report to '%1'; wait for its end "
                                        "or give another directory")
                             .arg(dir.path())};
    *resultDir = dir.path();
    qCDebug(traceReportGen) << "report dir " << dir.path();
    qCDebug(traceReportGen) << "report file " << dir.filePath(fileName);
    return openStream(dir.filePath(fileName), TargetContent::Replaced, buffering, std::move(lock));
}

StreamResult openStream(const QString &fileName, TargetContent content,
                        ReportStream::Buffering buffering, std::unique_ptr<FileLock> lock)
{
    auto stream = std::make_unique<ReportStream>(fileName, content, buffering, std::move(lock));
    if (!stream->isOpen())
        return {nullptr, QStringLiteral("Could not open '%1' for writing").arg(fileName) +
                             reason(stream->takenError())};
    return {std::move(stream), QString()};
}

} // namespace Morvex
