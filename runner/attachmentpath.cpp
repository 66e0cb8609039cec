#include "runner/attachmentpath.h"

#include <QDir>
#include <QFileInfo>

namespace Morvex {

QString attachmentPath(const QString &resultDir, const QString &testCase, const QFileInfo &source)
{
    const QDir dir(resultDir + QLatin1String("/attachments/") + testCase);
    dir.mkpath(QStringLiteral("."));
    QString name = source.fileName();
    const QString suffix =
        source.suffix().isEmpty() ? QString() : QLatin1Char('.') + source.suffix();
    for (int number = 2; dir.exists(name); ++number)
        name = source.completeBaseName() + QLatin1Char('_') + QString::number(number) + suffix;
    return dir.filePath(name);
}

} // namespace Morvex
