#include "test/output/reporttarget.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <fcntl.h>
#include <memory>
#include <set>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace Morvex {
namespace {

enum class Outcome { Opened, Failed, Taken, Unread };

const int readerTimeoutMs = 10000;
const useconds_t readerStepUs = 20000;

using FileId = std::pair<dev_t, ino_t>;

FileId idOf(const struct stat &status)
{
    return {status.st_dev, status.st_ino};
}

// All files that this process has taken by name so far.
std::set<FileId> &namedTargets()
{
    static std::set<FileId> targets;
    return targets;
}

struct KeptTarget
{
    int descriptor;
    QString fileName;
    // A new report may have begun in it.
    bool wasEmpty;
};

// Null when targets are replaced at once.
std::vector<KeptTarget> *&keptTargets()
{
    static std::vector<KeptTarget> *targets = nullptr;
    return targets;
}

// None of these modes drops the content of a regular file. A device has no end to write at.
QIODevice::OpenMode openMode(const QString &fileName, TargetContent content)
{
    if (content == TargetContent::ReplacedAndRead)
        return QIODevice::ReadWrite | QIODevice::Unbuffered;
    const QFileInfo info(fileName);
    const bool isDevice = info.exists() && !info.isFile();
    return QIODevice::WriteOnly | QIODevice::Unbuffered |
           (isDevice ? QIODevice::NotOpen : QIODevice::Append);
}

bool isPipe(const QString &fileName)
{
    struct stat status = {};
    return ::stat(QFile::encodeName(fileName).constData(), &status) == 0 &&
           S_ISFIFO(status.st_mode);
}

// Opening a pipe that nobody reads would wait without an end; whoever reads it may come a moment
// later. Keeps it open: a reader would take the end of this for that of the report.
class PipeHolder
{
public:
    explicit PipeHolder(const QString &fileName)
    {
        if (!isPipe(fileName))
            return;
        const QByteArray path = QFile::encodeName(fileName);
        QElapsedTimer timer;
        timer.start();
        while ((m_descriptor = ::open(path.constData(), O_WRONLY | O_NONBLOCK | O_CLOEXEC)) < 0 &&
               errno == ENXIO && timer.elapsed() < readerTimeoutMs)
            ::usleep(readerStepUs);
        m_isUnread = m_descriptor < 0 && errno == ENXIO;
    }
    ~PipeHolder()
    {
        if (m_descriptor >= 0)
            ::close(m_descriptor);
    }

    PipeHolder(const PipeHolder &) = delete;
    PipeHolder &operator=(const PipeHolder &) = delete;

    bool isUnread() const { return m_isUnread; }

private:
    int m_descriptor = -1;
    bool m_isUnread = false;
};

// False just when another one has the lock: a file system may have none.
bool takeLock(int descriptor)
{
    return ::flock(descriptor, LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK;
}

// False when its content is to be dropped now.
bool keepTarget(const QFile &file)
{
    const int descriptor =
        keptTargets() ? ::fcntl(file.handle(), F_DUPFD_CLOEXEC, STDERR_FILENO + 1) : -1;
    if (descriptor >= 0)
        keptTargets()->push_back({descriptor, file.fileName(), file.size() == 0});
    return descriptor >= 0;
}

Outcome openTarget(const QString &fileName, TargetContent content, bool mustBeEmpty, QFile *file)
{
    file->setFileName(fileName);
    const PipeHolder pipe(fileName);
    if (pipe.isUnread())
        return Outcome::Unread;
    if (!file->open(openMode(fileName, content)))
        return Outcome::Failed;
    struct stat status = {};
    if (::fstat(file->handle(), &status) != 0 || !S_ISREG(status.st_mode))
        return Outcome::Opened;
    // What holds something now is another report that was closed a moment ago.
    const bool isTaken = !takeLock(file->handle()) || (mustBeEmpty && file->size() > 0);
    if (isTaken) {
        file->close();
        return Outcome::Taken;
    }
    namedTargets().insert(idOf(status));
    if (content == TargetContent::Kept)
        return Outcome::Opened;
    ::fcntl(file->handle(), F_SETFL, 0);
    return (keepTarget(*file) || file->resize(0)) && file->seek(0) ? Outcome::Opened
                                                                   : Outcome::Failed;
}

bool hasContent(const QString &fileName)
{
    // Asked each time: QFileInfo would answer from its cache.
    const QFileInfo info(fileName);
    return info.exists() && info.size() > 0;
}

QString takenError()
{
    return QStringLiteral("another report is being written to it; wait for the end of that run or "
                          "give another name");
}

QString errorOf(Outcome outcome, const QFile &file)
{
    switch (outcome) {
    case Outcome::Opened:
        break;
    case Outcome::Failed:
        return file.errorString();
    case Outcome::Taken:
        return takenError();
    case Outcome::Unread:
        return QStringLiteral("nobody reads the pipe; start its reader first");
    }
    return {};
}

} // namespace

TargetsKept::TargetsKept()
{
    keptTargets() = new std::vector<KeptTarget>;
}

TargetsKept::~TargetsKept()
{
    const std::unique_ptr<std::vector<KeptTarget>> targets(std::exchange(keptTargets(), nullptr));
    for (const KeptTarget &target : *targets) {
        // Where that fails, the head of a report stays.
        if (!m_isReplaced && target.wasEmpty)
            static_cast<void>(!::ftruncate(target.descriptor, 0));
        ::close(target.descriptor);
    }
}

QString TargetsKept::replace()
{
    m_isReplaced = true;
    for (const KeptTarget &target : *keptTargets()) {
        if (!target.wasEmpty && ::ftruncate(target.descriptor, 0) != 0)
            return QStringLiteral("Could not empty report file '%1': %2")
                .arg(target.fileName, qt_error_string(errno));
    }
    return {};
}

std::FILE *standardStream(const QString &path)
{
    if (path.isEmpty() || path == QLatin1String("/dev/stdout"))
        return stdout;
    return path == QLatin1String("/dev/stderr") ? stderr : nullptr;
}

QString takeStandardStream(std::FILE *stream)
{
    static std::set<FileId> taken;
    const int given = ::fileno(stream);
    struct stat status = {};
    if (::fstat(given, &status) != 0 || !S_ISREG(status.st_mode) || taken.count(idOf(status)) > 0)
        return {};
    // Opened once more: the caller may have a lock of its own on what it has handed over.
    const QByteArray path = "/proc/self/fd/" + QByteArray::number(given);
    const int descriptor = ::open(path.constData(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0)
        return {};
    // Shared, since several runs can append to one log.
    if (::flock(descriptor, LOCK_SH | LOCK_NB) == 0) {
        taken.insert(idOf(status));
        return {};
    }
    const bool isNamed = errno == EWOULDBLOCK && namedTargets().count(idOf(status)) > 0;
    ::close(descriptor);
    if (!isNamed)
        return {};
    return QStringLiteral("Could not write to %1: %2")
        .arg(stream == stdout ? QLatin1String("standard output") : QLatin1String("standard error"),
             takenError());
}

QString openReportTarget(const QString &fileName, TargetContent content, QFile *file, bool *isTaken)
{
    const Outcome outcome = openTarget(fileName, content, false, file);
    if (isTaken)
        *isTaken = outcome == Outcome::Taken;
    return errorOf(outcome, *file);
}

QString openFreeReportTarget(const QString &fileName, QFile *file)
{
    const QFileInfo given(fileName);
    QString candidate = fileName;
    for (int number = 1;; ++number) {
        const Outcome outcome = hasContent(candidate)
                                    ? Outcome::Taken
                                    : openTarget(candidate, TargetContent::Replaced, true, file);
        if (outcome != Outcome::Taken)
            return errorOf(outcome, *file);
        candidate = given.dir().filePath(given.completeBaseName() + QLatin1Char('_') +
                                         QString::number(number) + QLatin1Char('.') +
                                         given.completeSuffix());
    }
}

} // namespace Morvex
