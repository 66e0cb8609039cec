#include "test/tablediff.h"

#include "shared/xmltablerange.h"
#include "support/test.h"
#include "test/verification/diff.h"

#include <QColor>
#include <QDataStream>

#include <random>

using namespace Morvex;
using namespace MorvexTest;

namespace {

using Script = std::vector<std::pair<Diff::Operation, char>>;

Script scriptOf(const std::string &a, const std::string &b)
{
    Script script;
    auto out = std::back_inserter(script);
    Diff::diff(a.begin(), a.end(), b.begin(), b.end(), out, std::equal_to<char>());
    return script;
}

std::size_t longestCommonSubsequence(const std::string &a, const std::string &b)
{
    std::vector<std::vector<std::size_t>> length(a.size() + 1,
                                                 std::vector<std::size_t>(b.size() + 1));
    for (std::size_t i = 1; i <= a.size(); ++i) {
        for (std::size_t j = 1; j <= b.size(); ++j)
            length[i][j] = a[i - 1] == b[j - 1] ? length[i - 1][j - 1] + 1
                                                : std::max(length[i - 1][j], length[i][j - 1]);
    }
    return length[a.size()][b.size()];
}

// Rows with "|" between the cells; a cell may end with a colour in "#AARRGGBB" form.
std::string tableXml(const std::vector<std::string> &rows)
{
    std::string xml = "<table hasText=\"1\">";
    for (const std::string &row : rows) {
        xml += "<row>";
        for (const QString &cell : QString::fromStdString(row).split('|')) {
            const QStringList parts = cell.split('#');
            xml += "<cell><text>" + parts[0].toStdString() + "</text>";
            if (parts.size() > 1)
                xml += "<backgroundColor>#" + parts[1].toStdString() + "</backgroundColor>";
            xml += "</cell>";
        }
        xml += "</row>";
    }
    return xml + "</table>";
}

// "-1:a|b" is a deletion of row 1, "+1:" an insertion.
QStringList diffOf(const std::vector<std::string> &expected, const std::vector<std::string> &actual)
{
    FList<TableDiff::Element> list;
    const bool areEqual = table_diff_xml(tableXml(expected), tableXml(actual), &list);
    EXPECT_EQ(areEqual, list.isEmpty());
    QStringList result;
    for (const TableDiff::Element &element : list) {
        EXPECT_EQ(element.subject.type, TableDiff::Subject::ROW);
        QStringList cells;
        int row = 0;
        for (const TableDiff::Cell &cell : element.subject.cells) {
            EXPECT_EQ(cell.column, cells.size());
            row = cell.row;
            cells += cell.properties.value("text").toString();
        }
        result += QString("%1%2:%3").arg(element.kind == TableDiff::Element::DELETION ? "-" : "+",
                                         QString::number(row), cells.join('|'));
    }
    return result;
}

} // namespace

TEST(DiffTest, ScriptsAreShortestAndLeadFromOneToTheOther)
{
    std::mt19937 random(11);
    for (int round = 0; round < 4000; ++round) {
        const auto text = [&random] {
            std::string result(random() % 13, 'a');
            for (char &letter : result)
                letter = static_cast<char>('a' + random() % 3);
            return result;
        };
        const std::string a = text();
        const std::string b = text();
        std::string fromA;
        std::string fromB;
        std::size_t equal = 0;
        for (const auto &[operation, item] : scriptOf(a, b)) {
            if (operation != Diff::INSERT)
                fromA += item;
            if (operation != Diff::DELETE)
                fromB += item;
            equal += operation == Diff::EQUAL;
        }
        ASSERT_EQ(fromA, a);
        ASSERT_EQ(fromB, b);
        ASSERT_EQ(equal, longestCommonSubsequence(a, b)) << a << ' ' << b;
    }
}

TEST(DiffTest, AFewChangesTakeFewComparisons)
{
    std::vector<int> a(20000);
    for (std::size_t i = 0; i < a.size(); ++i)
        a[i] = static_cast<int>(i);
    std::vector<int> b = a;
    for (std::size_t i = 0; i < 10; ++i)
        b[i * 1999] = -1;
    std::size_t comparisons = 0;
    std::vector<std::pair<Diff::Operation, int>> script;
    auto out = std::back_inserter(script);
    Diff::diff(a.begin(), a.end(), b.begin(), b.end(), out, [&comparisons](int x, int y) {
        ++comparisons;
        return x == y;
    });
    EXPECT_EQ(script.size(), a.size() + 10);
    EXPECT_LT(comparisons, a.size() * 10);
}

TEST(TableDiffTest, RowsOfADifference)
{
    const std::tuple<std::vector<std::string>, std::vector<std::string>, QStringList> rows[] = {
        {{}, {}, {}},
        {{}, {"a", "b"}, {"+0:a", "+0:b"}},
        {{"a", "b"}, {}, {"-0:a", "-1:b"}},
        {{"a", "b", "c"}, {"a", "X", "c"}, {"-1:b", "+1:X"}},
        {{"a", "b"}, {"a", "X", "Y", "Z"}, {"-1:b", "+1:X", "+1:Y", "+1:Z"}},
        {{"a", "d"}, {"a", "b", "c", "d"}, {"+1:b", "+1:c"}},
        {{"a", "b", "c", "d"}, {"a", "X", "d"}, {"-1:b", "-2:c", "+1:X"}},
        {{"a|b"}, {"a"}, {"-0:a|b", "+0:a"}},
        {{"a.c|x"}, {"abc|y"}, {"-0:a.c|x", "+0:a.c|y"}},
        {{"a.c"}, {"abc"}, {}},
        {{"x#FFFF0000"}, {"x#FF00FF00"}, {}},
        {{"a(#FFFF0000"}, {"a("}, {"-0:a(", "+0:a("}},
        {{"#FFFF0000"}, {""}, {"-0:", "+0:"}},
        {{std::string(20000, '(') + std::string(20000, ')')},
         {""},
         {"-0:" + QString(20000, '(') + QString(20000, ')'), "+0:"}},
        {{QByteArray("()").repeated(300).toStdString()}, {""}, {}},
        {{" a "}, {"a"}, {"-0: a ", "+0:a"}},
        {{"  "}, {""}, {"-0:  ", "+0:"}},
        {{" "}, {"\n"}, {"-0: ", "+0:\n"}},
        {{"a<!-- c -->b| "}, {"ab|<![CDATA[ ]]>"}, {}},
        {{"a<!-- c -->b| "}, {"ab|"}, {"-0:ab| ", "+0:ab|"}},
    };
    for (const auto &[expected, actual, difference] : rows)
        EXPECT_EQ(diffOf(expected, actual), difference) << tableXml(expected) << tableXml(actual);
}

TEST(TableDiffTest, APatternIsShownOnlyWhereItMatchedLast)
{
    XmlTableRange expected[2];
    XmlTableRange actual;
    ASSERT_TRUE(actual.loadContentFromXml(tableXml({"ab|y"})));
    const char *const shown[] = {"a.*", "ab"};
    for (int i = 0; i < 2; ++i) {
        ASSERT_TRUE(expected[i].loadContentFromXml(tableXml({std::string(shown[i]) + "|x"})));
        FList<TableDiff::Element> list;
        table_diff_range(expected[i], actual, &list);
        EXPECT_EQ(list.last().subject.cells.first().properties.value("text"), shown[i]);
    }
}

TEST(TableDiffTest, ColoursTravelWithTheirCells)
{
    FList<TableDiff::Element> list;
    EXPECT_FALSE(table_diff_xml(tableXml({"#80FF0001|a"}), tableXml({"|a"}), &list));
    EXPECT_EQ(list.first().subject.cells.first().properties.value("backgroundColor"),
              QColor(255, 0, 1, 128));
    EXPECT_FALSE(list.last().subject.cells.first().properties.contains("backgroundColor"));
}

TEST(TableDiffTest, ATableThatCannotBeReadLeavesTheResult)
{
    const std::pair<std::string, const char *> rows[] = {
        {"<table><row>", "XML Parse Error at 1:13:"},
        {"<table>\n <row>\n  <cell></row></table>", "XML Parse Error at 3:11:"},
        {"<tabel/>", "Missing table element in XML input\n"},
        {"<table><row><cell/></row><row><cell/><cell/></row></table>",
         "Malformed table XML, number of columns differ between rows\n"},
        {"<table>" + QByteArray("<row>").repeated(200000).toStdString(),
         "XML Parse Error at 1:2508:The elements are nested deeper than 500 levels.\n"},
    };
    for (const auto &[xml, said] : rows) {
        FList<TableDiff::Element> list{TableDiff::Element()};
        bool areEqual = true;
        const std::string message = standardErrorOf(
            [&, &xml = xml] { areEqual = table_diff_xml(xml, tableXml({"a"}), &list); });
        EXPECT_FALSE(areEqual);
        EXPECT_EQ(list.count(), 1);
        EXPECT_EQ(message.find(said), 0U) << message;
        XmlTableRange range;
        ASSERT_TRUE(range.loadContentFromXml(tableXml({"a|b", "c|d"})));
        standardErrorOf([&, &xml = xml] { EXPECT_FALSE(range.loadContentFromXml(xml)); });
        EXPECT_EQ(range.text(1, 1), "d") << message;
    }
}

TEST(TableDiffTest, ReferencesAreReadAsUnicode)
{
    FList<TableDiff::Element> list;
    EXPECT_TRUE(table_diff_xml("<table><row><cell><text>&#xFC;&#8364;&#x1F600;</text></cell>"
                               "<cell><text>&#x0A; </text></cell></row></table>",
                               tableXml({"\xc3\xbc\xe2\x82\xac\xf0\x9f\x98\x80|\n "}), &list));
}

TEST(TableDiffTest, ColourTexts)
{
    using Color = TableRange::Color;
    const std::pair<const char *, Color> rows[] = {
        {"#FF0000", {255, 255, 0, 0}},
        {"#01020aFF", {1, 2, 10, 255}},
        {"FF0000", {}},
        {"#FF00", {}},
        {"#GG0000", {}},
        {"", {}},
    };
    for (const auto &[text, color] : rows)
        EXPECT_EQ(TableRange::colorFromString(text), color) << text;
    EXPECT_EQ(TableRange::colorToString({1, 2, 10, 255}), "#01020AFF");
}

TEST(TableRangeTest, TheXmlFormReadsBack)
{
    XmlTableRange range;
    ASSERT_TRUE(range.loadContentFromXml(tableXml({" a |b#FF010203", "<![CDATA[<&>]]>|"})));
    EXPECT_EQ(range.contentAsXml(0), "");
    const std::string text = range.contentAsXml(TableRange::TextContent);
    EXPECT_EQ(text.find("<?xml version=\"1.0\" encoding=\"utf-8\""), 0U);
    EXPECT_EQ(text.find("backgroundColor"), std::string::npos);
    XmlTableRange copy;
    ASSERT_TRUE(copy.loadContentFromXml(
        range.contentAsXml(TableRange::TextContent | TableRange::BackgroundColorContent)));
    ASSERT_EQ(copy.rowCount(), 2);
    ASSERT_EQ(copy.columnCount(), 2);
    EXPECT_EQ(copy.text(0, 0), " a ");
    EXPECT_EQ(copy.text(1, 0), "<&>");
    EXPECT_EQ(copy.text(1, 1), "");
    EXPECT_EQ(copy.text(2, 0), "");
    EXPECT_EQ(copy.backgroundColor(0, 1), (TableRange::Color{255, 1, 2, 3}));

    XmlTableRange empty;
    ASSERT_TRUE(empty.loadContentFromXml("<table/>"));
    EXPECT_EQ(empty.rowCount(), 0);
    EXPECT_EQ(empty.columnCount(), 0);
}

TEST(TableDiffStreamTest, AMapIsWrittenFromItsLastKey)
{
    TableDiff::Cell cell;
    cell.row = 1;
    cell.column = 2;
    cell.properties = {{"a", QString("1")}, {"b", QString("2")}};
    TableDiff::Element element;
    element.kind = TableDiff::Element::INSERTION;
    element.subject.type = TableDiff::Subject::ROW;
    element.subject.cells = {cell};
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out << FList<TableDiff::Element>{element};
    EXPECT_EQ(bytes.left(8 + 2 + 8 + 4 + 4 + 4 + 6).toHex(), "0000000000000001"
                                                             "01"
                                                             "01"
                                                             "0000000000000001"
                                                             "00000001"
                                                             "00000002"
                                                             "00000002"
                                                             "000000020062");
}
