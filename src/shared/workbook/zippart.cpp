#include "shared/workbook/zippart.h"

#include <QFileInfo>

#include <cstring>
#include <minizip/unzip.h>

namespace Morvex {
namespace {

// XML of tables packs about ten to one, forty to one when most cells are empty.
const qint64 maxPackingRatio = 100;
const qint64 minPartLimit = 64 * 1024 * 1024;
const qint64 maxPartLimit = 1024 * 1024 * 1024;
// From one '<' to the next, since the reader of XML keeps a tag in memory as a whole. In comments
// and CDATA a '<' is like any other character, so that they may be longer.
const qint64 maxSizeWithoutMarkup = 1024 * 1024;

QString damageText(int code)
{
    return code == UNZ_CRCERROR ? QStringLiteral("crc check failed! ")
                                : QStringLiteral("invalid zip archive file. ");
}

} // namespace

ZipArchive::ZipArchive(const QString &fileName)
    : m_handle(unzOpen(fileName.toUtf8().constData()))
    , m_maxPartSize(qMin(minPartLimit + maxPackingRatio * QFileInfo(fileName).size(), maxPartLimit))
{
}

ZipArchive::~ZipArchive()
{
    if (m_handle)
        unzClose(m_handle);
}

ZipPart::ZipPart(const ZipArchive &archive)
    : m_archive(archive)
    , m_isOpen(unzOpenCurrentFile(archive.handle()) == UNZ_OK)
{
    if (!m_isOpen)
        m_damage = damageText(UNZ_BADZIPFILE);
    // Its reader has a buffer of its own.
    open(QIODevice::ReadOnly | QIODevice::Unbuffered);
}

ZipPart::~ZipPart()
{
    if (m_isOpen)
        unzCloseCurrentFile(m_archive.handle());
}

QString ZipPart::damage()
{
    char rest[16 * 1024];
    while (read(rest, sizeof rest) > 0) {
    }
    if (m_isOpen) {
        m_isOpen = false;
        const int code = unzCloseCurrentFile(m_archive.handle());
        if (code != UNZ_OK && m_damage.isEmpty())
            m_damage = damageText(code);
    }
    return m_damage;
}

qint64 ZipPart::readData(char *data, qint64 maxSize)
{
    if (!m_isOpen || !m_damage.isEmpty())
        return -1;
    const auto wanted = static_cast<unsigned>(qMin<qint64>(maxSize, 1024 * 1024));
    const int size = unzReadCurrentFile(m_archive.handle(), data, wanted);
    if (size < 0)
        return fail(damageText(size));
    if (size == 0 && wanted > 0 && !unzeof(m_archive.handle()))
        return fail(damageText(UNZ_BADZIPFILE));
    const QString excess = excessOf(data, size);
    return excess.isEmpty() ? size : fail(excess);
}

// Empty within the limits.
QString ZipPart::excessOf(const char *data, qint64 size)
{
    m_size += size;
    const auto length = static_cast<std::size_t>(size);
    const auto *last = static_cast<const char *>(memrchr(data, '<', length));
    // Shorter than what is read at once: no need to look at.
    m_sizeWithoutMarkup = last ? data + size - last : m_sizeWithoutMarkup + size;
    if (m_size > m_archive.maxPartSize())
        return QStringLiteral("the part is too large for the size of the archive.");
    if (m_sizeWithoutMarkup > maxSizeWithoutMarkup)
        return QStringLiteral("the part has a text, a tag or a comment that is too long.");
    return {};
}

qint64 ZipPart::fail(const QString &damage)
{
    m_damage = damage;
    return -1;
}

} // namespace Morvex
