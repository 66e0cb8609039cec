#include "runner/pointdraft.h"

#include "runner/freeplace.h"
#include "shared/realpath.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>

namespace Morvex {
namespace {

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
