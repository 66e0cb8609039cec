#include "shared/workbook/compoundfile.h"

#include <QtEndian>

#include <climits>
#include <vector>

namespace Morvex {
namespace {

const quint32 endOfChain = 0xfffffffe;
const int headerSize = 512;
const int directoryEntrySize = 128;
const int miniSectorSize = 64;

// Offsets in the header of the file.
enum HeaderField {
    SectorShift = 30,
    DirectorySector = 48,
    SmallStreamLimit = 56,
    SmallTableSector = 60,
    TableListSector = 68,
    TableList = 76,
};

// Offsets in an entry of the directory.
enum EntryField {
    NameSize = 64,
    EntryType = 66,
    LeftSibling = 68,
    RightSibling = 72,
    FirstChild = 76,
    FirstSector = 116,
    StreamSize = 120,
};

const quint8 storageType = 1;

// Four of these bytes end a chain.
const char endOfFile = '\xff';

template <typename Number>
Number numberAt(const QByteArray &bytes, qint64 offset)
{
    if (offset < 0 || offset + qint64(sizeof(Number)) > bytes.size())
        return 0;
    return qFromLittleEndian<Number>(bytes.constData() + offset);
}

struct DirectoryEntry
{
    QString name;
    bool isStorage;
    quint32 left;
    quint32 right;
    quint32 firstChild;
    quint32 firstSector;
    quint32 size;
};

// Sectors of the file or of the stream of small streams, which are chained by a table of the next
// sector of each.
class Sectors
{
public:
    // The first sector is at @p origin.
    Sectors(const QByteArray &bytes, int sectorSize, int origin)
        : m_bytes(bytes)
        , m_sectorSize(sectorSize)
        , m_origin(origin)
    {
    }

    QByteArray sector(quint32 number) const
    {
        const qint64 offset = m_origin + qint64(number) * m_sectorSize;
        return offset < m_bytes.size() ? m_bytes.mid(static_cast<int>(offset), m_sectorSize)
                                       : QByteArray();
    }

    // No chain has more sectors than there are, unless it goes in circles.
    QByteArray chain(quint32 first, const QByteArray &table) const
    {
        QByteArray content;
        quint32 number = first;
        while (number < endOfChain && content.size() < m_bytes.size()) {
            const QByteArray piece = sector(number);
            if (piece.isEmpty())
                break;
            content += piece;
            if (qint64(number) * 4 + 4 > table.size())
                break;
            number = numberAt<quint32>(table, qint64(number) * 4);
        }
        return content;
    }

private:
    const QByteArray m_bytes;
    const int m_sectorSize;
    const int m_origin;
};

class CompoundFile
{
public:
    explicit CompoundFile(const QByteArray &file)
        : m_file(file)
        , m_sectors(file, sectorSizeOf(file), sectorSizeOf(file))
        , m_table(sectorTable())
        , m_directory(m_sectors.chain(numberAt<quint32>(file, DirectorySector), m_table))
    {
    }

    QByteArray stream(const QStringList &names) const
    {
        const std::vector<DirectoryEntry> entries = rootEntries();
        for (const QString &name : names) {
            for (const DirectoryEntry &found : entries) {
                if (!found.isStorage && found.name.compare(name, Qt::CaseInsensitive) == 0)
                    return content(found);
            }
        }
        return {};
    }

private:
    static int sectorSizeOf(const QByteArray &file)
    {
        return numberAt<quint16>(file, SectorShift) == 12 ? 4096 : 512;
    }

    // The numbers of the sectors that hold the table: some in the header, more in a chain of
    // sectors that each end in the number of the next.
    QByteArray sectorTable() const
    {
        const int sectorSize = sectorSizeOf(m_file);
        QByteArray table;
        const auto append = [&](const QByteArray &numbers) {
            for (int i = 0; i + 4 <= numbers.size() && table.size() < m_file.size(); i += 4) {
                const auto number = numberAt<quint32>(numbers, i);
                if (number >= endOfChain)
                    return;
                // Where the file is cut, the entries after it keep their places.
                table += m_sectors.sector(number).leftJustified(sectorSize, endOfFile);
            }
        };
        append(m_file.mid(TableList, headerSize - TableList));
        auto next = numberAt<quint32>(m_file, TableListSector);
        for (int count = m_file.size() / sectorSize; count > 0 && next < endOfChain; --count) {
            const QByteArray numbers = m_sectors.sector(next);
            if (numbers.size() < sectorSize)
                break;
            append(numbers.left(sectorSize - 4));
            next = numberAt<quint32>(numbers, sectorSize - 4);
        }
        return table;
    }

    // Those of a storage make a tree. Embedded documents have storages of their own.
    std::vector<DirectoryEntry> rootEntries() const
    {
        std::vector<bool> isSeen(static_cast<std::size_t>(m_directory.size() / directoryEntrySize));
        std::vector<DirectoryEntry> entries;
        std::vector<quint32> pending = {entry(0).firstChild};
        while (!pending.empty()) {
            const quint32 index = pending.back();
            pending.pop_back();
            // A damaged tree may go in circles.
            if (index >= isSeen.size() || isSeen[index])
                continue;
            isSeen[index] = true;
            entries.push_back(entry(static_cast<int>(index)));
            pending.push_back(entries.back().left);
            pending.push_back(entries.back().right);
        }
        return entries;
    }

    DirectoryEntry entry(int index) const
    {
        const int offset = index * directoryEntrySize;
        const int nameLength =
            qBound(0, numberAt<quint16>(m_directory, offset + NameSize) / 2 - 1, 31);
        QString name;
        for (int i = 0; i < nameLength; ++i)
            name += QChar(numberAt<quint16>(m_directory, offset + i * 2));
        const auto number = [&](int field) {
            return numberAt<quint32>(m_directory, offset + field);
        };
        return {name,
                numberAt<quint8>(m_directory, offset + EntryType) == storageType,
                number(LeftSibling),
                number(RightSibling),
                number(FirstChild),
                number(FirstSector),
                number(StreamSize)};
    }

    QByteArray content(const DirectoryEntry &found) const
    {
        const bool isSmall = found.size < numberAt<quint32>(m_file, SmallStreamLimit);
        QByteArray bytes =
            isSmall ? smallContent(found.firstSector) : m_sectors.chain(found.firstSector, m_table);
        bytes.truncate(static_cast<int>(qMin<quint32>(found.size, INT_MAX)));
        return bytes;
    }

    QByteArray smallContent(quint32 firstSector) const
    {
        const Sectors small(m_sectors.chain(entry(0).firstSector, m_table), miniSectorSize, 0);
        return small.chain(firstSector,
                           m_sectors.chain(numberAt<quint32>(m_file, SmallTableSector), m_table));
    }

    const QByteArray m_file;
    const Sectors m_sectors;
    const QByteArray m_table;
    const QByteArray m_directory;
};

} // namespace

bool isCompoundFile(const QByteArray &file)
{
    return file.size() >= headerSize && file.startsWith(QByteArray::fromHex("d0cf11e0a1b11ae1"));
}

QByteArray readCompoundStream(const QByteArray &file, const QStringList &names)
{
    return isCompoundFile(file) ? CompoundFile(file).stream(names) : QByteArray();
}

} // namespace Morvex
