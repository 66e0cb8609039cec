#pragma once

#include <QFile>
#include <QTemporaryDir>

#include <cstddef>
#include <cstdint>
#include <cstdlib>

/// The input as a file, for parsers that open one. The path stays the same in one process.
inline QString fuzzInputFile(const uint8_t *data, std::size_t size, const char *name)
{
    static const QTemporaryDir dir;
    const QString path = dir.filePath(QString::fromLatin1(name));
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) ||
        file.write(reinterpret_cast<const char *>(data), static_cast<qint64>(size)) < 0)
        std::abort();
    return path;
}
