#include "shared/filelock.h"

#include <QFile>

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace Morvex {

// Child processes must not inherit the lock: they may outlive this one.
FileLock::FileLock(const QString &path)
    : m_descriptor(::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC))
{
    if (m_descriptor >= 0 && ::flock(m_descriptor, LOCK_EX | LOCK_NB) != 0)
        m_isHeldElsewhere = errno == EWOULDBLOCK;
}

FileLock::~FileLock()
{
    if (m_descriptor >= 0)
        ::close(m_descriptor);
}

} // namespace Morvex
