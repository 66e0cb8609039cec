#include "shared/confparser.h"

#include "support/test.h"

using namespace Morvex;

namespace {

class ConfParserTest : public testing::Test
{
protected:
    ConfParser parse(const QByteArray &text, bool splitValues = true)
    {
        MorvexTest::writeFile(path, text);
        return ConfParser(path, splitValues);
    }

    QTemporaryDir dir;
    const QString path = dir.filePath("suite.conf");
};

} // namespace

TEST_F(ConfParserTest, ValuesOfAKey)
{
    const std::tuple<const char *, QStringList, QStringList> rows[] = {
        {"KEY=value", {"value"}, {"value"}},
        {"KEY\t=\tvalue\n", {"value"}, {"value"}},
        {"KEY = a  b \n", {"a", "b"}, {"a  b "}},
        {"KEY =", {}, {""}},
        {"KEY =  \nOTHER = x", {}, {""}},
        {"KEY = value # no comment", {"value", "#", "no", "comment"}, {"value # no comment"}},
        {"KEY = \"one\"", {"one"}, {"\"one\""}},
        {"KEY = \"two words\"", {"\"two", "words\""}, {"\"two words\""}},
        {"KEY = \"", {""}, {"\""}},
        {"KEY = a\nKEY = b", {"b"}, {"b"}},
        {"  # a comment\n\n# KEY = x\nKEY = y", {"y"}, {"y"}},
        {"KEY = a = b", {"a", "=", "b"}, {"a = b"}},
        {"KEY = gr\xc3\xbcn", {QString::fromUtf8("grün")}, {QString::fromUtf8("grün")}},
        {"KEY = x\r\n", {"x"}, {"x"}},
    };
    for (const auto &[text, split, whole] : rows) {
        EXPECT_EQ(parse(text).entries().value("KEY"), split) << text;
        EXPECT_EQ(parse(text, false).entries().value("KEY"), whole) << text;
        EXPECT_EQ(parse(text).error(), "") << text;
    }
    EXPECT_EQ(parse("= x").entries().value(""), QStringList("x"));
}

TEST_F(ConfParserTest, ErrorsNameThePlaceAndKeepWhatCameBefore)
{
    const std::tuple<const char *, const char *, QStringList> rows[] = {
        {"A = 1\nKEY", ": Unexpected end of file (key without a value)", {"A"}},
        {"A = 1\nKEY\nB = 2", ": Syntax error in line 2, column 4. Expected '='", {"A"}},
        {"A = 1\nKEY x\nB = 2", ": Syntax error in line 2, column 5. Expected '='", {"A"}},
        // Blank lines and comments are not counted, but count in the column.
        {"# c\n\nA = 1\n\n# c\nKEY x", ": Syntax error in line 2, column 10. Expected '='", {"A"}},
    };
    for (const auto &[text, error, keys] : rows) {
        const ConfParser parser = parse(text);
        EXPECT_EQ(parser.error(), path + error) << text;
        EXPECT_EQ(parser.entries().keys(), keys) << text;
    }
    // A file of zeros, as a power loss leaves it, must not be an empty suite.
    EXPECT_EQ(parse(QByteArray("A = 1\n\0\nB = 2", 13)).error(),
              path + ": Syntax error in line 2, column 2. Expected '='");
    EXPECT_EQ(ConfParser("/no/such/file", true).error(),
              "Couldn't open '/no/such/file' for reading.");
}

TEST_F(ConfParserTest, ReferencesToKeysAboveAndToTheEnvironment)
{
    const MorvexTest::EnvironmentGuard value("MORVEX_TEST_A", "env");
    const std::pair<const char *, const char *> rows[] = {
        {"A = 1 2\nKEY = $(A)/x", "1/x"},
        {"KEY = $(A)/x\nA = 1", "$(A)/x"},
        {"KEY = <$(MORVEX_TEST_A)>", "<env>"},
        {"KEY = $(MORVEX_TEST_B)/$(MORVEX_TEST_A)", "$(MORVEX_TEST_B)/env"},
        {"MORVEX_TEST_A =\nKEY = $(MORVEX_TEST_A)", "$(MORVEX_TEST_A)"},
        {"KEY = $ $x $$(MORVEX_TEST_A) $(MORVEX_TEST_A", "$ $x $env $(MORVEX_TEST_A"},
        {"A = xx$(MORVEX_TEST_B)\nMORVEX_TEST_B = deep\nKEY = $(A)", "xxdeep"},
    };
    for (const auto &[text, expanded] : rows)
        EXPECT_EQ(parse(text).entries().value("KEY").join(' '), expanded) << text;
}

TEST_F(ConfParserTest, AnExpansionWithoutEndLeavesTheText)
{
    const MorvexTest::EnvironmentGuard value("MORVEX_TEST_A", "$(MORVEX_TEST_A)$(MORVEX_TEST_A)");
    const ConfParser parser = parse("A = aa$(A)\nB = $(A)\nC = $(MORVEX_TEST_A)x\nD = last", false);
    EXPECT_EQ(parser.entries().value("B"), QStringList("$(A)"));
    EXPECT_EQ(parser.entries().value("C"), QStringList("$(MORVEX_TEST_A)x"));
    EXPECT_EQ(parser.entries().value("D"), QStringList("last"));
}

TEST_F(ConfParserTest, AFileOfReferencesStaysInProportion)
{
    QByteArray text = "A = " + QByteArray(600000, 'x') + "\n";
    for (int i = 0; i < 1000; ++i)
        text += "B" + QByteArray::number(i) + " = $(A)\n";
    const ConfParser parser = parse(text, false);
    qint64 size = 0;
    for (const QStringList &words : parser.entries())
        size += words.value(0).size();
    EXPECT_LT(size, 40000000);
    EXPECT_EQ(parser.entries().value("B0").value(0).size(), 600000);
    EXPECT_EQ(parser.entries().value("B999"), QStringList("$(A)"));
}

TEST_F(ConfParserTest, ALongFileIsExpandedToItsEnd)
{
    const QByteArray text = "A = value\nB = " + QByteArray(70000, 'x') +
                            "$(A)\nC = " + QByteArray("$(A)").repeated(100001) + "\n";
    const ConfParser parser = parse(text, false);
    EXPECT_EQ(parser.entries().value("B").value(0).size(), 70005);
    EXPECT_EQ(parser.entries().value("C").value(0), QString("value").repeated(100001));
}

TEST(ConfParserSplitArgsTest, QuotesAndBackslashesKeepBlanks)
{
    const std::pair<const char *, QStringList> rows[] = {
        {"", {}},
        {"  a   b ", {"a", "b"}},
        {"a\\ b c", {"a b", "c"}},
        {"\"a b\" c", {"a b", "c"}},
        {"-x=\"a b\"c", {"-x=a bc"}},
        {"\"open end", {"open end"}},
        {"\"\" a", {"a"}},
        {"\\ a", {" a"}},
        {" a\\\\ b", {"a\\ b"}},
    };
    for (const auto &[text, arguments] : rows)
        EXPECT_EQ(ConfParser::splitArgs(text), arguments) << text;
}

TEST(ConfigTest, AGroupHidesThePlainKeys)
{
    Config config({{"A", {"plain"}}, {"B", {"x", "y"}}, {"g/A", {"grouped"}}});
    EXPECT_EQ(config.entry("B"), "x y");
    EXPECT_EQ(config.globalEntries(), (QStringList{"A", "B"}));
    config.setSettingsGroup("g");
    EXPECT_EQ(config.entry("A"), "grouped");
    EXPECT_FALSE(config.hasEntry("B"));
    EXPECT_EQ(config.globalEntry("A"), "plain");
    config.setBoolEntry("C", true);
    EXPECT_EQ(config.globalListEntry("g/C"), QStringList("1"));
    config.setSettingsGroup("Default");
    EXPECT_EQ(config.settingsGroup(), "");
    EXPECT_EQ(config.localKey("A"), "A");
}

TEST(ConfigTest, WhatReadsAsTrue)
{
    const std::pair<QStringList, bool> rows[] = {
        {{}, true},     {{"yes"}, true}, {{"TRUE"}, true}, {{"On"}, true},      {{"2"}, true},
        {{"-1"}, true}, {{"0"}, false},  {{"no"}, false},  {{"1", "1"}, false}, {{""}, false},
    };
    for (const auto &[words, value] : rows)
        EXPECT_EQ(Config({{"K", words}}).boolEntry("K"), value) << words.join("|").toStdString();
    EXPECT_FALSE(Config().boolEntry("K"));
}
