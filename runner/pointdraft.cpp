#include "runner/pointdraft.h"

#include "shared/realpath.h"
#include "test/openreportfile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

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
    const bool isWhole = writeWhole(&target, content.constData(), content.size()) && target.flush();
    const int error = isWhole ? 0 : errno;
    if (!isWhole)
        target.remove();
    return error;
}

// Returns 0 or an errno. Nothing is replaced.
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

// Nothing can be made in one that could not be.
QString madeDirectoryOf(const QString &pointPath)
{
    const QString directory = cleanedPath(QFileInfo(pointPath).path());
    QDir().mkpath(directory);
    return directory;
}

QString writeError(const QString &path, const QString &reason)
{
    return QStringLiteral("Could not write '%1': %2").arg(path, reason);
}

} // namespace

PointDraft::PointDraft(const QString &pointPath)
    : m_pointPath(pointPath)
    , m_dir(madeDirectoryOf(pointPath) + QStringLiteral("/.morvex-XXXXXX"))
    , m_path(m_dir.filePath(QFileInfo(pointPath).fileName()))
{
}

QString PointDraft::error() const
{
    return m_dir.isValid() ? QString() : writeError(m_pointPath, m_dir.errorString());
}

PointDraft::Outcome PointDraft::takePlace(QString *error) const
{
    const int number = moveToFreePlace(QFile::encodeName(m_path), QFile::encodeName(m_pointPath));
    if (number == 0)
        return Placed;
    if (number == EEXIST)
        return Taken;
    *error = writeError(m_pointPath, qt_error_string(number));
    return Failed;
}

} // namespace Morvex
