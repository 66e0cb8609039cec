#include "test/names/namesfile.h"

#include "shared/files/regularfile.h"
#include "shared/files/writefile.h"
#include "shared/realpath.h"
#include "shared/settings.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTextStream>

#include <cerrno>
#include <unistd.h>

namespace Morvex {
namespace {

// Empty when it can't be read.
QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return openRegularFile(&file).isEmpty() ? file.readAll() : QByteArray();
}

// Waits until what was written can survive a loss of power. What is no file on a disk has no such
// state.
bool isOnDisk(const QString &path)
{
    QFile file(path);
    return !file.open(QIODevice::ReadOnly) || ::fsync(file.handle()) == 0 || errno == EINVAL;
}

bool isBlank(const QByteArray &code)
{
    return QString::fromUtf8(code.constData()).trimmed().isEmpty();
}

QStringList globalScriptDirs()
{
    QStringList dirs;
    const UserSettings settings(UserSettings::Paths);
    for (const QString &dir :
         settings.readListEntry(Settings::defaultGroup(), QStringLiteral("GlobalScriptDirs"), {})) {
        if (!dir.isEmpty() && QFileInfo(dir).isDir())
            dirs += cleanedPath(dir);
    }
    return dirs;
}

QStringList filesIn(const QDir &dir, const QStringList &patterns)
{
    QStringList files;
    for (const QString &name : dir.entryList(patterns, QDir::Files, QDir::Unsorted))
        files += dir.filePath(name);
    return files;
}

} // namespace

QByteArray namesFileContent(const QString &path, const QString &templatePath)
{
    const QByteArray code = contentOf(path);
    return isBlank(code) ? contentOf(templatePath) : code;
}

QStringList linesOf(const QByteArray &code)
{
    QTextStream stream(code);
    stream.setCodec("UTF-8");
    QStringList lines;
    for (QString line; stream.readLineInto(&line);)
        lines += line;
    return lines;
}

QString makeDirectoryOf(const QString &path)
{
    const QString dir = QFileInfo(path).path();
    return QDir(dir).mkpath(QStringLiteral("."))
               ? QString()
               : QStringLiteral("%1: the directory could not be created").arg(dir);
}

QString writeNamesFile(const QString &path, const QByteArray &code)
{
    QFile current(path);
    // What can't be read would be taken for nothing, and replaced.
    const QString unreadable = current.exists() ? openRegularFile(&current) : QString();
    if (!unreadable.isEmpty())
        return QStringLiteral("%1: %2").arg(path, unreadable);
    const FileWriteResult written = writeFileSafely(path, code);
    if (written.outcome != FileWriteResult::Written)
        return QStringLiteral("%1: %2").arg(path, written.error);
    return isOnDisk(path) ? QString() : QStringLiteral("%1: %2").arg(path, qt_error_string());
}

QStringList scriptFilesBeside(const QString &path, const QStringList &patterns)
{
    QStringList files = filesIn(QFileInfo(path).dir(), patterns);
    for (const QString &dir : globalScriptDirs())
        files += filesIn(QDir(dir), patterns);
    return files;
}

QDateTime latestModificationOf(const QStringList &files)
{
    QDateTime latest;
    for (const QString &file : files) {
        const QDateTime time = QFileInfo(file).lastModified();
        if (time.isValid() && (!latest.isValid() || latest < time))
            latest = time;
    }
    return latest;
}

QString noteOfMissingMarker()
{
    return QStringLiteral("\nNOTE: No line ending in '%1' was found in this file when recording a "
                          "test; please make\n      sure that this is the case (e.g. by adding a "
                          "comment ending with that special marker)\n      such that object names "
                          "are automatically inserted at the desired position.")
        .arg(insertionMarker);
}

QStringList namesOfDump(const QString &dump)
{
    QStringList names;
    for (const QString &line : dump.split(QLatin1Char('\n'))) {
        const int tab = line.indexOf(QLatin1Char('\t'));
        if (tab >= 0)
            names += line.left(tab).mid(1);
    }
    return names;
}

} // namespace Morvex
