#include "runner/environmentfile.h"

#include "shared/environment.h"
#include "shared/files/regularfile.h"

#include <QFile>

namespace Morvex {
namespace {

QStringList namesOfSetVariables;

void setEnvironmentVariable(const QString &assignment)
{
    const int equals = assignment.indexOf(QLatin1Char('='));
    namesOfSetVariables += assignment.left(equals);
    Environment::setVariable(assignment.left(equals).toStdString(),
                             assignment.mid(equals + 1).toStdString());
}

} // namespace

QStringList setVariables()
{
    return namesOfSetVariables;
}

QString readEnvironmentFile(const QString &path, bool apply)
{
    QFile file(path);
    const QString error = openRegularFile(&file, QIODevice::ReadOnly | QIODevice::Text);
    if (!error.isEmpty())
        return QStringLiteral("cannot read the environment file '%1': %2").arg(path, error);
    for (int number = 1; !file.atEnd(); ++number) {
        const QByteArray bytes = file.readLine();
        if (bytes.contains('\0'))
            return QStringLiteral(
                       "%1:%2: a zero byte; the file is damaged, or its text is not UTF-8")
                .arg(path, QString::number(number));
        QString line = QString::fromUtf8(bytes);
        if (line.endsWith(QLatin1Char('\n')))
            line.chop(1);
        if (line.trimmed().isEmpty() || line.startsWith(QLatin1Char('#')))
            continue;
        if (line.indexOf(QLatin1Char('=')) < 1)
            return QStringLiteral("%1:%2: expected NAME=VALUE").arg(path, QString::number(number));
        if (apply)
            setEnvironmentVariable(line);
    }
    return {};
}

QString environmentFileOf(const QString &asked, const QString &ofSuite)
{
    if (!asked.isEmpty())
        return asked;
    return QFile::exists(ofSuite) ? ofSuite : QString();
}

QString setEnvironmentVariables(const QString &file, const QStringList &assignments)
{
    const QString error = file.isEmpty() ? QString() : readEnvironmentFile(file, true);
    if (!error.isEmpty())
        return error;
    for (const QString &assignment : assignments)
        setEnvironmentVariable(assignment);
    return {};
}

} // namespace Morvex
