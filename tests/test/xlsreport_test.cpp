#include "support/runs.h"
#include "support/test.h"

#include <QProcess>
#include <QStandardPaths>

using namespace Morvex;
using namespace MorvexTest;

namespace {

const char rowPath[] = "/ss:Workbook/ss:Worksheet[@ss:Name='TestCases']/ss:Table/ss:Row";

QString cellOf(const XmlDocument &document, int row, int cell)
{
    const auto path = QString("%1[%2]/ss:Cell[%3]").arg(rowPath).arg(row).arg(cell);
    return document.text(path.toUtf8().constData()).trimmed();
}

using Sheet = QList<QStringList>;

QStringList fieldsOf(const QString &line)
{
    QStringList fields(QString{});
    bool isQuoted = false;
    for (const QChar character : line) {
        if (character == '"')
            isQuoted = !isQuoted;
        else if (character == ',' && !isQuoted)
            fields += QString();
        else
            fields.last() += character;
    }
    return fields;
}

Sheet sheetOf(const QString &file)
{
    Sheet sheet;
    for (const QString &line : QString::fromUtf8(readFile(file)).split('\n'))
        sheet += fieldsOf(line);
    sheet.removeLast();
    return sheet;
}

// Both sheets as a spreadsheet program reads them.
QList<Sheet> sheetsOf(const QByteArray &report)
{
    QTemporaryDir dir;
    const QString file = dir.filePath("report.xml");
    writeFile(file, report);
    QProcess program;
    program.start("ssconvert", {"-S", file, dir.filePath("sheet.%n.csv")});
    program.waitForFinished(60000);
    EXPECT_EQ(program.exitCode(), 0);
    EXPECT_EQ(program.readAllStandardError(), QByteArray());
    return {sheetOf(dir.filePath("sheet.0.csv")), sheetOf(dir.filePath("sheet.1.csv"))};
}

} // namespace

TEST(XlsTest, ASpreadsheetProgramShowsEveryEntryAndTheCounts)
{
    if (QStandardPaths::findExecutable("ssconvert").isEmpty())
        GTEST_SKIP() << "ssconvert (Gnumeric) is not installed";
    TestResult::Entry entry = entryOf(TestResult::FAIL, "=1+1", "one, two\nthree");
    entry.line = LineInfo("/a b.js", 3);
    entry.vpName = "0012";
    QList<Sheet> sheets = sheetsOf(reportOf("xls", entry));
    EXPECT_EQ(sheets.at(0).value(1), QStringList({"FAIL", "2024/03/01 12:00:00", "/a b.js:3",
                                                  "=1+1", "one, two\\nthree", "0012"}));
    sheets = sheetsOf(reportOf("xls", allRuns().back()));
    EXPECT_EQ(sheets.at(1).value(2), QStringList({"Passes", "7"}));
    int passes = 0;
    for (const QStringList &row : sheets.at(0)) {
        EXPECT_EQ(row.size(), 6);
        passes += row.value(0) == "PASS" || row.value(0) == "XFAIL" ? 1 : 0;
    }
    EXPECT_EQ(passes, 7);
}

TEST(XlsTest, EachTypeHasItsColour)
{
    for (const auto &[type, style] :
         {std::pair(TestResult::XPASS, "red"), std::pair(TestResult::XFAIL, "green"),
          std::pair(TestResult::WARNING, "magenta"), std::pair(TestResult::LOG, "blue")})
        EXPECT_EQ(XmlDocument(reportOf("xls", entryOf(type, "")))
                      .text((QByteArray(rowPath) + "[2]/ss:Cell[1]/@ss:StyleID").constData()),
                  style);
}

TEST(XlsTest, TestCasesAreSetApartAndBeginWithTheirCounts)
{
    const XmlDocument document(reportOf("xls", [](TestResult &result) {
        result.processEntry(entryOf(TestResult::START, ""));
        for (const char *name : {"first", "second"}) {
            result.processEntry(entryOf(TestResult::START_TEST_CASE, name));
            result.processEntry(entryOf(TestResult::XPASS, ""));
            if (*name == 's')
                result.processEntry(entryOf(TestResult::WARNING, ""));
        }
        result.processEntry(entryOf(TestResult::END, ""));
    }));
    EXPECT_EQ(cellOf(document, 2, 4), "first (Passes: 0, Fails: 1, Unexpected_passes: 1)");
    EXPECT_EQ(cellOf(document, 4, 1), "");
    EXPECT_EQ(cellOf(document, 5, 4),
              "second (Passes: 0, Fails: 1, Unexpected_passes: 1, Warnings: 1)");
    EXPECT_EQ(document.count(rowPath), 8);
}

TEST(XlsTest, ALongTextIsCutWithAMarkAndNeverInsideACharacter)
{
    const QString smiley = QString::fromUtf8("\U0001F600");
    for (const QString &text : {QString(1 << 20, 'x'), smiley.repeated(20000),
                                'x' + smiley.repeated(20000), QString(40000, '\n')}) {
        const XmlDocument document(reportOf("xls", entryOf(TestResult::LOG, text, text)));
        ASSERT_EQ(document.error(), QString());
        for (const int cell : {4, 5}) {
            const QString shown = cellOf(document, 2, cell);
            EXPECT_LE(shown.size(), 32767);
            EXPECT_GE(shown.size(), 32766);
            EXPECT_TRUE(shown.endsWith(" [cut]"));
        }
    }
    const QString fitting(32767, 'x');
    EXPECT_EQ(cellOf(XmlDocument(reportOf("xls", entryOf(TestResult::LOG, fitting))), 2, 4),
              fitting);
}

TEST(XlsTest, ColumnsAreAsWideAsTheirTextsUpToAScreen)
{
    const auto widthOf = [](const QString &message) {
        return XmlDocument(reportOf("xls", entryOf(TestResult::LOG, message)))
            .text("//ss:Column[4]/@ss:Width")
            .toDouble();
    };
    // What they take at ten points.
    const std::pair<ushort, double> widths[] = {{'W', 9.4}, {'G', 7.8}, {0x436, 6.7}, {0x4e2d, 10}};
    for (const auto &[character, width] : widths)
        EXPECT_GE(widthOf(QString(40, QChar(character))), 40 * width) << character;
    EXPECT_EQ(widthOf(QString(1 << 20, 'x')), 1340);
    EXPECT_LT(widthOf("x"), 120);
}

TEST(XlsTest, AnEntryWithoutTimeLeavesTheCellEmpty)
{
    TestResult::Entry entry = entryOf(TestResult::LOG, "text");
    entry.time = QDateTime();
    const XmlDocument document(reportOf("xls", entry));
    EXPECT_EQ(cellOf(document, 2, 2), "");
    EXPECT_EQ(cellOf(document, 2, 4), "text");
}
