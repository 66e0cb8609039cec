#include "shared/workbook/compoundfile.h"

#include <QtEndian>

#include <gtest/gtest.h>

using namespace Morvex;

namespace {

const quint32 none = 0xffffffff;
const quint32 endOfChain = 0xfffffffe;
const int sectorSize = 512;

QByteArray numbers(const QVector<quint32> &values)
{
    QByteArray bytes(values.size() * 4, '\0');
    qToLittleEndian<quint32>(values.constData(), values.size(), bytes.data());
    return bytes;
}

QByteArray sector(const QByteArray &start, char filler = '\xff')
{
    return start.leftJustified(sectorSize, filler);
}

struct Entry
{
    QString name;
    quint32 left;
    quint32 right;
    quint32 child;
    quint32 firstSector;
};

QByteArray directoryEntry(const Entry &entry)
{
    const int nameSize = 64;
    QByteArray name(reinterpret_cast<const char *>(entry.name.utf16()), entry.name.size() * 2);
    const auto length = char(name.size() + 2);
    return name.leftJustified(nameSize, '\0') + length + QByteArray(3, '\0') +
           numbers({entry.left, entry.right, entry.child}) + QByteArray(36, '\0') +
           numbers({entry.firstSector, 2 * sectorSize, 0});
}

// A file of six sectors: its table, its directory, and two streams, of a and of b.
QByteArray compoundFile(const QVector<Entry> &entries, const QVector<quint32> &tableSectors = {0})
{
    QByteArray directory;
    for (const Entry &entry : entries)
        directory += directoryEntry(entry);
    return sector(QByteArray::fromHex("d0cf11e0a1b11ae1") + QByteArray(40, '\0') +
                  numbers({1, 0, 0, endOfChain, 0, endOfChain, 0}) + numbers(tableSectors)) +
           sector(numbers({0xfffffffd, endOfChain, 3, endOfChain, 5, endOfChain})) +
           sector(directory, '\0') + QByteArray(2 * sectorSize, 'a') +
           QByteArray(2 * sectorSize, 'b');
}

} // namespace

TEST(CompoundFileTest, TheStreamOfAnEmbeddedDocumentIsNotTakenForThatOfTheFile)
{
    const QByteArray a(2 * sectorSize, 'a');
    const struct
    {
        const char *what;
        QVector<Entry> entries;
        QByteArray stream;
    } cases[] = {
        {"alone", {{"Root", none, none, 1, 0}, {"Book", none, none, none, 2}}, a},
        {"in front of a storage with another",
         {{"Root", none, none, 2, 0},
          {"Book", none, none, none, 2},
          {"Storage", 1, none, 3, 0},
          {"Book", none, none, none, 4}},
         a},
        {"only in a storage",
         {{"Root", none, none, 1, 0}, {"Storage", none, none, 2, 0}, {"Book", none, none, none, 4}},
         {}},
        {"behind a storage with another, which the library takes",
         {{"Root", none, none, 2, 0},
          {"Book", none, none, none, 4},
          {"Storage", none, 3, 1, 0},
          {"Book", none, none, none, 2}},
         {}},
        {"in a tree that goes in circles",
         {{"Root", none, none, 1, 0}, {"Storage", 1, 2, none, 0}, {"Book", 1, 2, 0, 2}},
         a},
        {"in a tree that leaves the directory",
         {{"Root", none, none, 1, 0}, {"Book", 4, 0x80000000, none, 2}},
         a},
    };
    for (const auto &row : cases)
        EXPECT_EQ(readCompoundStream(compoundFile(row.entries), {"Book"}), row.stream) << row.what;
}

TEST(CompoundFileTest, APartOfTheTableThatIsCutDoesNotMoveTheRest)
{
    const QVector<Entry> entries = {{"Root", none, none, 1, 0}, {"Book", none, none, none, 2}};
    EXPECT_EQ(readCompoundStream(compoundFile(entries, {9999, 0}), {"Book"}),
              QByteArray(sectorSize, 'a'));
}
