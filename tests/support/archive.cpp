#include "support/archive.h"

#include <minizip/zip.h>
#include <zlib.h>

namespace MorvexTest {
namespace {

// Raw blocks that end at a byte, so that they can be strung together.
QByteArray deflated(const QByteArray &content)
{
    z_stream stream = {};
    deflateInit2(&stream, Z_BEST_COMPRESSION, Z_DEFLATED, -MAX_WBITS, 9, Z_DEFAULT_STRATEGY);
    QByteArray packed(content.size() + 1024, '\0');
    stream.next_in = reinterpret_cast<Bytef *>(const_cast<char *>(content.constData()));
    stream.avail_in = static_cast<uInt>(content.size());
    stream.next_out = reinterpret_cast<Bytef *>(packed.data());
    stream.avail_out = static_cast<uInt>(packed.size());
    deflate(&stream, Z_FULL_FLUSH);
    packed.truncate(static_cast<int>(stream.total_out));
    deflateEnd(&stream);
    return packed;
}

unsigned long checkSum(const QByteArray &content)
{
    return crc32(0, reinterpret_cast<const Bytef *>(content.constData()),
                 static_cast<uInt>(content.size()));
}

void write(zipFile archive, const QByteArray &bytes)
{
    zipWriteInFileInZip(archive, bytes.constData(), static_cast<unsigned>(bytes.size()));
}

} // namespace

void writeArchive(const QString &path, const ArchiveParts &parts)
{
    zipFile archive = zipOpen64(path.toUtf8().constData(), APPEND_STATUS_CREATE);
    for (const auto &part : parts) {
        zipOpenNewFileInZip(archive, part.first.constData(), nullptr, nullptr, 0, nullptr, 0,
                            nullptr, Z_DEFLATED, Z_BEST_SPEED);
        write(archive, part.second);
        zipCloseFileInZip(archive);
    }
    zipClose(archive, nullptr);
}

void addBomb(const QString &path, const QByteArray &name, const QByteArray &start, char filler)
{
    const QByteArray block(16 * 1024 * 1024, filler);
    const QByteArray packedBlock = deflated(block);
    const QByteArray lastBlock("\x03\x00", 2);
    const int raw = 1;
    const int zip64 = 1;
    zipFile archive = zipOpen64(path.toUtf8().constData(), APPEND_STATUS_ADDINZIP);
    zipOpenNewFileInZip2_64(archive, name.constData(), nullptr, nullptr, 0, nullptr, 0, nullptr,
                            Z_DEFLATED, Z_BEST_COMPRESSION, raw, zip64);
    write(archive, deflated(start));
    unsigned long sum = checkSum(start);
    const unsigned long blockSum = checkSum(block);
    ZPOS64_T size = static_cast<ZPOS64_T>(start.size());
    for (int count = 0; count < 257; ++count) {
        write(archive, packedBlock);
        sum = crc32_combine(sum, blockSum, block.size());
        size += static_cast<ZPOS64_T>(block.size());
    }
    write(archive, lastBlock);
    zipCloseFileInZipRaw64(archive, size, sum);
    zipClose(archive, nullptr);
}

} // namespace MorvexTest
