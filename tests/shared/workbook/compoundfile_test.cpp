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
    char type;
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
    return name.leftJustified(nameSize, '\0') + length + '\0' + entry.type + '\0' +
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

const char storage = 1;
const char stream = 2;
const char root = 5;

} // namespace

TEST(CompoundFileTest, TheStreamIsFoundByItsNameOutsideOfEmbeddedDocuments)
{
    const QByteArray a(2 * sectorSize, 'a');
    const std::tuple<const char *, QVector<Entry>, QByteArray> cases[] = {
        {"alone", {{"Root", root, none, none, 1, 0}, {"Book", stream, none, none, none, 2}}, a},
        {"in capitals",
         {{"Root", root, none, none, 1, 0}, {"BOOK", stream, none, none, none, 2}},
         a},
        {"after the one that is preferred",
         {{"Root", root, none, none, 1, 0},
          {"Book", stream, none, 2, none, 4},
          {"Workbook", stream, none, none, none, 2}},
         a},
        {"beside a storage with another",
         {{"Root", root, none, none, 2, 0},
          {"Workbook", stream, none, none, none, 4},
          {"Storage", storage, none, 3, 1, 0},
          {"Book", stream, none, none, none, 2}},
         a},
        {"only in a storage",
         {{"Root", root, none, none, 1, 0},
          {"Book", storage, none, none, 2, 0},
          {"Book", stream, none, none, none, 4}},
         {}},
        {"in a tree that goes in circles",
         {{"Root", root, none, none, 1, 0},
          {"Storage", storage, 1, 2, none, 0},
          {"Book", stream, 1, 2, 0, 2}},
         a},
        {"in a tree that leaves the directory",
         {{"Root", root, none, none, 1, 0}, {"Book", stream, 4, 0x80000000, none, 2}},
         a},
    };
    for (const auto &[what, entries, content] : cases)
        EXPECT_EQ(readCompoundStream(compoundFile(entries), {"Workbook", "Book"}), content) << what;
}

TEST(CompoundFileTest, APartOfTheTableThatIsCutDoesNotMoveTheRest)
{
    const QVector<Entry> entries = {{"Root", root, none, none, 1, 0},
                                    {"Book", stream, none, none, none, 2}};
    EXPECT_EQ(readCompoundStream(compoundFile(entries, {9999, 0}), {"Book"}),
              QByteArray(sectorSize, 'a'));
}
