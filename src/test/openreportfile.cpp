#include "test/openreportfile.h"

#include "shared/trace.h"
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

bool openStdStream(const QString &fileName, QFile *file)
{
    if (fileName.isEmpty() || fileName == QLatin1String("/dev/stdout"))
        file->open(stdout, unbuffered);
    else if (fileName == QLatin1String("/dev/stderr"))
        file->open(stderr, unbuffered);
    else
        return false;
    return true;
}

[[nodiscard]] QString openNamedFile(const QString &fileName, bool isFresh, QFile *file)
{
    const QDir dir = QFileInfo(fileName).absoluteDir();
    if (!dir.exists()) {
        qCDebug(traceReportGen) << "creating report dir: " << dir.path();
        if (!dir.mkpath(QStringLiteral(".")))
            return QStringLiteral("Could not create report directory '%1'").arg(dir.path());
    }
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
    const bool isStd = openStdStream(fileName, file);
    if (isStdStream)
        *isStdStream = isStd;
    if (isStd)
        return {};
    return openNamedFile(QDir::current().absoluteFilePath(fileName),
                         options.testFlag(FreshFileName), file);
}

} // namespace Morvex
