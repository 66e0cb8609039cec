#include "shared/workbook/xlsxparts.h"

#include "shared/workbook/workbookfixture.h"

#include <QBuffer>
#include <QTextCodec>

#include <sys/resource.h>

using namespace Morvex;
using namespace MorvexTest;

using XlsxWorkbookTest = WorkbookTest;

TEST_F(XlsxWorkbookTest, HowTheCellsOfASheetRead)
{
    const QByteArray strings =
        "<sst><si><t> a </t><rPh><t>no</t></rPh></si><si><r><rPr/><t>b</t></r><r><t> c</t></r>"
        "</si><si/><si><t>_x0041_</t><t>\n</t></si><si><t/><r><t><![CDATA[<d>]]></t></r></si>"
        "</sst>";
    const std::tuple<const char *, QByteArray, Rows> cases[] = {
        {"A1:B2", "<row r=\"3\"/>", {{"", ""}, {"", ""}, {"", ""}}},
        {"A1:C1",
         "<row r=\"1\"><c r=\"A1\"><v>1</v></c><c r=\"C1\"><v>2</v></c></row>",
         {{"1", "", "2"}}},
        {"B2:C1:D4", "<row r=\"1\"/>", {{"", "", ""}}},
        {"A1",
         "<row r=\"1\"><c r=\"A1\"><v>1</v></c><c r=\"D1\"><v> 2 </v></c></row>",
         {{"1", "", "", " 2 "}}},
        {"", "<row r=\"1\"><c r=\"B1\"/></row>", {{"", ""}}},
        {"A1:E1",
         "<row r=\"1\"><c r=\"A1\" t=\"s\"><v>0</v></c><c r=\"B1\" t=\"s\"><v> 1 </v></c>"
         "<c r=\"C1\" t=\"s\"><v>2</v></c><c r=\"D1\" t=\"s\"><v>3x</v></c>"
         "<c r=\"E1\" t=\"s\"><v>4</v></c></row>",
         {{" a ", "b c", "", "_x0041_\n", "<d>"}}},
        {"A1:F1",
         "<row r=\"1\"><c r=\"A1\" t=\"s\"><v>5</v></c><c r=\"B1\" t=\"s\"><v>-1</v></c>"
         "<c r=\"C1\" t=\"s\"><v/></c><c r=\"D1\" t=\"s\"/>"
         "<c r=\"E1\" t=\"s\"><v>4294967296</v></c>"
         "<c r=\"F1\" t=\"s\"><v>99999999999999999999999</v></c></row>",
         {{"", "", "", "", "", ""}}},
        // The text of a formula is taken for an index.
        {"A1:C1",
         "<row r=\"1\"><c r=\"A1\" t=\"str\"><f>X</f><v>0</v></c>"
         "<c r=\"B1\" t=\"str\"><v>1</v></c><c r=\"C1\" t=\"str\"><f>1+2</f><v>x</v></c></row>",
         {{"", "b c", "b c"}}},
        {"A1:D1",
         "<row r=\"1\"><c r=\"A1\"><v>1</v><v>2</v></c><c r=\"B1\"><f>1</f><v>a<x>y</x>b</v></c>"
         "<c r=\"C1\" t=\"inlineStr\"><is><t>x</t></is></c><c r=\"D1\" t=\"b\"><v>1</v></c></row>",
         {{"", "ab", "", "1"}}},
        // Cells and rows that do not give their place, or go back, are not put right.
        {"A1:B1", "<row r=\"1\"><c><v>1</v></c><c r=\"A1\"><v>2</v></c></row>", {{"1", "2", ""}}},
        {"A1:A1",
         "<row r=\"1\"/><row><c r=\"A1\"><v>x</v></c></row><row r=\"1\"><c r=\"A1\">"
         "<v>new</v></c></row>",
         {{"new"}, {"x"}}},
        {"A1:B1", "<other/><row r=\"1\"><c r=\"a1\"><v>1</v></c></row>", {{"1", "", ""}}},
        {"A1:XFD1048576", "", {}},
    };
    for (const auto &[dimension, rows, result] : cases) {
        EXPECT_EQ(rowsOfSheet(worksheet(dimension, rows), strings), result) << rows.toStdString();
        const bool hasEmptyTexts = rows.contains("inlineStr") || rows.contains("\"str\"");
        EXPECT_EQ(messages.empty(), !hasEmptyTexts) << rows.toStdString() << messages;
    }
    rowsOfSheet(worksheet("A1", "<row r=\"1\"><c r=\"A1\" t=\"s\"><v>2</v></c></row>"), strings);
    EXPECT_FALSE(openBook(path)->header()->valueAsString(0).isNull());
    rowsOfSheet(worksheet("A1", "<row r=\"2\"/><row r=\"4\"/>"));
    const auto set = openBook(path);
    EXPECT_EQ(set->header()->index(), 0);
    EXPECT_EQ(set->record(2)->index(), 3);
    EXPECT_EQ(set->getSep(), ',');
    EXPECT_FALSE(set->save(dir.filePath("x.csv")));
}

TEST_F(XlsxWorkbookTest, FormsThatASheetMayComeIn)
{
    const QByteArray body = "<row r=\"1\"><c r=\"A1\"><v>\xc3\xa4&#x20ac;</v></c></row>";
    const QString sheet =
        QString::fromUtf8(worksheet("A1", body)).mid(QString("<?xml version=\"1.0\"?>").size());
    const auto encoded = [&sheet](const QByteArray &name) {
        const QString declaration = "<?xml version=\"1.0\" encoding=\"" + name + "\"?>";
        return QTextCodec::codecForName(name)->fromUnicode(declaration + sheet);
    };
    const QByteArray sheets[] = {
        sheet.toUtf8(),
        "\xef\xbb\xbf" + encoded("UTF-8"),
        encoded("UTF-16"),
        encoded("ISO-8859-1"),
        encoded("windows-1252"),
        "<x:worksheet xmlns:x=\"n\"><x:sheetData><x:row r=\"1\"><x:c r=\"A1\"><x:v>\xc3\xa4<!-- -->"
        "<![CDATA[\xe2\x82\xac]]></x:v></x:c></x:row></x:sheetData></x:worksheet>",
    };
    for (const QByteArray &form : sheets)
        EXPECT_EQ(rowsOfSheet(form), (Rows{{QString::fromUtf8("\u00e4\u20ac")}}))
            << form.left(60).toStdString() << messages;
    EXPECT_EQ(
        rowsOfSheet("<worksheet><sheetData><row r=\"2\"><c r=\"A2\"><v>1</v></c></row>"
                    "</sheetData><dimension ref=\"A1:C2\"/><dimension ref=\"Z9\"/></worksheet>"),
        (Rows{{"", "", ""}, {"1", "", ""}}))
        << "the width may come after the rows";
}

TEST_F(XlsxWorkbookTest, WhatCannotBeReadGivesAnEmptySetAndALineThatSaysWhy)
{
    const QByteArray cells = "<row r=\"1\"><c r=\"A1\"><v>1</v></c></row>";
    const QByteArray good = worksheet("A1", cells);
    const QByteArray text = "<t>" + QByteArray(1000, 'x') + "</t>";
    const QByteArray longText = "<![CDATA[" + QByteArray(600000, '<') + "]]>";
    const QByteArray emptyCell = "<c/>";
    QByteArray names;
    for (int i = 0; i < 20000; ++i)
        names += '<' + QByteArray(1000, 'a') + QByteArray::number(i) + "/>";
    const auto sheet = [](const QByteArray &xml) {
        return ArchiveParts{{"xl/worksheets/sheet1.xml", xml}};
    };
    const auto strings = [](const QByteArray &xml) {
        return ArchiveParts{{"xl/sharedStrings.xml", xml}};
    };
    const auto book = [](const QByteArray &xml) { return ArchiveParts{{"xl/workbook.xml", xml}}; };
    const std::string inSheet = "testData Sheet: ";
    const std::string inStrings = "testData Shared Strings: ";
    const std::string inBook = ".xlsx file is corrupt: ";
    const std::string notContained = "file is not contained in the archive!\n";
    const std::pair<ArchiveParts, std::string> cases[] = {
        {sheet(worksheet("A1", cells + "<row r=\"4294967295\"/>")), inSheet},
        {sheet(worksheet("A1", cells + "<row r=\"1048577\"/>")), inSheet + "A sheet can't"},
        {sheet(worksheet("A1", "<row r=\"2\"><c r=\"XFE2\"/></row>")), inSheet + "A sheet has"},
        {sheet(worksheet("A1:AAAAAAAAAAAAAAAAAAAA2", cells)), inSheet + "A sheet has"},
        {sheet(worksheet("A1", "<row r=\"1\">" + emptyCell.repeated(20000) + "</row>")),
         inSheet + "A sheet has"},
        {sheet(worksheet("A1", cells + QByteArray("<x>").repeated(200000))), inSheet},
        {sheet(worksheet("A1", names)), inSheet + "The names and tags of the document take"},
        {sheet(worksheet("A1", "<x>" + QByteArray(3000000, ' ') + "</x>")),
         inSheet + "the part has"},
        {sheet(worksheet("A1", "<row r=\"1\"><c r=\"A1\"><v>" + longText + "</v></c></row>")),
         inSheet + "A text is too long."},
        {sheet("<!DOCTYPE worksheet [<!ENTITY a \"aaaaaaaaaa\">]>" + good), inSheet},
        {sheet(good.left(good.size() - 4)), inSheet},
        {sheet(good + "<more/>"), inSheet},
        {sheet(""), inSheet},
        {sheet(QByteArray(100, '\0')), inSheet},
        {sheet("<?xml version=\"1.0\" encoding=\"Shift_JIS\"?><worksheet>\x83\x5c</worksheet>"),
         inSheet + "line 1: unknown encoding"},
        {strings("<sst><si><t>x</t></si><si>"), inStrings},
        {strings("<sst><si>" + text.repeated(600) + "</si></sst>"), inStrings + "A text is"},
        {strings("<sst><si><r>" + text.repeated(600) + "</r></si></sst>"), inStrings + "A text is"},
        {strings("<sst><si>" + ("<r>" + text + "</r>").repeated(600) + "</si></sst>"),
         inStrings + "A text is"},
        {strings("<sst><si><t>" + longText + "</t></si></sst>"), inStrings + "A text is"},
        {{{"xl/Worksheets/sheet1.xml", ""}}, inSheet + notContained},
        {book("<other/>"), inBook + "No <workbook>"},
        {book(""), inBook + "line 1: "},
        {book("<workbook><sheets>"), inBook + "line 1: "},
        {book("<!DOCTYPE workbook><workbook/>"), inBook + "The document has a document type."},
        {book("<workbook><a/></workbook>"), inBook + "No <sheets>"},
        {book("<workbook><sheets/></workbook>"), inBook + "No <sheet>"},
        {book("<workbook><sheets><sheet name=\"b\"/></sheets></workbook>"), "sheet not found: a"},
        {book("<workbook><sheets><sheet name=\"b\"/>"), inBook + "line 1: "},
        {book("<workbook><sheets><sheet name=\"a\" sheetId=\"7\"/></sheets></workbook>"),
         inSheet + notContained},
        {{{"xl/other.xml", ""}}, inBook + notContained},
    };
    for (const auto &[parts, message] : cases) {
        writeArchive(path, parts);
        const QByteArray part = parts.front().first;
        const bool isBook = part == "xl/workbook.xml" || part == "xl/other.xml";
        EXPECT_EQ(rowsOfFile(isBook ? "a" : ""), Rows()) << message;
        EXPECT_EQ(messages.rfind("morvexrunner: " + message, 0), 0u)
            << message << "but got" << messages;
        EXPECT_EQ(messages.find('\n'), messages.size() - 1);
        EXPECT_NE(error, "");
    }
    rowsOfSheet(worksheet("A1", ""), "<sst>" + ("<si>" + text + "</si>").repeated(600) + "</sst>");
    EXPECT_EQ(messages, "") << "no single text of these is long";
}

TEST_F(XlsxWorkbookTest, ValuesAreBoundedInMemoryByTheSizeOfTheFile)
{
    XlsxBudget budget(0);
    qint64 count = 0;
    while (budget.takeValues(1024))
        count += 1024;
    EXPECT_LT(count * qint64(sizeof(QString)), 512 * 1024 * 1024);
    QByteArray xml = "<sst><si><t>x</t></si></sst>";
    QBuffer strings(&xml);
    strings.open(QIODevice::ReadOnly);
    std::vector<QString> texts;
    EXPECT_NE(readSharedStrings(&strings, &budget, &texts), "");
    // Each way to more values is bounded where few are left.
    const QByteArray sharedCell = "<c t=\"s\"><v>0</v></c>";
    const std::tuple<QByteArray, QByteArray, bool> sheets[] = {
        {"A1", "<row r=\"1\"><c r=\"A1\"><v>1</v></c></row>", true},
        {"A1", "<row r=\"1\"/><row r=\"6000\"/>", false},
        {"A1:XFD1", "<row r=\"1\"/>", false},
        {"A1", "<row r=\"1\"><c r=\"XFD1\"/></row>", false},
        {"A1", "<row r=\"1\">" + sharedCell.repeated(6000) + "</row>", false},
        {"A1", "<row r=\"1\">" + QByteArray("<c><v>12</v></c>").repeated(6000) + "</row>", false},
    };
    for (const auto &[dimension, lines, fits] : sheets) {
        XlsxBudget left(0);
        ASSERT_TRUE(left.takeValues(count - 5000));
        QByteArray sheet = worksheet(dimension, lines);
        QBuffer device(&sheet);
        device.open(QIODevice::ReadOnly);
        TestDataSet set(QString(), ',', true);
        XlsxRows rows;
        const QString message = readSheet(&device, {"x"}, &set, &left, &rows);
        EXPECT_EQ(message.left(10), fits ? "" : "Its values") << lines.left(40).toStdString();
    }
}

TEST_F(XlsxWorkbookTest, ADamagedByteInAnArchiveIsNoticed)
{
    QByteArray rows;
    for (int row = 1; row <= 200; ++row)
        rows += "<row r=\"" + QByteArray::number(row) + "\"><c r=\"A1\"><v>" +
                QByteArray::number(row * 7919 % 1000) + "</v></c></row>";
    ASSERT_EQ(rowsOfSheet(worksheet("A1", rows)).size(), 200u);
    const QByteArray archive = readFile(path);
    const std::string prefix = "morvexrunner: testData Sheet: ";
    const int dataStart = 60;
    for (int place = dataStart; place < dataStart + 400; place += 3) {
        QByteArray damaged = archive;
        damaged[place] = static_cast<char>(damaged[place] ^ 0x10);
        writeFile(path, damaged);
        EXPECT_EQ(rowsOfFile(), Rows()) << place;
        EXPECT_TRUE(messages == prefix + "crc check failed! \n" ||
                    messages == prefix + "invalid zip archive file. \n")
            << place << messages;
    }
}

TEST_F(XlsxWorkbookTest, APartThatUnpacksToGigabytesTakesNoMemory)
{
    const QByteArray rows = "<worksheet><sheetData>";
    const std::tuple<const char *, QByteArray, char> bombs[] = {
        {"xl/worksheets/sheet1.xml", "", '\0'},
        {"xl/worksheets/sheet1.xml", rows, ' '},
        {"xl/worksheets/sheet1.xml", rows + "<row r=\"", '1'},
        {"xl/sharedStrings.xml", "<sst><si><t>", 'x'},
        {"xl/sharedStrings.xml", "<sst>", '<'},
        {"xl/sharedStrings.xml", "<sst><si><t><![CDATA[", '<'},
    };
    rusage before = {};
    getrusage(RUSAGE_SELF, &before);
    for (const auto &[part, start, filler] : bombs) {
        writeArchive(path, {});
        addBomb(path, part, start, filler);
        EXPECT_LT(readFile(path).size(), 8 * 1024 * 1024);
        EXPECT_EQ(rowsOfFile(), Rows());
        EXPECT_NE(messages, "") << part << filler;
    }
    rusage after = {};
    getrusage(RUSAGE_SELF, &after);
    // The sanitizer keeps what was freed for a while.
#ifdef __SANITIZE_ADDRESS__
    const long maxGrowthInKilobytes = 512 * 1024;
#else
    const long maxGrowthInKilobytes = 128 * 1024;
#endif
    EXPECT_LT(after.ru_maxrss - before.ru_maxrss, maxGrowthInKilobytes);
}
