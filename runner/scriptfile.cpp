#include "runner/scriptfile.h"

#include "shared/files/regularfile.h"

#include <QFile>

namespace Morvex {

ScriptFile readScriptFile(const QString &path)
{
    QFile file(path);
    const QString error = openRegularFile(&file);
    if (!error.isEmpty())
        return {QString(), QStringLiteral("Cannot read '%1': %2").arg(path, error)};
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
