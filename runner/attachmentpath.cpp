#include "runner/attachmentpath.h"

#include <QDir>
#include <QFileInfo>

namespace Morvex {

NumberedPath attachmentPath(const QString &resultDir, const QString &testCase,
                            const QFileInfo &source)
{
    const QDir dir(resultDir + QLatin1String("/attachments/") + testCase);
    dir.mkpath(QStringLiteral("."));
    return [dir, source](int number) {
        const QString suffix =
            source.suffix().isEmpty() ? QString() : QLatin1Char('.') + source.suffix();
        const QString name =
            source.completeBaseName() + QLatin1Char('_') + QString::number(number) + suffix;
        return dir.filePath(number == 1 ? source.fileName() : name);
    };
}

} // namespace Morvex
