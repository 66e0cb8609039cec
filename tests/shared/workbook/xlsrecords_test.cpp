#include "shared/testdata.h"

#include "support/tables.h"
#include "support/test.h"

#include <QtEndian>

using namespace Morvex;
using namespace MorvexTest;

namespace {

using Rows = std::vector<QStringList>;

const quint16 version5 = 0x0500;
const quint16 version8 = 0x0600;
const quint16 eof = 0x000a;
const quint16 continuation = 0x003c;
const quint16 string = 0x0207;
const quint16 sharedStrings = 0x00fc;

QByteArray word(int value)
{
    QByteArray bytes(2, '\0');
    qToLittleEndian(static_cast<quint16>(value), bytes.data());
    return bytes;
}

QByteArray record(int type, const QByteArray &data)
{
    return word(type) + word(data.size()) + data;
}

QByteArray end()
{
    return record(eof, QByteArray());
}

QByteArray cell(int type, int row, int column, const QByteArray &value)
{
    return record(type, word(row) + word(column) + word(0) + value);
}

// A formula whose result is no number: kind 0 a text that follows, 3 none.
QByteArray formula(int row, int column, char kind)
{
    return cell(0x0006, row, column,
                kind + QByteArray(5, '\0') + word(0xffff) + QByteArray(8, '\0'));
}

QByteArray units(const QByteArray &latin1)
{
    return word(latin1.size()) + QByteArray(1, '\0') + latin1;
}

QByteArray label(int row, int column, const QByteArray &latin1)
{
    return cell(0x0204, row, column, units(latin1));
}

QByteArray sharedLabel(int row, int column, int index)
{
    return cell(0x00fd, row, column, word(index) + word(0));
}

// A workbook of one sheet, whose records are given without its end.
QByteArray workbook(quint16 version, const QByteArray &globals, const QByteArray &cells)
{
    const QByteArray start = record(0x0809, word(version) + word(0x0005)) + globals;
    const QByteArray name = version == version8 ? QByteArray("\1\0s", 3) : QByteArray("\1s");
    const int directorySize = 4 + 6 + name.size();
    const int offset = start.size() + directorySize + end().size();
    return start + record(0x0085, word(offset) + word(0) + word(0) + name) + end() +
           record(0x0809, word(version) + word(0x0010)) + cells + end();
}

QByteArray real(double value)
{
    QByteArray bytes(8, '\0');
    qToLittleEndian(value, bytes.data());
    return bytes;
}

// A file of a version from 2 to 4 with a sheet, or something else, in which a text, an empty text,
// the results of two formulas, a boolean and, in version 2, a date follow three names.
QByteArray fileOfVersion(int version, int content = 0x0010)
{
    const bool isFirst = version == 2;
    const auto type = [&](int first, int later) { return isFirst ? first : later; };
    const auto cell = [&](int row, int column, const QByteArray &value) {
        return word(row) + word(column) + QByteArray(isFirst ? 3 : 2, '\0') + value;
    };
    const auto text = [&](const QByteArray &bytes) {
        const QByteArray length = word(bytes.size());
        return (isFirst ? length.left(1) : length) + bytes;
    };
    const int form = isFirst ? 0 : version == 3 ? 0x0200 : 0x0400;
    const int formula = form | 0x06;
    const QByteArray textFollows = QByteArray(6, '\0') + word(0xffff);
    const QByteArray noFormula(8, '\0');
    const QByteArray date =
        isFirst ? record(0x0002, word(2) + word(2) + QByteArray("\1\1\0", 3) + word(45351)) : "";
    return record(form | 0x09, word(version << 8) + word(content) + word(0)) +
           record(0x0042, word(1252)) + record(type(0x0004, 0x0204), cell(0, 0, text("a"))) +
           record(type(0x0004, 0x0204), cell(0, 1, text("b"))) +
           record(type(0x0004, 0x0204), cell(0, 2, text("c"))) +
           record(type(0x0004, 0x0204), cell(1, 0, text("x"))) +
           record(type(0x0004, 0x0204), cell(1, 2, text(""))) +
           record(formula, cell(1, 1, real(42.5) + noFormula)) +
           record(formula, cell(2, 0, textFollows + noFormula)) +
           record(type(0x0007, 0x0207), text("\xe4")) +
           record(type(0x0005, 0x0205), cell(2, 1, QByteArray("\1\0", 2))) + date + end();
}

class XlsRecordsTest : public testing::Test
{
protected:
    Rows rowsOfStream(const QByteArray &stream, const QString &sheet = QStringLiteral("s"))
    {
        const QString path = dir.filePath("book.xls");
        writeFile(path, stream);
        std::unique_ptr<TestDataSet> set;
        message = standardErrorOf([&] {
            set.reset(sheet.isEmpty() ? TestDataSet::createTestDataSet(path)
                                      : TestDataSet::createTestDataSetExcel(path, sheet));
        });
        return rowsOf(*set);
    }

    const QTemporaryDir dir;
    const std::string notLoaded = "Couldn't load " + dir.filePath("book.xls").toStdString() + "\n";
    std::string message;
};

} // namespace

TEST_F(XlsRecordsTest, FilesOfOldVersionsAreRead)
{
    Rows rows;
    const int chart = 0x0020;
    for (int version = 2; version <= 4; ++version) {
        rows = {{"a", "b", "c"},
                {"x", "42.5", ""},
                {QString::fromUtf8("\u00e4"), "true", version == 2 ? "45351" : ""}};
        EXPECT_EQ(rowsOfStream(fileOfVersion(version), QString()), rows) << version;
        EXPECT_EQ(rowsOfStream(fileOfVersion(version, chart), QString()), Rows()) << version;
        EXPECT_EQ(message, "no sheets found\n") << version;
    }
    // In version 4 a workbook may hold sheets, each after a record with its name.
    EXPECT_EQ(rowsOfStream(record(0x0409, word(0x0400) + word(0x0100) + word(0)) +
                           record(0x008f, word(0) + word(0) + "\4none") + fileOfVersion(4, chart) +
                           record(0x008f, word(0) + word(0) + "\1s") + fileOfVersion(4) + end()),
              rows);
}

TEST_F(XlsRecordsTest, ATextBelongsToTheFormulaBeforeItAlone)
{
    // What continues a drawing is no text of a cell.
    const QByteArray drawing =
        record(0x01b6, QByteArray(18, '\0')) + record(continuation, units("no"));
    EXPECT_EQ(rowsOfStream(workbook(version8, "",
                                    label(0, 0, "a") + label(0, 1, "b") + formula(1, 0, 0) +
                                        record(string, units("abcd")) + formula(1, 1, 3) + drawing +
                                        record(string, units("no")))),
              (Rows{{"a", "b"}, {"abcd", ""}}));
    EXPECT_EQ(rowsOfStream(workbook(version8, "",
                                    label(0, 0, "a") + formula(1, 0, 0) + label(2, 0, "b") +
                                        record(string, units("no")))),
              Rows{{"a"}});
}

TEST_F(XlsRecordsTest, SharedTextsContinueInOtherRecordsAndWidths)
{
    const char wide = 1;
    const char rich = 8;
    const char phonetic = 4;
    const QByteArray texts =
        record(sharedStrings, word(9) + word(0) + word(5) + word(0) + units("a") + word(0) + '\0' +
                                  word(4) + char(rich | phonetic) + word(1) + word(3) + word(0) +
                                  "bc") +
        record(continuation, wide + word(0x20ac) + word('d') + word(7)) +
        record(continuation, word(7) + "xyz" + word(2) + wide + word(0xe4)) +
        record(continuation, QByteArray(1, '\0') + "\xfc" + word(1)) +
        record(continuation, QByteArray(1, '\0') + "e");
    const QByteArray cells = sharedLabel(0, 0, 0) + sharedLabel(0, 1, 4) + sharedLabel(1, 0, 1) +
                             sharedLabel(1, 1, 2) + sharedLabel(2, 0, 3);
    EXPECT_EQ(rowsOfStream(workbook(version8, texts, cells)),
              (Rows{{"a", "e"},
                    {"", QString::fromUtf8("bc\u20acd")},
                    {QString::fromUtf8("\u00e4\u00fc"), ""}}));
    EXPECT_EQ(rowsOfStream(workbook(version8, texts, cells + sharedLabel(3, 0, 5))), Rows());
    EXPECT_EQ(message, notLoaded) << "there is no such text";
}

TEST_F(XlsRecordsTest, OnlyTheWantedSheetHasToBeWhole)
{
    const QByteArray whole = workbook(version8, "", label(0, 0, "a"));
    EXPECT_EQ(rowsOfStream(whole), Rows{{"a"}});
    EXPECT_EQ(rowsOfStream(whole.left(whole.size() - 1)), Rows());
    EXPECT_EQ(message, notLoaded);
    const QByteArray other =
        record(0x0085, word(0xffff) + word(0xffff) + word(0) + QByteArray("\1\0o", 3));
    EXPECT_EQ(rowsOfStream(workbook(version8, other, label(0, 0, "a"))), Rows{{"a"}});
    EXPECT_EQ(rowsOfStream(workbook(version8, other, label(0, 0, "a")), "o"), Rows());
    EXPECT_EQ(message, notLoaded);
    EXPECT_EQ(rowsOfStream(record(0x0809, word(version8) + word(5)) + end()), Rows());
    EXPECT_EQ(message, "no sheets found\n");
}

TEST_F(XlsRecordsTest, ARangeOfNumbersEndsWithItsRowAndTheLastOfTwoCellsCounts)
{
    const QByteArray numbers = (word(0) + QByteArray(4, '\2')).repeated(3) + word(0);
    for (const int column : {0xfe, 0xfffe}) {
        const QByteArray cells = label(0, 0, "old") + label(1, 0, "x") + label(0, 0, "a") +
                                 record(0x00bd, word(0) + word(column) + numbers);
        EXPECT_EQ(rowsOfStream(workbook(version8, "", cells)), (Rows{{"a"}, {"x"}}));
    }
}

TEST_F(XlsRecordsTest, TextsAreInTheCodePageOfTheFile)
{
    const std::tuple<int, const char *, const char *> rows[] = {
        {437, "\x84", "\u00e4"},
        {850, "\x84", "\u00e4"},
        {852, "\x84", "\u00e4"},
        {865, "\x84", "\u00e4"},
        {866, "\x84", "\u0414"},
        {1251, "\xc4", "\u0414"},
        {1252, "\xe4", "\u00e4"},
        {10000, "\x8a", "\u00e4"},
        {0x8000, "\x8a", "\u00e4"},
        {0x8001, "\xe4", "\u00e4"},
        {932, "\x82\xa0", "\u3042"},
        {1200, "rich", "rich"},
        {1200, "-N\x87\x65", "\u4e2d\u6587"},
    };
    for (const auto &[codePage, encoded, given] : rows) {
        const QByteArray bytes = encoded;
        const QByteArray text = cell(0x0204, 0, 0, word(bytes.size()) + bytes);
        EXPECT_EQ(rowsOfStream(workbook(version5, record(0x0042, word(codePage)), text)),
                  Rows{{QString::fromUtf8(given)}})
            << codePage;
    }
    EXPECT_EQ(rowsOfStream(workbook(version5, record(0x0042, word(932)),
                                    cell(0x0204, 0, 0, word(4) + "\x82\xa0\x82") +
                                        record(continuation, "\xa2"))),
              Rows{{QString::fromUtf8("\u3042\u3044")}})
        << "a record may cut a character";
    EXPECT_EQ(rowsOfStream(workbook(version5, record(0x0042, word(1)), "")), Rows());
    EXPECT_EQ(message, notLoaded);
}
