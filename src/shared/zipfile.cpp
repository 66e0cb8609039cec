#include "shared/zipfile.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QQueue>

#include <minizip/zip.h>
#include <vector>

namespace Morvex {
namespace {

const qint64 blockSize = 65536;
const qint64 minSizeForLongNumbers = 0xffffffff;
const uLong nameIsUtf8 = 1 << 11;

const QDir::Filters allEntries =
    QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot;

QIODevice *asDevice(voidpf stream)
{
    return static_cast<QIODevice *>(stream);
}

voidpf morvex_zipfile_open(voidpf opaque, const void *, int)
{
    QIODevice *device = asDevice(opaque);
    if (!device->isOpen() && !device->open(QIODevice::ReadWrite))
        return nullptr;
    return device;
}

uLong morvex_zipfile_read(voidpf, voidpf stream, void *buffer, uLong size)
{
    const qint64 count =
        asDevice(stream)->read(static_cast<char *>(buffer), static_cast<qint64>(size));
    return static_cast<uLong>(qMax<qint64>(count, 0));
}

uLong morvex_zipfile_write(voidpf, voidpf stream, const void *buffer, uLong size)
{
    const qint64 count =
        asDevice(stream)->write(static_cast<const char *>(buffer), static_cast<qint64>(size));
    return static_cast<uLong>(qMax<qint64>(count, 0));
}

ZPOS64_T morvex_zipfile_tell(voidpf, voidpf stream)
{
    return static_cast<ZPOS64_T>(asDevice(stream)->pos());
}

qint64 seekTarget(const QIODevice *device, qint64 offset, int origin)
{
    switch (origin) {
    case ZLIB_FILEFUNC_SEEK_SET:
        return offset;
    case ZLIB_FILEFUNC_SEEK_CUR:
        return device->pos() + offset;
    case ZLIB_FILEFUNC_SEEK_END:
        return device->size() - offset;
    default:
        return -1;
    }
}

long morvex_zipfile_seek(voidpf, voidpf stream, ZPOS64_T offset, int origin)
{
    QIODevice *device = asDevice(stream);
    const qint64 target = seekTarget(device, static_cast<qint64>(offset), origin);
    return target >= 0 && device->seek(target) ? 0 : -1;
}

int morvex_zipfile_close(voidpf, voidpf stream)
{
    QIODevice *device = asDevice(stream);
    device->close();
    return device->isOpen() ? -1 : 0;
}

int morvex_zipfile_error(voidpf, voidpf stream)
{
    return asDevice(stream)->errorString().isEmpty() ? 0 : 1;
}

zip_fileinfo fileInfo(const QDateTime &time)
{
    const QDateTime local = time.toLocalTime();
    zip_fileinfo info{};
    info.tmz_date.tm_sec = static_cast<uInt>(local.time().second());
    info.tmz_date.tm_min = static_cast<uInt>(local.time().minute());
    info.tmz_date.tm_hour = static_cast<uInt>(local.time().hour());
    info.tmz_date.tm_mday = static_cast<uInt>(local.date().day());
    info.tmz_date.tm_mon = static_cast<uInt>(local.date().month() - 1);
    info.tmz_date.tm_year = static_cast<uInt>(local.date().year() - 1980);
    return info;
}

int openEntry(zipFile zip, const char *name, const zip_fileinfo &info, bool hasLongNumbers)
{
    const int isCompressed = 0;
    const int version = 0;
    const int memoryLevel = 8;
    const uLong noPassword = 0;
    return zipOpenNewFileInZip4_64(zip, name, &info, nullptr, 0, nullptr, 0, nullptr, Z_DEFLATED,
                                   Z_DEFAULT_COMPRESSION, isCompressed, -MAX_WBITS, memoryLevel,
                                   Z_DEFAULT_STRATEGY, nullptr, noPassword, version, nameIsUtf8,
                                   hasLongNumbers);
}

QString copyIntoZip(QIODevice *device, zipFile zip)
{
    std::vector<char> block(blockSize);
    for (;;) {
        const qint64 count = device->read(block.data(), blockSize);
        if (count < 0)
            return QStringLiteral("Could not read from file");
        if (count == 0)
            return {};
        if (zipWriteInFileInZip(zip, block.data(), static_cast<unsigned>(count)) != ZIP_OK)
            return QStringLiteral("Could not write file in zip file");
    }
}

[[nodiscard]] QString addEntry(ZipFile &zip, const QDir &root, const QFileInfo &entry)
{
    QFile file(entry.filePath());
    if (!file.open(QIODevice::ReadOnly))
        return QStringLiteral("Could not open file '%1': %2")
            .arg(file.fileName(), file.errorString());
    return zip.addFile(&file, root.relativeFilePath(entry.filePath()), entry.lastModified());
}

} // namespace

ZipFile::ZipFile(QIODevice *device)
{
    zlib_filefunc64_def functions{};
    functions.zopen64_file = morvex_zipfile_open;
    functions.zread_file = morvex_zipfile_read;
    functions.zwrite_file = morvex_zipfile_write;
    functions.ztell64_file = morvex_zipfile_tell;
    functions.zseek64_file = morvex_zipfile_seek;
    functions.zclose_file = morvex_zipfile_close;
    functions.zerror_file = morvex_zipfile_error;
    functions.opaque = device;
    m_zip = zipOpen2_64(nullptr, APPEND_STATUS_CREATE, nullptr, &functions);
}

ZipFile::~ZipFile()
{
    static_cast<void>(close());
}

QString ZipFile::addFile(QIODevice *device, const QString &nameInZip, const QDateTime &time)
{
    const zip_fileinfo info = fileInfo(time);
    const int addError = openEntry(m_zip, nameInZip.toUtf8().constData(), info,
                                   device->size() >= minSizeForLongNumbers);
    if (addError != ZIP_OK)
        return QStringLiteral("Adding file '%1' to zip returned error on add: %2")
            .arg(nameInZip, QString::number(addError));
    const QString copyError = copyIntoZip(device, m_zip);
    const int closeError = zipCloseFileInZip(m_zip);
    if (!copyError.isEmpty())
        return copyError;
    if (closeError != ZIP_OK)
        return QStringLiteral("Adding file '%1' to zip returned error on close: %2")
            .arg(nameInZip, QString::number(closeError));
    return {};
}

QString ZipFile::addDirectoryContents(const QDir &root)
{
    QQueue<QString> directories;
    directories.enqueue(root.path());
    while (!directories.isEmpty()) {
        const QDir dir(directories.dequeue());
        const QFileInfoList entries = dir.entryInfoList(allEntries, QDir::Unsorted);
        for (const QFileInfo &entry : entries) {
            if (entry.isDir() && !entry.isSymLink())
                directories.enqueue(entry.filePath());
            if (!entry.isFile())
                continue;
            const QString error = addEntry(*this, root, entry);
            if (!error.isEmpty())
                return error;
        }
    }
    return {};
}

QString ZipFile::close()
{
    if (!m_zip)
        return {};
    const int error = zipClose(m_zip, nullptr);
    m_zip = nullptr;
    return error == ZIP_OK ? QString()
                           : QStringLiteral("Closing zip returned error: %1").arg(error);
}

} // namespace Morvex
