#include "support/environmentguard.h"
#include "support/files.h"
#include "support/runs.h"
#include "test/testreportgeneratorfactory.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>

#include <csignal>
#include <gtest/gtest.h>
#include <memory>
#include <sys/wait.h>
#include <unistd.h>

using namespace Morvex;
using namespace MorvexTest;

namespace {

// What all formats that make a result directory promise. The zipped one says "xml3" too.
struct Format
{
    const char *keyword;
    const char *nameInErrors;
    const char *file;
};

const Format formats[] = {{"xml3.5", "xml3", "results.xml"},
                          {"json1.2", "json", "results.json"},
                          {"html", "html", "data/results-v1.js"},
                          {"zipxml3.5", "xml3", nullptr}};

QByteArray resultsInZip(const QString &archive)
{
    QProcess unzip;
    unzip.start("unzip", {"-p", archive, "results.xml"});
    unzip.waitForFinished();
    return unzip.readAllStandardOutput();
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
        return QLatin1String(format.keyword) + QLatin1Char(',') + path;
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
    for (const Format &first : formats) {
        for (const Format &second : formats) {
            const QString path = dir.filePath(QString::number(++number));
            // Not the same one either; a zip is a file.
            for (const QString &other :
                 {path + "b", first.file && second.file ? path : path + "c"}) {
                EXPECT_FALSE(create({value(first, path), value(second, other)}));
                EXPECT_EQ(error,
                          QStringLiteral("%1 report generator: Cannot create %2 report, another "
                                         "result directory is already set: %3")
                              .arg(second.keyword, second.nameInErrors, resultDir));
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
        EXPECT_TRUE(error.contains("another report") || error.contains("Could not open"))
            << qPrintable(error);
    }
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

TEST_F(ResultDirectoryTest, AMissingPathIsAnError)
{
    for (const Format &format : formats) {
        create({format.keyword});
        EXPECT_EQ(error, QLatin1String(format.keyword) + " report generator: " +
                             (format.file ? "Missing target directory"
                                          : "report file path cannot be empty"));
    }
}

TEST_F(ResultDirectoryTest, ATargetBelowAFileIsAnErrorAndTheFileStays)
{
    writeFile(dir.filePath("file"), "x");
    const QString path = dir.filePath("file/report");
    for (const Format &format : formats) {
        EXPECT_FALSE(create({value(format, path)}));
        EXPECT_EQ(error,
                  QLatin1String(format.keyword) + " report generator: " +
                      (format.file ? QStringLiteral("Could not create directory '%1'").arg(path)
                                   : "Could not open report file: Not a directory"));
        EXPECT_EQ(readFile(dir.filePath("file")), "x");
    }
}

TEST_F(ResultDirectoryTest, AFileThatCanNotBeOpenedIsAnErrorBeforeTheRun)
{
    for (const Format &format : formats) {
        if (!format.file)
            continue;
        const QString path = dir.filePath(format.keyword);
        const QString file = path + '/' + format.file;
        QDir().mkpath(file);
        EXPECT_FALSE(create({value(format, path)}));
        EXPECT_EQ(error.mid(error.indexOf("Could")),
                  QStringLiteral("Could not open '%1' for writing").arg(file));
    }
}

TEST_F(ResultDirectoryTest, AFullDiskDisturbsNeitherTheRunNorTheReportBeside)
{
    if (!QFileInfo::exists("/dev/full"))
        GTEST_SKIP() << "There is no /dev/full";
    for (const Format &format : formats) {
        if (!format.file)
            continue;
        const QString path = dir.filePath(format.keyword);
        const QString file = path + '/' + format.file;
        QDir().mkpath(QFileInfo(file).path());
        QFile::link("/dev/full", file);
        const QString console = path + ".txt";
        auto generator = create({value(format, path), "stdout," + console});
        ASSERT_TRUE(generator) << qPrintable(error);
        const auto entries = sampleRun();
        replay(entries, generator.get());
        generator.reset();
        EXPECT_EQ(std::size_t(readFile(console).count('\n')), entries.size()) << format.keyword;
    }
}

TEST_F(ResultDirectoryTest, EachFormatHasTheCountsOfTheConsoleReportBesideIt)
{
    for (const Format &format : formats) {
        const QString path = dir.filePath(format.keyword);
        const QString console = path + ".txt";
        auto generator = create({value(format, path), "stdout," + console});
        ASSERT_TRUE(generator) << qPrintable(error);
        replay(sampleRun(), generator.get());
        generator->generateSummary();
        generator.reset();
        const QByteArray report =
            format.file ? readFile(path + '/' + format.file) : resultsInZip(path);
        const auto count = [&report](const char *type) {
            return report.count(QByteArray("type=\"") + type + '"') +
                   report.count(QByteArray("\"result\":\"") + type + '"');
        };
        const std::pair<const char *, int> counts[] = {
            {"Test Cases", report.count("\"testcase\"")},
            {"Errors", count("ERROR")},
            {"Fatals", count("FATAL")},
            {"Fails", count("FAIL") + count("XPASS")},
            {"Passes", count("PASS") + count("XFAIL")},
            {"Expected Fails", count("XFAIL")},
            {"Unexpected Passes", count("XPASS")},
            {"Warnings", count("WARNING")},
        };
        const QString summary = readFile(console);
        for (const auto &[label, number] : counts)
            EXPECT_TRUE(
                summary.contains(QStringLiteral("Number of %1:\t%2\n").arg(label).arg(number, 4)))
                << format.keyword << ' ' << label << ' ' << number;
    }
}

TEST_F(ResultDirectoryTest, AKilledRunLeavesWholeLinesWithAllThatWasLogged)
{
    const QString path = dir.filePath("killed");
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        auto generator = create({"xml3.5," + path});
        for (const TestResult::Entry &entry : sampleRun()) {
            if (entry.type == TestResult::ATTACHMENT)
                ::raise(SIGKILL);
            generator->handleEntry(entry);
        }
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    ASSERT_TRUE(WIFSIGNALED(status));
    const QByteArray report = readFile(path + "/results.xml");
    EXPECT_TRUE(report.endsWith("</skippedTest>\n"));
    EXPECT_EQ(report.count("</message>\n"), 4);
    EXPECT_EQ(report.count("VerificationResult>\n"), 20);
}
