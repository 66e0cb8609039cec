#include "shared/testdata.h"

#include "shared/tsvparser.h"
#include "shared/tsvtestdataset.h"
#include "support/tables.h"
#include "support/test.h"

#include <random>

using namespace Morvex;
using namespace MorvexTest;

namespace {

using Rows = std::vector<QStringList>;

class DelimitedFileTest : public testing::Test
{
protected:
    std::unique_ptr<TestDataSet> read(const QByteArray &text, const char *name = "data.csv")
    {
        writeFile(dir.filePath(name), text);
        return std::unique_ptr<TestDataSet>(TestDataSet::createTestDataSet(dir.filePath(name)));
    }

    Rows rows(const QByteArray &text, const char *name = "data.csv")
    {
        Rows result;
        warnings = standardErrorOf([&] {
            const auto set = read(text, name);
            result = set ? rowsOf(*set) : Rows{{"no set"}};
        });
        return result;
    }

    QTemporaryDir dir;
    std::string warnings;
};

std::unique_ptr<TestDataRecord> recordOf(const QStringList &values, TestDataSet *set = nullptr)
{
    auto record = std::make_unique<TestDataRecord>(set, 0);
    for (const QString &value : values)
        record->addValue(value);
    return record;
}

} // namespace

TEST_F(DelimitedFileTest, HowLinesAndFieldsAreCutByTheSeparatorThatAllLinesHaveMostOf)
{
    const Rows noSet = {{"no set"}};
    const struct
    {
        QByteArray text;
        Rows rows;
        const char *name = "data.csv";
    } cases[] = {
        {"a,b\n1,2\n", {{"a", "b"}, {"1", "2"}}},
        {"a,b\r\n1,2", {{"a", "b"}, {"1", "2"}}},
        {"a,b\n1,2\r", {{"a", "b"}, {"1", "2\r"}}},
        {"a,b\n1\r2,3\r\r\n", {{"a", "b"}, {"1\r2", "3\r"}}},
        {"a,b\n 1 ,\t2\t\n", {{"a", "b"}, {" 1 ", "\t2\t"}}},
        {"a,b\n1,\n,\n", {{"a", "b"}, {"1", ""}, {"", ""}}},
        {"a,b\n\"1\r\n,\n\",2\n3,4\n", {{"a", "b"}, {"1\r\n,\n", "2"}, {"3", "4"}}},
        {"a,\"b\"\"c\",d\n", {{"a", "b\"c", "d"}}},
        {"a\"b,c\"d,e\n", {{"ab,cd", "e"}}},
        {"\"a\"b\"c\",\"\"\"\"\n", {{"abc", "\""}}},
        {"a,b\n\"\",\"\"\n", {{"a", "b"}, {"", ""}}},
        {"a\n\"\"\nb\n", {{"a"}, {}, {"b"}}},
        {"a,b\n1,2\n\n3,4\n", {{"a", "b"}, {"1", "2"}}},
        {"a,b\n1,2\n\r\n3,4\n", {{"a", "b"}, {"1", "2"}}},
        {"a,b\n1,\"open\n3,4\n", {{"a", "b"}, {"1", "open\n3,4\n"}}},
        {"a,b\n\"1\"\r\n\"2\"\r\n", {{"a", "b"}, {"1"}, {"2"}}},
        {"", {{"1"}}},
        {"\n1,2\n", {{"1"}}},
        {"\xef\xbb\xbf", {{"1"}}},
        {"\xef\xbb\xbf\"a\",b\n", {{"a", "b"}}},
        {"\"\"\"\"\"\"", {{"\"\""}}},
        {"\"", {{}}},
        {"gr\xc3\xbcn\xff,\xf0\x9f\x98\x80\n",
         {{QString::fromUtf8("gr\u00fcn\ufffd"), QString::fromUtf8("\U0001f600")}}},
        {QByteArray("a,\0b\n", 5), {{"a", QString(1, QChar(0)) + "b"}}},
        {"\xff\xfe" + QByteArray("a\0,\0b\0\n\0", 8), {{"a", "b"}}},
        {"a;b\n1,2;3\n", {{"a", "b"}, {"1,2", "3"}}, "a.txt"},
        {"a,b;c\n", {{"a", "b;c"}}, "a.txt"},
        {"a,b\tc\n", {{"a", "b\tc"}}, "a.txt"},
        {"a\tb;c\n", {{"a\tb", "c"}}, "a.txt"},
        {"a,b;c\td\te\n", {{"a,b;c", "d", "e"}}, "a.txt"},
        {",,,\tx\n,,,\tx\n,,,,\tx\n,\n",
         {{",,,", "x"}, {",,,", "x"}, {",,,,", "x"}, {","}},
         "a.txt"},
        {"a;b\n\n1,2\n", {{"a", "b"}}, "a.txt"},
        {"\";\",b\n1,\";;\"\n", {{";", "b"}, {"1", ";;"}}, "a.txt"},
        {"a\nb\n", noSet, "a.txt"},
        {"", noSet, "a.txt"},
        {"a,b\n", {{"a", "b"}}, "A.XLS"},
        {"a\nb\n", {{"a"}, {"b"}}},
        {"a;b\n1;2\n", {{"a", "b"}, {"1", "2"}}},
        {"a;b\tc\n", {{"a;b", "c"}}, "a.tsv"},
        {"", {{"1"}}, "a.tsv"},
    };
    for (const auto &row : cases)
        EXPECT_EQ(rows(row.text, row.name), row.rows) << row.name << row.text.toStdString();
}

TEST_F(DelimitedFileTest, ARowOfAnotherLengthIsReportedAndKept)
{
    EXPECT_EQ(rows("a,b\n\"1\n2\",3\n4\n5,6,7\n"),
              (Rows{{"a", "b"}, {"1\n2", "3"}, {"4"}, {"5", "6", "7"}}));
    const std::string start =
        "Warning: inconsistent format in " + dir.filePath("data.csv").toStdString();
    EXPECT_EQ(warnings, start + " (line 2): Expected 2 fields. Got 1.\n" + start +
                            " (line 3): Expected 2 fields. Got 3.\n");
}

TEST_F(DelimitedFileTest, AFileThatCannotBeReadIsReportedApartFromAnEmptyOne)
{
    const std::string warning = "Couldn't open " + dir.filePath("no").toStdString();
    for (const char *suffix : {".csv", ".tsv", ".txt"}) {
        std::unique_ptr<TestDataSet> set;
        EXPECT_EQ(standardErrorOf([&] {
                      set.reset(TestDataSet::createTestDataSet(dir.filePath("no") + suffix));
                  }),
                  warning + suffix + "\n");
        EXPECT_EQ(bool(set), suffix != std::string(".txt"));
        EXPECT_TRUE(!set || (rowsOf(*set) == Rows{{"1"}} && !set->errorText().isEmpty()));
    }
    const QString path = dir.filePath("data.csv");
    // Can be opened, but has nothing at its start.
    ASSERT_TRUE(QFile::link("/proc/self/mem", path));
    EXPECT_NE(std::unique_ptr<TestDataSet>(TestDataSet::createTestDataSet(path))->errorText(), "");
    QFile::remove(path);
    EXPECT_EQ(read("")->errorText(), "");
}

TEST_F(DelimitedFileTest, LongFieldsQuotesAndCharactersAreFollowedAcrossThePiecesAFileIsReadIn)
{
    const int pieceSize = 1024 * 1024;
    for (int shift = 0; shift < 4; ++shift) {
        const QByteArray pad(10 * pieceSize - 6 + shift, 'x');
        EXPECT_EQ(rows("a,b\n" + pad + ",\"\"\"\n\"\"\"\r\n3,4"),
                  (Rows{{"a", "b"}, {pad, "\"\n\""}, {"3", "4"}}))
            << shift;
        const QString wide =
            QString(pieceSize / 2 - 7 + shift, 'x') + QString::fromUtf8("\U0001f600");
        const QString text = "a,b\n" + wide + ",1";
        EXPECT_EQ(rows("\xff\xfe" +
                       QByteArray(reinterpret_cast<const char *>(text.utf16()), text.size() * 2)),
                  (Rows{{"a", "b"}, {wide, "1"}}))
            << shift;
    }
}

TEST_F(DelimitedFileTest, WhatIsSavedReadsAsItWas)
{
    std::mt19937 random(5);
    const char pieces[] = "\",;\t\n\rab 1";
    const QString path = dir.filePath("saved.tsv");
    for (int round = 0; round < 200; ++round) {
        // A lone empty field comes back as none.
        const int width = 2 + static_cast<int>(random() % 4);
        TestDataSet set(path, '\t', false);
        Rows expected;
        for (unsigned count = 1 + random() % 6; count > 0; --count) {
            QStringList values;
            for (int column = 0; column < width; ++column) {
                values += QString();
                for (unsigned length = random() % 6; length > 0; --length)
                    values.last() += pieces[random() % (sizeof pieces - 1)];
            }
            if (expected.empty())
                set.setHeader(recordOf(values, &set).release());
            else
                set.addRecord(recordOf(values, &set).release());
            expected.push_back(values);
        }
        ASSERT_TRUE(set.save(path));
        EXPECT_EQ(rowsOf(TsvTestDataSet(path, '\t')), expected);
    }
}

TEST_F(DelimitedFileTest, SavedFilesQuoteWhatThereIsAndFillUpWhatIsMissing)
{
    const QString path = dir.filePath("data.csv");
    writeFile(path, "a;b;c\n1;\"x\"\"y\"\n\"\"\n1;2;3;4\n");
    std::unique_ptr<TsvTestDataSet> set;
    standardErrorOf([&] { set = std::make_unique<TsvTestDataSet>(path, ';'); });
    EXPECT_TRUE(set->save(QString()));
    EXPECT_EQ(readFile(path), "\"a\";\"b\";\"c\"\n\"1\";\"x\"\"y\";\n\"\";;\n"
                              "\"1\";\"2\";\"3\";\"4\"\n");
    EXPECT_FALSE(set->save(dir.filePath("no/such/dir.csv")));
    EXPECT_FALSE(set->save("/dev/full"));
    TestDataSet readOnly(dir.filePath("read-only.csv"), ',', true);
    EXPECT_FALSE(readOnly.save(QString()));
    EXPECT_FALSE(QFile::exists(readOnly.dataName()));
}

TEST(TestDataSetTest, IndicesOutOfRangeHaveNoEffect)
{
    TestDataSet set("name", ',', false);
    EXPECT_EQ(set.header(), nullptr);
    auto spare = recordOf({"x"});
    set.insertRecord(spare.get(), 0);
    EXPECT_EQ(set.count(), 0) << "an insertion can't append";
    set.addRecord(recordOf({"b"}, &set).release());
    set.insertRecord(recordOf({"a"}, &set).release(), 0);
    for (const int index : {-1, 2}) {
        set.insertRecord(spare.get(), index);
        set.removeRecord(index);
        EXPECT_EQ(set.record(index), nullptr);
    }
    EXPECT_EQ(rowsOf(set), (Rows{{"a"}, {"b"}}));
    set.removeRecord(0);
    EXPECT_EQ(rowsOf(set), Rows{{"b"}});

    spare->setValue(-1, "no");
    spare->setValue(2, "z");
    spare->insertField(3);
    spare->insertField(0);
    spare->removeField(4);
    spare->removeField(-1);
    EXPECT_EQ(valuesOf(spare.get()), (QStringList{"", "x", "", "z"}));
    EXPECT_TRUE(spare->valueAsString(0).isNull());
    EXPECT_FALSE(spare->valueAsString(2).isNull());
    EXPECT_TRUE(spare->valueAsString(4).isNull());
    fillEmptyCells(3, 5, spare.get());
    fillEmptyCells(5, 3, spare.get());
    EXPECT_EQ(spare->count(), 6);
}

TEST(TestDataSetTest, NamesKeepToTheirColumnsUntilTheHeaderIsSetAgain)
{
    TestDataSet set("name", ',', false);
    set.setHeader(recordOf({"a", "b", "a"}, &set).release());
    set.addRecord(recordOf({"1", "2", "3"}, &set).release());
    EXPECT_EQ(set.record(0)->valueAsString("a"), "3") << "of two equal names the later counts";
    EXPECT_EQ(set.fieldIndex("A"), -1);
    EXPECT_TRUE(set.record(0)->valueAsString("A").isNull());
    set.insertField(0);
    EXPECT_EQ(set.record(0)->valueAsString("b"), "1");
    set.setHeader(set.header());
    EXPECT_EQ(set.record(0)->valueAsString("b"), "2");
    set.removeField(0);
    EXPECT_EQ(rowsOf(set), (Rows{{"a", "b", "a"}, {"1", "2", "3"}}));
}

TEST(CheckAndMakeDirTest, TheDirectoriesOfAPathAreMade)
{
    QTemporaryDir dir;
    const QString before = QDir::currentPath();
    ASSERT_TRUE(QDir::setCurrent(dir.path()));
    const std::tuple<QString, bool, const char *, const char *> rows[] = {
        {"", false, ".", "x"},
        {"file", true, ".", "file"},
        {"one", false, "one", "x"},
        {"two//sub/file", true, "two/sub", "two/sub/file"},
        {dir.filePath("abs/sub/"), false, "abs/sub", "x"},
        {"same/deep/same", true, "deep", "same"},
    };
    for (const auto &[path, isFile, made, notMade] : rows) {
        TestData::checkAndMakeDir(path, isFile);
        EXPECT_TRUE(QFile::exists(made)) << path.toStdString();
        EXPECT_FALSE(QFile::exists(notMade)) << path.toStdString();
    }
    QDir::setCurrent(before);
}
