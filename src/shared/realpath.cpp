#include "shared/realpath.h"

#include <QDir>
#include <QFile>

#include <cstdlib>
#include <memory>

namespace Morvex {

QString realPath(const QString &path)
{
    const QString absolute = QDir::current().absoluteFilePath(path);
    const QByteArray native = QFile::encodeName(QDir::toNativeSeparators(absolute));
    const std::unique_ptr<char, decltype(&std::free)> resolved(
        ::realpath(native.constData(), nullptr), &std::free);
    return resolved ? QFile::decodeName(resolved.get()) : path;
}

QString cleanedPath(const QString &path)
{
    const QString absolute = QDir::current().absoluteFilePath(path);
    QString cleaned;
    for (const QString &name : absolute.split(QLatin1Char('/'), Qt::SkipEmptyParts)) {
        if (name == QLatin1String("..")) {
            cleaned = realPath(cleaned.isEmpty() ? QStringLiteral("/") : cleaned);
            cleaned.truncate(cleaned.lastIndexOf(QLatin1Char('/')));
        } else if (name != QLatin1String(".")) {
            cleaned += QLatin1Char('/') + name;
        }
    }
    return cleaned.isEmpty() ? QStringLiteral("/") : cleaned;
}

} // namespace Morvex
