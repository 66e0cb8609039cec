#include "runner/scriptfile.h"

#include <QFile>
#include <QFileInfo>

namespace Morvex {

ScriptFile readScriptFile(const QString &path)
{
    // A pipe would keep the reader waiting.
    if (QFileInfo::exists(path) && !QFileInfo(path).isFile())
        return {QString(), QStringLiteral("Cannot read '%1': it is not a regular file").arg(path)};
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {QString(), QStringLiteral("Cannot read '%1': %2").arg(path, file.errorString())};
    const QByteArray bytes = file.readAll();
    const int zero = bytes.indexOf('\0');
    if (zero < 0)
        return {QString::fromUtf8(bytes), QString()};
    const int line = 1 + bytes.left(zero).count('\n');
    return {QString(),
            QStringLiteral("'%1' has a zero byte in line %2. It is damaged, or its text is not "
                           "UTF-8.")
                .arg(path, QString::number(line)),
            line};
}

} // namespace Morvex
