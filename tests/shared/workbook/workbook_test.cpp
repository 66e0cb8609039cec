#include "shared/workbook/workbookfixture.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>

#include <sys/resource.h>

using namespace Morvex;
using namespace MorvexTest;

namespace {

// The output of the program, null when it fails or is missing.
QByteArray outputOf(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.start(program, arguments);
    if (!process.waitForFinished(60000) || process.exitCode() != 0)
        return {};
    return process.readAllStandardOutput() + '\n';
}

// What the program says that it wrote; null when it is not installed.
QJsonObject makeWorkbook(const QString &program, const QString &path)
{
    // Packages of the system are not always seen by the first interpreter in the path.
    for (const QString python : {"/usr/bin/python3", "python3"}) {
        const QByteArray output = outputOf(
            python, {MORVEX_SOURCE_DIR "/tests/shared/workbook/makeworkbook.py", program, path});
        if (!output.isNull())
            return QJsonDocument::fromJson(output).object();
    }
    return {};
}

#define MAKE_WORKBOOK_OR_SKIP(sheets, program, path)                                               \
    const QJsonObject sheets = makeWorkbook(program, path);                                        \
    if (sheets.isEmpty())                                                                          \
    GTEST_SKIP() << "needs " << program << " (python3-openpyxl, python3-xlsxwriter, "              \
                 << "python3-xlwt, gnumeric)"

// Whether there is a file now, of one sheet, which these statements write. They may use the module
// xlwt, and call the sheet `sheet`.
bool makeSheet(const QByteArray &statements, const QString &path)
{
    return !outputOf("/usr/bin/python3", {"-c",
                                          "import sys, xlwt\nbook = xlwt.Workbook()\n"
                                          "sheet = book.add_sheet('s')\n" +
                                              statements + "\nbook.save(sys.argv[1])",
                                          path})
                .isNull();
}

#define MAKE_SHEET_OR_SKIP(statements)                                                             \
    if (!makeSheet(statements, path))                                                              \
    GTEST_SKIP() << "needs python3-xlwt"

// How an .xlsx cell reads. Numbers are compared as such: the writers differ in their digits.
bool readsAs(const QString &text, const QJsonValue &written, bool hasSharedStrings)
{
    if (written.isObject() && written.toObject().contains("date"))
        return readsAs(text, written["date"], hasSharedStrings);
    if (written.isObject())
        return readsAs(text, written["formula"].isString() ? QJsonValue() : written["formula"],
                       hasSharedStrings);
    if (written.isBool())
        return text == (written.toBool() ? "1" : "0");
    if (written.isDouble())
        return text.toDouble() == written.toDouble() && !text.isEmpty();
    return text == (hasSharedStrings ? written.toString() : QString());
}

// How an .xls cell reads.
QString xlsText(const QJsonValue &written)
{
    if (written.isObject())
        return xlsText(written[written.toObject().contains("date") ? "date" : "formula"]);
    if (written.isBool())
        return written.toBool() ? "true" : "false";
    if (written.isDouble())
        return QString::number(written.toDouble(), 'g', 6);
    return written.toString();
}

// The table from its first cell to its first empty row.
Rows xlsTable(const QJsonArray &grid)
{
    Rows table;
    int firstColumn = -1;
    for (const QJsonValue &line : grid) {
        QStringList texts;
        for (const QJsonValue &cell : line.toArray())
            texts += xlsText(cell);
        const bool isEmpty = texts.join("").isEmpty();
        if (isEmpty && table.empty())
            continue;
        if (isEmpty)
            break;
        while (firstColumn < 0 || (table.empty() && texts[firstColumn].isEmpty()))
            ++firstColumn;
        table.push_back(texts.mid(firstColumn));
    }
    return table;
}

class XlsxProgramTest : public WorkbookTest, public testing::WithParamInterface<const char *>
{
};
using XlsProgramTest = XlsxProgramTest;

} // namespace

INSTANTIATE_TEST_SUITE_P(Programs, XlsxProgramTest,
                         testing::Values("openpyxl", "xlsxwriter", "gnumeric-xlsx"));
INSTANTIATE_TEST_SUITE_P(Programs, XlsProgramTest,
                         testing::Values("xlwt", "gnumeric-biff8", "gnumeric-biff7"));

TEST_P(XlsxProgramTest, EverySheetReadsAsItWasWritten)
{
    MAKE_WORKBOOK_OR_SKIP(sheets, GetParam(), path);
    const bool hasSharedStrings = readFile(path).contains("xl/sharedStrings.xml");
    for (auto sheet = sheets.begin(); sheet != sheets.end(); ++sheet) {
        const auto set = openBook(path, sheet.key());
        EXPECT_EQ(set->errorText(), "");
        const Rows rows = rowsOf(*set);
        const QJsonArray grid = sheet->toArray();
        ASSERT_EQ(rows.size(), std::size_t(grid.size())) << sheet.key().toStdString();
        for (int row = 0; row < grid.size(); ++row) {
            const QStringList &texts = rows[std::size_t(row)];
            EXPECT_EQ(texts.size(), grid[row].toArray().size());
            for (int column = 0; column < texts.size(); ++column)
                EXPECT_TRUE(readsAs(texts[column], grid[row][column], hasSharedStrings))
                    << sheet.key().toStdString() << row << ' ' << column << ' '
                    << texts[column].toStdString();
        }
    }
    EXPECT_EQ(rowsOf(*openBook(path)), rowsOf(*openBook(path, "Data")));
    EXPECT_EQ(rowsOfFile("data"), Rows());
}

TEST_P(XlsProgramTest, EveryTableReadsAsItWasWritten)
{
    path = dir.filePath("book.xls");
    MAKE_WORKBOOK_OR_SKIP(sheets, GetParam(), path);
    for (const QString name : {"Data", "Begins below"}) {
        const auto set = openBook(path, name);
        EXPECT_EQ(rowsOf(*set), xlsTable(sheets[name].toArray())) << name.toStdString();
        EXPECT_EQ(set->record(0)->index(), -1);
    }
    EXPECT_EQ(rowsOf(*openBook(path)), rowsOf(*openBook(path, "Data")));
    EXPECT_EQ(rowsOfFile("Empty"), Rows());
    EXPECT_EQ(rowsOfFile("data"), Rows());
    EXPECT_EQ(messages, "morvexrunner: sheet not found: data\n");
}

TEST_P(XlsProgramTest, AFileThatIsCutIsReadWholeOrNotAtAll)
{
    path = dir.filePath("book.xls");
    MAKE_WORKBOOK_OR_SKIP(sheets, GetParam(), path);
    const QByteArray whole = readFile(path);
    const Rows wholeRows = rowsOfFile();
    int refused = 0;
    for (int size = 0; size < whole.size(); size += 128) {
        writeFile(path, whole.left(size));
        const Rows rows = rowsOfFile();
        EXPECT_TRUE(rows == wholeRows || (rows.empty() && !messages.empty())) << size;
        refused += rows.empty();
    }
    EXPECT_GT(refused, 0);
}

TEST_F(WorkbookTest, AnEncryptedFileIsReported)
{
    path = dir.filePath("book.xls");
    MAKE_WORKBOOK_OR_SKIP(sheets, "xlwt", path);
    QByteArray content = readFile(path);
    // Makes the first record after that of the beginning the one that announces the encryption.
    const int start = content.indexOf(QByteArray::fromHex("090810000006"));
    ASSERT_GT(start, 0);
    content.replace(start + 20, 2, QByteArray::fromHex("2f00"));
    writeFile(path, content);
    EXPECT_EQ(rowsOfFile(), Rows());
    EXPECT_EQ(messages, "passwd protected\n");
}

TEST_F(WorkbookTest, ATableIsFoundNearTheStartAndReadToTheEndOfASheet)
{
    path = dir.filePath("book.xls");
    const std::tuple<const char *, std::size_t, const char *> sheets[] = {
        {"for row in range(65536): sheet.write(row, 0, row + 0.5)", 65536, ""},
        {"sheet.write(60, 60, 1)", 0, "no table found\n"},
        {"sheet.write(60, 60, 1); sheet.write(49, 0, None)", 0, "no head line found\n"},
        {"sheet.write(49, 0, None); sheet.write(49, 1, None)", 0, "no head line found\n"},
    };
    for (const auto &[statements, rows, message] : sheets) {
        MAKE_SHEET_OR_SKIP(statements);
        EXPECT_EQ(rowsOfFile().size(), rows) << statements;
        EXPECT_EQ(messages, message) << statements;
    }
}

TEST_F(WorkbookTest, OfTwoVersionsInAFileTheNewerOneIsRead)
{
    path = dir.filePath("book.xls");
    MAKE_WORKBOOK_OR_SKIP(sheets, "gnumeric-both", path);
    const Rows whole = rowsOfFile();
    EXPECT_EQ(whole, xlsTable(sheets["Data"].toArray()));
    QByteArray content = readFile(path);
    const QByteArray older = QByteArray::fromHex("090808000005");
    ASSERT_TRUE(content.contains(older));
    writeFile(path, content.replace(older, QByteArray(older.size(), '\0')));
    EXPECT_EQ(rowsOfFile(), whole);
}

TEST_F(WorkbookTest, LongAndEmptyTextsAreReadAndEmptySpaceTakesNoMemory)
{
    path = dir.filePath("book.xls");
    MAKE_SHEET_OR_SKIP("sheet.write(0, 0, 'a'); sheet.write(1, 0, '\\u20ac' * 20000)\n"
                       "for n in range(20): book.add_sheet(str(n)).write(65535, 255, n)\n"
                       "sheet.write(65535, 255, 1)");
    EXPECT_EQ(rowsOfFile(), (Rows{{"a"}, {QString(20000, QChar(0x20ac))}}));
    EXPECT_EQ(messages, "");
    rusage usage = {};
    getrusage(RUSAGE_SELF, &usage);
    const long before = usage.ru_maxrss;
    rowsOfFile("3");
    getrusage(RUSAGE_SELF, &usage);
    EXPECT_LT(usage.ru_maxrss - before, 16 * 1024);
}

TEST_F(WorkbookTest, FilesOfAnotherKindAreReported)
{
    const QByteArray text = "name,amount\nApple,3\n";
    writeArchive(path, {{"xl/worksheets/sheet1.xml", worksheet("A1", "")}});
    const QByteArray archive = readFile(path);
    const QByteArray compound = QByteArray::fromHex("d0cf11e0a1b11ae1") + QByteArray(4096, '\0');
    const std::string noArchive = "morvexrunner: testData Shared Strings: parameter error when "
                                  "extracting 'xl/sharedStrings.xml' from archive! \n";
    const std::pair<const char *, QByteArray> files[] = {
        {"text.xls", text},  {"archive.xls", archive},
        {"empty.xls", ""},   {"compound.xls", compound},
        {"text.xlsx", text}, {"compound.xlsx", compound},
        {"empty.xlsx", ""},  {"cut.xlsx", archive.left(archive.size() / 2)},
    };
    for (const auto &[name, content] : files) {
        path = dir.filePath(name);
        writeFile(path, content);
        EXPECT_EQ(rowsOfFile(), Rows());
        EXPECT_NE(error, "");
        EXPECT_EQ(messages,
                  path.endsWith(".xls") ? "Couldn't load " + path.toStdString() + "\n" : noArchive);
    }
    path = dir.filePath("no.xlsx");
    EXPECT_EQ(rowsOfFile(), Rows());
    EXPECT_EQ(messages, noArchive);
}
