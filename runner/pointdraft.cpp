#include "runner/pointdraft.h"

#include "shared/realpath.h"

#include <QFile>
#include <QFileInfo>
#include <QUuid>

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <unistd.h>

namespace Morvex {
namespace {

// Returns 0 or an errno. Nothing is replaced.
int moveToFreePlace(const QByteArray &from, const QByteArray &to)
{
    if (::renameat2(AT_FDCWD, from.constData(), AT_FDCWD, to.constData(), RENAME_NOREPLACE) == 0)
        return 0;
    if (errno != EINVAL && errno != ENOSYS)
        return errno;
    // File systems of a network know this way only; the draft is removed as any other.
    return ::link(from.constData(), to.constData()) == 0 ? 0 : errno;
}

} // namespace

PointDraft::PointDraft(const QString &pointPath)
    : m_pointPath(pointPath)
    , m_path(QStringLiteral("%1/.morvex-%2")
                 .arg(cleanedPath(QFileInfo(pointPath).path()),
                      QUuid::createUuid().toString(QUuid::WithoutBraces)))
{
}

PointDraft::~PointDraft()
{
    QFile::remove(m_path);
}

PointDraft::Outcome PointDraft::takePlace(QString *error)
{
    const int number = moveToFreePlace(QFile::encodeName(m_path), QFile::encodeName(m_pointPath));
    if (number == 0)
        return Placed;
    if (number == EEXIST)
        return Taken;
    *error = QStringLiteral("Could not write '%1': %2").arg(m_pointPath, qt_error_string(number));
    return Failed;
}

} // namespace Morvex
