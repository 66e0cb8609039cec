#include "shared/files/filelock.h"

#include <QElapsedTimer>
#include <QFile>
#include <QThread>

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace Morvex {
namespace {

const int pauseMilliseconds = 20;

// Some network file systems lock only what is open for writing; a directory and the file of another
// user can't be. Child processes must not inherit the lock: they may outlive this one.
int openForLock(const QByteArray &path)
{
    const int descriptor = ::open(path.constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0666);
    return descriptor >= 0 ? descriptor : ::open(path.constData(), O_RDONLY | O_CLOEXEC);
}

} // namespace

FileLock::FileLock(const QString &path, int waitMilliseconds)
    : m_descriptor(openForLock(QFile::encodeName(path)))
{
    QElapsedTimer timer;
    timer.start();
    tryLock();
    while (m_isHeldElsewhere && !timer.hasExpired(waitMilliseconds)) {
        QThread::msleep(pauseMilliseconds);
        tryLock();
    }
}

FileLock::~FileLock()
{
    if (m_descriptor >= 0)
        ::close(m_descriptor);
}

void FileLock::tryLock()
{
    m_isHeld = m_descriptor >= 0 && ::flock(m_descriptor, LOCK_EX | LOCK_NB) == 0;
    m_isHeldElsewhere = !m_isHeld && m_descriptor >= 0 && errno == EWOULDBLOCK;
}

} // namespace Morvex
