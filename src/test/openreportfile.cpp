#include "test/openreportfile.h"

#include "shared/realpath.h"
#include "shared/system/trace.h"
#include "test/output/reporttarget.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <unistd.h>

namespace Morvex {
namespace {

std::atomic<int> incompleteCount{0};

const QIODevice::OpenMode unbuffered = QIODevice::WriteOnly | QIODevice::Unbuffered;

[[nodiscard]] QString openStandardStream(std::FILE *stream, QFile *file)
{
    const QString error = takeStandardStream(stream);
    if (error.isEmpty())
        file->open(stream, unbuffered);
    return error;
}

[[nodiscard]] QString openNamedFile(const QString &path, bool isFresh, QFile *file)
{
    const QFileInfo given(path);
    const QDir dir(cleanedPath(given.path()));
    if (!dir.exists()) {
        qCDebug(traceReportGen) << "creating report dir: " << dir.path();
        if (!dir.mkpath(QStringLiteral(".")))
            return QStringLiteral("Could not create report directory '%1'").arg(dir.path());
    }
    const QString fileName = dir.filePath(given.fileName());
    const QString error = isFresh ? openFreeReportTarget(fileName, file)
                                  : openReportTarget(fileName, TargetContent::Replaced, file);
    qCDebug(traceReportGen) << "opening report file: " << file->fileName();
    if (error.isEmpty())
        return {};
    return QStringLiteral("Could not open report file '%1' for writing: %2")
        .arg(file->fileName(), error);
}

} // namespace

bool writeWhole(QIODevice *device, const char *data, qint64 size)
{
    qint64 written = 0;
    while (written < size) {
        const qint64 count = device->write(data + written, size - written);
        if (count <= 0)
            return false;
        written += count;
    }
    return true;
}

bool writeWhole(int descriptor, const char *data, std::size_t size)
{
    while (size > 0) {
        const ssize_t written = ::write(descriptor, data, size);
        if (written < 0 && errno != EINTR)
            return false;
        const std::size_t done = written > 0 ? static_cast<std::size_t>(written) : 0;
        data += done;
        size -= done;
    }
    return true;
}

void noteIncompleteReport()
{
    ++incompleteCount;
}

bool hasIncompleteReport()
{
    return incompleteCount > 0;
}

int incompleteReports()
{
    return incompleteCount;
}

void reportWriteError(const QString &fileName, const QString &reason)
{
    noteIncompleteReport();
    std::fprintf(stderr, "morvexrunner: Could not write report file '%s': %s\n",
                 qUtf8Printable(fileName), qUtf8Printable(reason));
}

QString openReportFile(const QString &fileName, OpenReportFileOptions options, QFile *file,
                       bool *isStdStream)
{
    std::FILE *const stream = standardStream(fileName);
    if (isStdStream)
        *isStdStream = stream != nullptr;
    return stream ? openStandardStream(stream, file)
                  : openNamedFile(fileName, options.testFlag(FreshFileName), file);
}

} // namespace Morvex
