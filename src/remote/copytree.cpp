#include "remote/copytree.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <climits>
#include <unistd.h>

namespace Morvex {
namespace {

class TreeCopy
{
public:
    explicit TreeCopy(const QString &source)
        : m_root(QFileInfo(source).canonicalFilePath())
    {
    }

    // Returns the path of what could not be copied; empty on success.
    [[nodiscard]] QString copy(const QString &source, const QString &target) const
    {
        const QFileInfoList entries = QDir(source).entryInfoList(
            QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
        for (const QFileInfo &entry : entries) {
            const QString failed = copyEntry(entry, target + QLatin1Char('/') + entry.fileName());
            if (!failed.isEmpty())
                return failed;
        }
        return {};
    }

private:
    QString copyEntry(const QFileInfo &entry, const QString &target) const
    {
        bool isDone = true;
        if (entry.isSymLink() && (!entry.isFile() || staysWithin(entry)))
            isDone = makeLink(linkTo(entry), target);
        else if (entry.isDir())
            return QDir().mkpath(target) ? copy(entry.filePath(), target) : entry.filePath();
        else if (entry.isFile())
            isDone = QFile::copy(entry.filePath(), target) && makeWritable(target);
        return isDone ? QString() : entry.filePath();
    }

    static bool makeWritable(const QString &copy)
    {
        return QFile::setPermissions(copy, QFile::permissions(copy) | QFile::WriteOwner);
    }

    static bool makeLink(const QByteArray &link, const QString &path)
    {
        return ::symlink(link.constData(), QFile::encodeName(path).constData()) == 0;
    }

    static QByteArray targetOf(const QFileInfo &entry)
    {
        QByteArray target(PATH_MAX, '\0');
        const ssize_t size = ::readlink(QFile::encodeName(entry.filePath()).constData(),
                                        target.data(), static_cast<std::size_t>(target.size()));
        return target.left(static_cast<int>(qMax<ssize_t>(size, 0)));
    }

    bool staysWithin(const QFileInfo &entry) const
    {
        return !targetOf(entry).startsWith('/') &&
               entry.canonicalFilePath().startsWith(m_root + QLatin1Char('/'));
    }

    // From elsewhere a relative path would lead to another place.
    QByteArray linkTo(const QFileInfo &entry) const
    {
        return entry.exists() && !staysWithin(entry) ? QFile::encodeName(entry.canonicalFilePath())
                                                     : targetOf(entry);
    }

    QString m_root;
};

} // namespace

QString copyTree(const QString &source, const QString &target)
{
    return TreeCopy(source).copy(source, target);
}

} // namespace Morvex
