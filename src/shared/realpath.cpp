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

} // namespace Morvex
