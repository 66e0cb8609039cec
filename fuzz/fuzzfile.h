#pragma once

#include <QFile>
#include <QString>
#include <QTemporaryDir>

#include <cstdint>
#include <cstdlib>

/// The path of a file of that name with the bytes of the fuzzer.
inline QString fuzzFile(const char *name, const std::uint8_t *bytes, std::size_t size)
{
    // In memory where there is such a place.
    static const QTemporaryDir dir(QFile::exists("/dev/shm") ? "/dev/shm/morvexfuzz-XXXXXX"
                                                             : "/tmp/morvexfuzz-XXXXXX");
    const QString path = dir.filePath(name);
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        std::abort();
    file.write(reinterpret_cast<const char *>(bytes), static_cast<qint64>(size));
    return path;
}

inline void require(bool condition)
{
    if (!condition)
        std::abort();
}
