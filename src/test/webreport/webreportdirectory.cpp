#include "test/webreport/webreportdirectory.h"

#include "shared/environment.h"
#include "shared/files/filelock.h"
#include "shared/temporarydir.h"
#include "test/webreport/webreportdata.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

#include <cstdio>

namespace Morvex {
namespace {

// The pages are copied in a moment.
const int lockWaitMilliseconds = 3000;

QString templateDirectory()
{
    const std::string prefix = Environment::getVariable("MORVEX_PREFIX");
    return QString::fromStdString(prefix) + QLatin1String("/lib/webreport");
}

// An empty data file is a report without runs. Returns an error text, empty on success.
[[nodiscard]] QString fillReport(const QString &directory)
{
    QString error;
    if (!copyDirectory(templateDirectory(), directory, &error, KeepExistingFile))
        return QStringLiteral("Error while copying web report templates: ") + error;
    const QDir dataDir(QDir(directory).filePath(webReportDataDir));
    QFile file(dataDir.filePath(webReportDataFile));
    if (!dataDir.mkpath(QStringLiteral(".")) || !file.open(QIODevice::Append))
        return QStringLiteral("Could not open '%1' for writing").arg(file.fileName());
    return {};
}

// Whether a directory is one that a run has made for its pages, and not a person.
bool isUnfinished(const QString &name, const QString &prefix)
{
    static const QRegularExpression number(QStringLiteral("\\A[0-9a-f]{1,8}\\z"));
    return name.startsWith(prefix) && number.match(name.mid(prefix.size())).hasMatch();
}

// What runs have left that were killed while they made the report.
void removeUnfinished(const QDir &parent, const QString &prefix)
{
    const QStringList names = parent.entryList(QDir::Dirs | QDir::Hidden | QDir::NoSymLinks);
    for (const QString &name : names) {
        if (isUnfinished(name, prefix))
            removeDirRecursively(parent.filePath(name));
    }
}

} // namespace

QString makeWebReport(const QString &directory,
                      const std::function<QString(const QString &)> &addMore)
{
    const QDir dir(directory);
    const QFileInfo info(dir.path());
    const QString prefix = QLatin1Char('.') + info.fileName() + QLatin1String(".new-");
    const QString error = QStringLiteral("Could not create directory '%1'").arg(dir.path());
    if (!info.dir().mkpath(QStringLiteral(".")))
        return error;
    // One run after the other: what is unfinished now stays so.
    const FileLock lock(info.dir().path(), lockWaitMilliseconds);
    const QString other =
        addMore ? QStringLiteral("'%1' was made by another process").arg(dir.path()) : QString();
    if (dir.exists())
        return other;
    if (lock.isHeld())
        removeUnfinished(info.dir(), prefix);
    TemporaryDir unfinished(info.dir().filePath(prefix));
    if (!unfinished.isValid())
        return error;
    QString fillError = fillReport(unfinished.path());
    if (fillError.isEmpty() && addMore)
        fillError = addMore(unfinished.path());
    if (!fillError.isEmpty())
        return fillError;
    if (std::rename(QFile::encodeName(unfinished.path()).constData(),
                    QFile::encodeName(dir.path()).constData()) != 0)
        return dir.exists() ? other : error;
    unfinished.setAutoRemove(false);
    return {};
}

} // namespace Morvex
