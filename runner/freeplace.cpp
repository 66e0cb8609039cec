#include "runner/freeplace.h"

#include "test/openreportfile.h"

#include <QFile>

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <unistd.h>

namespace Morvex {
namespace {

// For file systems that know no links: a reader may see the file before it is whole. A copy that is
// cut short is removed.
int copyToFreePlace(const QByteArray &from, const QByteArray &to)
{
    QFile source(QFile::decodeName(from));
    if (!source.open(QIODevice::ReadOnly))
        return EIO;
    QFile target(QFile::decodeName(to));
    if (!target.open(QIODevice::WriteOnly | QIODevice::NewOnly))
        return errno;
    const QByteArray content = source.readAll();
    errno = 0;
    const bool isWhole = source.error() == QFileDevice::NoError &&
                         writeWhole(&target, content.constData(), content.size()) && target.flush();
    const int error = errno != 0 ? errno : EIO;
    if (isWhole)
        return 0;
    target.remove();
    return error;
}

} // namespace

int moveToFreePlace(const QByteArray &from, const QByteArray &to)
{
    if (::renameat2(AT_FDCWD, from.constData(), AT_FDCWD, to.constData(), RENAME_NOREPLACE) == 0)
        return 0;
    if (errno != EINVAL && errno != ENOSYS)
        return errno;
    // File systems of a network know this way only; the draft is removed as any other.
    if (::link(from.constData(), to.constData()) == 0)
        return 0;
    return errno == EPERM || errno == EOPNOTSUPP || errno == ENOSYS ? copyToFreePlace(from, to)
                                                                    : errno;
}

} // namespace Morvex
