#include "support/runs.h"
#include "support/test.h"
#include "test/testreportgeneratorfactory.h"

#include <QProcess>

#include <unistd.h>

using namespace Morvex;
using namespace MorvexTest;

namespace {

using Format = TestReportGeneratorFactory::Keyword;

// Those that make a result directory, each in its first version.
std::vector<Format> directoryFormats()
{
    std::vector<Format> formats;
    for (const Format &format : TestReportGeneratorFactory::keywords()) {
        const QString name = format.name;
        if (!name.contains('.') &&
            (format.target == TestReportGeneratorFactory::Directory || name.startsWith("zip")))
            formats.push_back(format);
    }
    return formats;
}

class ResultDirectoryTest : public testing::Test
{
protected:
    ResultDirectoryTest() { writeFile(dir.filePath("prefix/lib/webreport/index.html"), "page"); }

    std::unique_ptr<TestReportGenerator> create(const QStringList &values)
    {
        resultDir.clear();
        const auto result =
            TestReportGeneratorFactory::create(values, &resultDir, TestReportGenerator::TEST_SUITE);
        error = result.error;
        return std::unique_ptr<TestReportGenerator>(result.generator);
    }

    QString value(const Format &format, const QString &path) const
    {
        return format.name + QLatin1Char(',') + path;
    }

    QTemporaryDir dir;
    EnvironmentGuard prefix{"MORVEX_PREFIX", QFile::encodeName(dir.filePath("prefix"))};
    QString resultDir;
    QString error;
};

} // namespace

TEST_F(ResultDirectoryTest, NoTwoFormatsOfOneRunHaveADirectoryOfTheirOwn)
{
    int number = 0;
    for (const Format &first : directoryFormats()) {
        for (const Format &second : directoryFormats()) {
            const QString path = dir.filePath(QString::number(++number));
            // Not the same one either; a zip is a file.
            for (const QString &other :
                 {path + "b", first.file.isEmpty() || second.file.isEmpty() ? path + "c" : path}) {
                EXPECT_FALSE(create({value(first, path), value(second, other)}));
                EXPECT_EQ(error,
                          QStringLiteral("%1 report generator: Cannot create %2 report, another "
                                         "result directory is already set: %3")
                              .arg(second.name, QString(second.name).remove("zip"), resultDir));
            }
        }
    }
}

TEST_F(ResultDirectoryTest, NoFormatWritesIntoTheFileOfAnother)
{
    QFile::link(dir.filePath("none.xml"), dir.filePath("link.xml"));
    writeFile(dir.filePath("hard.xml"), "");
    ASSERT_EQ(::link(qPrintable(dir.filePath("hard.xml")), qPrintable(dir.filePath("same.xml"))),
              0);
    const QString rows[][2] = {
        {"xml3,%1/d", "xml,%1/d/results.xml"},    {"xml,%1/e/results.json", "json,%1/e"},
        {"xml,%1/link.xml", "junit,%1/none.xml"}, {"xml,%1/f.xml", "junit,%1/x/../f.xml"},
        {"xls,%1/hard.xml", "xml,%1/same.xml"},
    };
    for (const auto &row : rows) {
        EXPECT_FALSE(create({row[0].arg(dir.path()), row[1].arg(dir.path())}));
        EXPECT_TRUE(error.contains("another report")) << qPrintable(error);
    }
}

TEST_F(ResultDirectoryTest, ARefusedRunLeavesOlderReportsAsTheyWere)
{
    const QStringList values{"xml," + dir.filePath("old.xml"), "xml2," + dir.filePath("new.xml"),
                             "json," + dir.filePath("json")};
    const QString old[] = {dir.filePath("old.xml"), dir.filePath("json/results.json")};
    for (const QString &path : old)
        writeFile(path, "old");
    EXPECT_FALSE(create(values + QStringList{"unknown"}));
    for (const QString &path : old)
        EXPECT_EQ(readFile(path), "old");
    EXPECT_EQ(readFile(dir.filePath("new.xml")), "");
    const auto run = create(values);
    ASSERT_TRUE(run);
    for (const QString &path : old)
        EXPECT_EQ(readFile(path), "");
    EXPECT_NE(readFile(dir.filePath("new.xml")), "");
}

TEST_F(ResultDirectoryTest, AReportIsMadeWhereTheFileSystemFindsIt)
{
    QDir(dir.path()).mkpath("else/where");
    QFile::link(dir.filePath("else/where"), dir.filePath("link"));
    for (const char *value : {"xml,%1/link/../file/f.xml", "xml3,%1/link/../xml3",
                              "json,%1/link/../json", "html,%1/link/../html"})
        EXPECT_TRUE(create({QString(value).arg(dir.path())})) << qPrintable(error);
    EXPECT_EQ(QDir(dir.filePath("else")).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
              QStringList({"file", "html", "json", "where", "xml3"}));
}

TEST_F(ResultDirectoryTest, TwoRunsNeverWriteOneReport)
{
    for (const auto &keyword : TestReportGeneratorFactory::keywords()) {
        const QString name = keyword.name;
        if (keyword.target != TestReportGeneratorFactory::File &&
            keyword.target != TestReportGeneratorFactory::Directory)
            continue;
        SCOPED_TRACE(name.toStdString());
        const bool takesFreshName =
            keyword.traits.testFlag(TestReportGeneratorFactory::TakesFreeName);
        const QString file = dir.filePath(QString(name).remove('.'));
        const QString target = name + ',' + file + ".x";
        auto first = create({target});
        ASSERT_TRUE(first) << qPrintable(error);
        EXPECT_EQ(bool(create({target})), takesFreshName) << qPrintable(error);
        EXPECT_EQ(QFile::exists(file + "_1.x"), takesFreshName);
        replay(sampleRun(), first.get());
        first->generateSummary();
        // What a run starts must not keep its report from the next one.
        QProcess child;
        child.start("sleep", {"100"});
        ASSERT_TRUE(child.waitForStarted());
        first.reset();
        EXPECT_TRUE(create({target})) << qPrintable(error);
        child.kill();
        child.waitForFinished();
    }
}

TEST_F(ResultDirectoryTest, ATargetThatCanNotBeIsAnErrorBeforeTheRun)
{
    writeFile(dir.filePath("file"), "x");
    for (const Format &format : directoryFormats()) {
        const QString start = format.name + QLatin1String(" report generator: ");
        create({format.name});
        EXPECT_EQ(error, start + (format.file.isEmpty() ? "report file path cannot be empty"
                                                        : "Missing target directory"));
        const QString below = dir.filePath("file/report");
        EXPECT_FALSE(create({value(format, below)}));
        EXPECT_EQ(error,
                  start + (format.file.isEmpty()
                               ? "Could not open report file: Not a directory"
                               : QStringLiteral("Could not create directory '%1'").arg(below)));
        if (format.file.isEmpty())
            continue;
        const QString file = dir.filePath(format.name) + '/' + format.file;
        QDir().mkpath(file);
        EXPECT_FALSE(create({value(format, dir.filePath(format.name))}));
        EXPECT_EQ(error.mid(error.indexOf("Could")),
                  QStringLiteral("Could not open '%1' for writing").arg(file));
    }
    EXPECT_EQ(readFile(dir.filePath("file")), "x");
}
