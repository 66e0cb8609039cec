#pragma once

#include <QIODevice>
#include <QString>

#include <memory>

namespace Morvex {

/// A zip archive that is open for reading.
class ZipArchive
{
public:
    /// A file that is no archive makes one in which nothing is found.
    explicit ZipArchive(const QString &fileName);
    ~ZipArchive();

    ZipArchive(const ZipArchive &) = delete;
    ZipArchive &operator=(const ZipArchive &) = delete;

    /// For minizip; null when there is no archive.
    void *handle() const { return m_handle; }
    /// How many bytes a part may have when it is unpacked, by the size of the file and never more
    /// than 1 GB. What is packed more densely was made to exhaust its reader.
    qint64 maxPartSize() const { return m_maxPartSize; }

private:
    void *m_handle;
    qint64 m_maxPartSize;
};

/// Unpacks the current part of an archive as it is read, and ends early, like a file that is cut,
/// where the part is damaged or has no end in sight. The part holds XML.
class ZipPart : public QIODevice
{
public:
    /// The archive has one part open at a time, and must outlive it.
    explicit ZipPart(const ZipArchive &archive);
    ~ZipPart() override;

    bool isSequential() const override { return true; }

    /// What ended the part early; empty when nothing did. Reads what is left of it, since the check
    /// sum is known only then.
    QString damage();

protected:
    qint64 readData(char *data, qint64 maxSize) override;
    qint64 writeData(const char *, qint64) override { return -1; }

private:
    QString excessOf(const char *data, qint64 size);
    qint64 fail(const QString &damage);

    const ZipArchive &m_archive;
    qint64 m_size = 0;
    qint64 m_sizeWithoutMarkup = 0;
    bool m_isOpen;
    QString m_damage;
};

} // namespace Morvex
