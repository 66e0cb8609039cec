#include "support/runs.h"
#include "support/test.h"
#include "test/testreportgeneratorfactory.h"

#include <QProcess>

using namespace Morvex;
using namespace MorvexTest;

namespace {

QByteArray unzip(const QStringList &arguments, int *exitCode = nullptr)
{
    QProcess process;
    process.start("unzip", arguments);
    process.waitForFinished();
    if (exitCode)
        *exitCode = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    return process.readAllStandardOutput();
}

// Links of attachments lead out of the result directory and would show its name.
std::vector<TestResult::Entry> entriesBelow(const QString &resultDir)
{
    std::vector<TestResult::Entry> entries = sampleRun();
    for (TestResult::Entry &entry : entries) {
        entry.details.replace("/r/", resultDir + "/");
        entry.attachmentUri.replace("/r/", resultDir + "/");
    }
    return entries;
}

class ZipXml3ReportGeneratorTest : public testing::Test
{
protected:
    std::unique_ptr<TestReportGenerator> create(const QString &keyword, const QString &path)
    {
        resultDir.clear();
        return makeReport(keyword + ',' + path, &resultDir);
    }

    QTemporaryDir dir;
    QString target = dir.filePath("report.zip");
    QDir temporary = QDir(dir.filePath("tmp"));
    bool isMade = temporary.mkpath(".");
    EnvironmentGuard temporaryPath{"TMPDIR", QFile::encodeName(temporary.path())};
    QString resultDir;
};

} // namespace

TEST_F(ZipXml3ReportGeneratorTest, TheArchiveHoldsTheReportOfXml3AndWhatTheRunPutBesideIt)
{
    for (const QString version : {"", ".1", ".2", ".3", ".4", ".5"}) {
        const auto zip = create("zipxml3" + version, target);
        writeFile(resultDir + "/tst_a/failed_1.png", "image");
        replay(entriesBelow(resultDir), zip.get());
        const QByteArray zipDir = resultDir.toUtf8();
        const QString plainDir = dir.filePath("plain" + version);
        replay(entriesBelow(plainDir), create("xml3" + version, plainDir).get());

        int exitCode = -1;
        unzip({"-t", target}, &exitCode);
        EXPECT_EQ(exitCode, 0);
        QByteArray report = unzip({"-p", target, "results.xml"});
        EXPECT_FALSE(report.isEmpty());
        report.replace(zipDir, plainDir.toUtf8());
        EXPECT_EQ(report, readFile(plainDir + "/results.xml"));
        EXPECT_EQ(unzip({"-p", target, "tst_a/failed_1.png"}), "image");
    }
}

TEST_F(ZipXml3ReportGeneratorTest, ReportsBesideTheArchiveNameThePlacesInIt)
{
    const QString beside = dir.filePath("beside.xml");
    const auto created = TestReportGeneratorFactory::create(
        {"xml," + beside, "zipxml3.5," + target}, &resultDir, TestReportGenerator::TEST_SUITE);
    replay(entriesBelow(resultDir), created.generator);
    created.generator->generateSummary();
    delete created.generator;
    const QByteArray report = readFile(beside);
    EXPECT_FALSE(report.contains(resultDir.toUtf8()));
    EXPECT_TRUE(report.contains(target.toUtf8() + "/tst_a/failed_1.png"));
}

TEST_F(ZipXml3ReportGeneratorTest, NothingIsLeftOfTheTemporaryDirectory)
{
    for (const bool reachesEnd : {true, false}) {
        auto generator = create("zipxml3", target);
        EXPECT_EQ(temporary.entryList(QDir::AllEntries | QDir::NoDotAndDotDot).size(), 1);
        generator->handleEntry(plainEntry(TestResult::START));
        if (reachesEnd)
            generator->handleEntry(plainEntry(TestResult::END));
        generator.reset();
        EXPECT_TRUE(temporary.isEmpty());
        EXPECT_EQ(readFile(target).isEmpty(), !reachesEnd);
    }
}
