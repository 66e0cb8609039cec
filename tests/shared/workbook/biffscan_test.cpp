#include "shared/workbook/biffscan.h"

#include "shared/testdata.h"
#include "shared/workbook/xlscell.h"
#include "support/capture.h"
#include "support/files.h"
#include "support/tables.h"

#include <QTemporaryDir>
#include <QtEndian>

#include <gtest/gtest.h>
#include <memory>

using namespace Morvex;
using namespace MorvexTest;

namespace {

QByteArray word(quint16 value)
{
    QByteArray bytes(2, '\0');
    qToLittleEndian(value, bytes.data());
    return bytes;
}

QByteArray record(quint16 type, const QByteArray &data)
{
    return word(type) + word(static_cast<quint16>(data.size())) + data;
}

// A formula in the first column whose result is no number: kind 0 a text that follows, 3 none.
QByteArray formula(quint16 row, char kind)
{
    return record(0x0006, word(row) + word(0) + word(0) + kind + QByteArray(5, '\0') +
                              word(0xffff) + QByteArray(8, '\0'));
}

QByteArray text(const QByteArray &latin1)
{
    return word(static_cast<quint16>(latin1.size())) + QByteArray(1, '\0') + latin1;
}

// A workbook of one sheet.
QByteArray workbook(quint16 version, const QByteArray &globals, const QByteArray &cells)
{
    const QByteArray start = record(0x0809, word(version) + word(0x0005)) + globals;
    const int directorySize = 4 + 4;
    const auto offset = static_cast<quint16>(start.size() + directorySize);
    return start + record(0x0085, word(offset) + word(0)) +
           record(0x0809, word(version) + word(0x0010)) + cells;
}

QByteArray real(double value)
{
    QByteArray bytes(8, '\0');
    qToLittleEndian(value, bytes.data());
    return bytes;
}

// A file of a version from 2 to 4 with a sheet, or something else, in which a text, the results of
// two formulas and a boolean stand below two names.
QByteArray fileOfVersion(int version, quint16 content = 0x0010)
{
    const bool isFirst = version == 2;
    const auto type = [&](int first, int later) { return quint16(isFirst ? first : later); };
    const auto cell = [&](quint16 row, quint16 column, const QByteArray &value) {
        return word(row) + word(column) + QByteArray(isFirst ? 3 : 2, '\0') + value;
    };
    const auto text = [&](const QByteArray &bytes) {
        const QByteArray length = word(quint16(bytes.size()));
        return (isFirst ? length.left(1) : length) + bytes;
    };
    const int form = isFirst ? 0 : version == 3 ? 0x0200 : 0x0400;
    const auto formula = quint16(form | 0x06);
    const QByteArray textFollows = QByteArray(6, '\0') + word(0xffff);
    const QByteArray noFormula(8, '\0');
    return record(quint16(form | 0x09), word(quint16(version << 8)) + word(content) + word(0)) +
           record(0x0042, word(1252)) +
           record(type(0x0000, 0x0200), word(0) + word(4) + word(0) + word(2) + word(0)) +
           record(type(0x0004, 0x0204), cell(0, 0, text("a"))) +
           record(type(0x0004, 0x0204), cell(0, 1, text("b"))) +
           record(type(0x0004, 0x0204), cell(1, 0, text("x"))) +
           record(formula, cell(1, 1, real(42.5) + noFormula)) +
           record(formula, cell(2, 0, textFollows + noFormula)) +
           record(type(0x0007, 0x0207), text("\xe4")) +
           record(type(0x0005, 0x0205), cell(2, 1, QByteArray("\1\0", 2))) +
           record(0x000a, QByteArray());
}

} // namespace

TEST(BiffScanTest, ATextBelongsToTheFormulaInFrontOfItAlone)
{
    const BiffScan scan(workbook(0x0600, "",
                                 formula(0, 0) + record(0x0207, text("abcd")) + formula(1, 3) +
                                     // What continues a drawing is no text of a cell.
                                     record(0x01b6, QByteArray(18, '\0')) +
                                     record(0x003c, text("note")) + record(0x000a, QByteArray())));
    ASSERT_EQ(scan.sheetCount(), 1);
    const auto cells = scan.cells(0).value();
    EXPECT_EQ(cells.value(BiffScan::place(0, 0)).text, "abcd");
    EXPECT_TRUE(cells.contains(BiffScan::place(1, 0)));
    EXPECT_EQ(cells.value(BiffScan::place(1, 0)).text, "");
}

TEST(BiffScanTest, ASheetThatIsNotWhereTheWorkbookSaysIsNoEmptySheet)
{
    const QByteArray whole = workbook(0x0600, "", "");
    EXPECT_TRUE(BiffScan(whole).cells(0));
    EXPECT_FALSE(BiffScan(whole.left(whole.size() - 1)).cells(0));
}

TEST(BiffScanTest, FilesOfOldVersionsAreReadWithTheResultsOfFormulasOrNotAtAll)
{
    const QTemporaryDir dir;
    const QString path = dir.filePath("old.xls");
    for (int version = 2; version <= 4; ++version) {
        writeFile(path, fileOfVersion(version));
        const std::unique_ptr<TestDataSet> set(TestDataSet::createTestDataSet(path));
        EXPECT_EQ(rowsOf(*set),
                  (std::vector<QStringList>{
                      {"a", "b"}, {"x", "42.5"}, {QString::fromUtf8("\u00e4"), "true"}}))
            << version;
        const quint16 chart = 0x0020;
        writeFile(path, fileOfVersion(version, chart));
        EXPECT_EQ(standardErrorOf([&] { delete TestDataSet::createTestDataSet(path); }),
                  "Couldn't load " + path.toStdString() + "\n")
            << version;
    }
}

TEST(BiffScanTest, AWholeNumberInTheFormatOfADateStaysANumber)
{
    const QByteArray dateFormat = "yyyy-mm-dd";
    const QByteArray inDateFormat("\1\1\0", 3);
    const QTemporaryDir dir;
    const QString path = dir.filePath("old.xls");
    writeFile(path, record(0x0009, word(0x0200) + word(0x0010) + word(0)) +
                        record(0x0042, word(1252)) + record(0x001e, "\7General") +
                        record(0x001e, char(dateFormat.size()) + dateFormat) +
                        record(0x0043, QByteArray(4, '\0')) +
                        record(0x0043, QByteArray("\0\0\1\0", 4)) +
                        record(0x0000, word(0) + word(2) + word(0) + word(1) + word(0)) +
                        record(0x0004, word(0) + word(0) + QByteArray(3, '\0') + "\1a") +
                        record(0x0002, word(1) + word(0) + inDateFormat + word(45351)) +
                        // The library reads no smaller files.
                        record(0x0031, QByteArray(512, '\0')) + record(0x000a, QByteArray()));
    const std::unique_ptr<TestDataSet> set(TestDataSet::createTestDataSet(path));
    EXPECT_EQ(rowsOf(*set), (std::vector<QStringList>{{"a"}, {"45351"}}));
}

TEST(BiffScanTest, ARangeOfNumbersEndsWithItsRow)
{
    const QByteArray numbers = (word(0) + QByteArray(4, '\2')).repeated(3) + word(0);
    for (const quint16 column : {0xfe, 0xfffe}) {
        const BiffScan scan(workbook(0x0600, "", record(0x00bd, word(0) + word(column) + numbers)));
        const auto cells = scan.cells(0).value();
        for (auto cell = cells.begin(); cell != cells.end(); ++cell)
            EXPECT_LE(cell.key(), BiffScan::place(0, BiffScan::maxColumn));
        EXPECT_EQ(cells.size(), column == 0xfe ? 2 : 0);
    }
}

TEST(BiffScanTest, ACharacterThatARecordCutsStaysWhole)
{
    const BiffScan scan(workbook(0x0500, record(0x0042, word(932)),
                                 formula(0, 0) + record(0x0207, word(4) + "\x82\xa0\x82") +
                                     record(0x003c, "\xa2")));
    EXPECT_EQ(scan.cells(0)->value(0).text, QString::fromUtf8("\u3042\u3044"));
}

TEST(BiffScanTest, TextsAreInTheCodePageOfTheFile)
{
    const struct
    {
        quint16 codePage;
        const char *bytes;
        const char *text;
    } rows[] = {
        {437, "\x84", "\u00e4"},    {850, "\x84", "\u00e4"},     {852, "\x84", "\u00e4"},
        {865, "\x84", "\u00e4"},    {866, "\x84", "\u0414"},     {1251, "\xc4", "\u0414"},
        {1252, "\xe4", "\u00e4"},   {10000, "\x8a", "\u00e4"},   {0x8000, "\x8a", "\u00e4"},
        {0x8001, "\xe4", "\u00e4"}, {932, "\x82\xa0", "\u3042"},
    };
    for (const auto &row : rows) {
        const QByteArray bytes = row.bytes;
        const BiffScan scan(
            workbook(0x0500, record(0x0042, word(row.codePage)),
                     formula(0, 0) + record(0x0207, word(quint16(bytes.size())) + bytes)));
        EXPECT_TRUE(scan.canReadTexts()) << row.codePage;
        EXPECT_EQ(scan.cells(0)->value(0).text, QString::fromUtf8(row.text)) << row.codePage;
    }
    EXPECT_FALSE(BiffScan(workbook(0x0500, record(0x0042, word(1)), "")).canReadTexts());
}
