#include "runner/environmentfile.h"

#include "shared/environment.h"

#include <QFile>
#include <QFileInfo>

namespace Morvex {
namespace {

QStringList namesOfSetVariables;

} // namespace

QStringList setVariables()
{
    return namesOfSetVariables;
}

void setEnvironmentVariable(const QString &assignment)
{
    const int equals = assignment.indexOf(QLatin1Char('='));
    namesOfSetVariables += assignment.left(equals);
    Environment::setVariable(assignment.left(equals).toStdString(),
                             assignment.mid(equals + 1).toStdString());
}

QString readEnvironmentFile(const QString &path, bool apply)
{
    QFile file(path);
    // A pipe would keep the reader waiting, and could not be read by each child again.
    if (QFileInfo::exists(path) && !QFileInfo(path).isFile())
        return QStringLiteral("cannot read the environment file '%1': it is not a regular file")
            .arg(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return QStringLiteral("cannot read the environment file '%1': %2")
            .arg(path, file.errorString());
    for (int number = 1; !file.atEnd(); ++number) {
        QString line = QString::fromUtf8(file.readLine());
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

} // namespace Morvex
