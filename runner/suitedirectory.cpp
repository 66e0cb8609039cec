#include "runner/suitedirectory.h"

#include "runner/messages.h"

#include <QFile>

#include <cerrno>
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Morvex {
namespace {

// Empty when there is nothing to be said against it.
QString whyLeftOut(DIR *suite, const char *name)
{
    struct stat status;
    if (::fstatat(::dirfd(suite), name, &status, 0) != 0 || !S_ISDIR(status.st_mode))
        return {};
    if (::faccessat(::dirfd(suite), name, R_OK, AT_EACCESS) != 0)
        return QStringLiteral("its directory can't be read: ") + qt_error_string(errno);
    if (QFile::encodeName(QFile::decodeName(name)) != name)
        return QStringLiteral("its name can't be read in this locale; rename it, or set LANG");
    return {};
}

} // namespace

QString whyNotListed(const QString &suiteDirectory)
{
    DIR *suite = ::opendir(QFile::encodeName(suiteDirectory).constData());
    if (!suite)
        return QStringLiteral("cannot read the suite directory '%1': %2")
            .arg(suiteDirectory, qt_error_string(errno));
    ::closedir(suite);
    return {};
}

void warnOfTestCasesLeftOut(const QString &suiteDirectory, const QStringList &known)
{
    DIR *suite = ::opendir(QFile::encodeName(suiteDirectory).constData());
    if (!suite)
        return;
    while (const dirent *entry = ::readdir(suite)) {
        const QString name = QFile::decodeName(entry->d_name);
        if (!name.startsWith(QLatin1String("tst_")) || known.contains(name))
            continue;
        const QString why = whyLeftOut(suite, entry->d_name);
        if (!why.isEmpty())
            printMessage(
                QStringLiteral("warning: the test case '%1' is left out: %2").arg(name, why));
    }
    ::closedir(suite);
}

} // namespace Morvex
