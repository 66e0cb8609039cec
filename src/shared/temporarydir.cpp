#include "shared/temporarydir.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstdlib>

namespace Morvex {
namespace {

const int maxAttempts = 50;

const QDir::Filters allEntries =
    QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot;

bool removeEntry(const QFileInfo &entry)
{
    if (entry.isDir() && !entry.isSymLink())
        return removeDirRecursively(entry.filePath());
    return QFile::remove(entry.filePath());
}

bool fail(QString *error, const QString &text)
{
    if (error)
        *error = text;
    return false;
}

bool copyFile(const QString &source, const QString &target, QString *error,
              CopyDirectoryOption option)
{
    if (QFileInfo::exists(target)) {
        if (option == KeepExistingFile)
            return true;
        return fail(error, QStringLiteral("Target file '%1' already exists").arg(target));
    }
    if (QFile::copy(source, target))
        return true;
    return fail(error, QStringLiteral("Failed to copy '%1' into '%2'").arg(source, target));
}

bool makeTargetDirectory(const QString &target)
{
    const QFileInfo info(target);
    return info.isDir() || info.dir().mkdir(info.fileName());
}

// What is copied into itself ends at @p copy, where the copy begins; empty at first.
bool copyTree(const QString &source, const QString &target, QString copy, QString *error,
              CopyDirectoryOption option)
{
    const QFileInfo info(source);
    if (!info.exists())
        return fail(error, QStringLiteral("Source directory '%1' does not exist").arg(source));
    if (!info.isDir())
        return copyFile(source, target, error, option);
    const QStringList names = QDir(source).entryList(allEntries);
    if (!makeTargetDirectory(target))
        return fail(error, QStringLiteral("Failed to create target directory '%1'").arg(target));
    if (copy.isEmpty())
        copy = QFileInfo(target).canonicalFilePath();
    for (const QString &name : names) {
        const QString entry = source + QLatin1Char('/') + name;
        if (QFileInfo(entry).canonicalFilePath() != copy &&
            !copyTree(entry, target + QLatin1Char('/') + name, copy, error, option))
            return false;
    }
    return true;
}

} // namespace

TemporaryDir::TemporaryDir()
    : TemporaryDir(QDir::tempPath() + QDir::separator() + QLatin1String("morvex_temp_"))
{
}

TemporaryDir::TemporaryDir(const QString &nameTemplate)
{
    create(nameTemplate);
}

TemporaryDir::~TemporaryDir()
{
    if (m_autoRemove)
        remove();
}

void TemporaryDir::create(const QString &nameTemplate)
{
    const QFileInfo info(nameTemplate);
    const QDir parent = info.absoluteDir();
    if (!parent.exists()) {
        m_errorString = QStringLiteral("Cannot create temporary directory, parent directory "
                                       "\"%1\" does not exist.")
                            .arg(parent.path());
        return;
    }
    for (int attempt = 0; attempt < maxAttempts; ++attempt) {
        const QString name = info.fileName() + QString::number(std::rand(), 16);
        if (parent.mkdir(name)) {
            m_path = parent.absoluteFilePath(name);
            return;
        }
    }
    m_errorString =
        QStringLiteral("Could not create temporary directory below \"%1\".").arg(parent.path());
}

bool TemporaryDir::remove()
{
    if (m_path.isEmpty())
        return false;
    if (!removeDirRecursively(m_path))
        qWarning("TemporaryDir: Could not remove %s",
                 qUtf8Printable(QDir::toNativeSeparators(m_path)));
    return true;
}

std::FILE *tempFile()
{
    std::FILE *file = std::tmpfile();
    if (!file)
        std::fprintf(stderr, "Failed to get a temporary file (%d).\n", errno);
    return file;
}

bool removeDirRecursively(const QString &path)
{
    if (!QFileInfo::exists(path))
        return true;
    bool isRemoved = true;
    QDirIterator entries(path, allEntries);
    while (entries.hasNext()) {
        entries.next();
        isRemoved = removeEntry(entries.fileInfo()) && isRemoved;
    }
    return QDir().rmdir(path) && isRemoved;
}

bool copyDirectory(const QString &source, const QString &target, QString *error,
                   CopyDirectoryOption option)
{
    return copyTree(source, target, QString(), error, option);
}

} // namespace Morvex
