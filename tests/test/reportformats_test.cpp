#include "support/filesizelimit.h"
#include "support/reportcounts.h"
#include "support/runs.h"
#include "support/test.h"
#include "test/nullreportgenerator.h"
#include "test/openreportfile.h"
#include "test/output/reportfile.h"
#include "test/report/bufferedreport.h"
#include "test/testreportgeneratorfactory.h"

#include <QTextCodec>

#include <map>

using namespace Morvex;
using namespace MorvexTest;

namespace {

using Factory = TestReportGeneratorFactory;

// Of the formats that write a file entry by entry, or what they hold at the end.
QStringList fileKeywords(Factory::Traits with, Factory::Traits without)
{
    QStringList names;
    for (const Factory::Keyword &keyword : Factory::keywords()) {
        const QString name = keyword.name;
        if (keyword.target == Factory::File && name != "stdout" && !name.startsWith("zip") &&
            (keyword.traits & with) == with && !(keyword.traits & without))
            names += name;
    }
    return names;
}

const char *const countKeys[] = {"tests",  "fails",    "passes", "testcases", "errors",
                                 "fatals", "warnings", "xfails", "xpasses"};

// By the counters of a report that writes nothing.
Counts countsOf(const SampleRun &run)
{
    TestResult result(NullReportGenerator::create().generator);
    logRun(run, result);
    Counts counts;
    for (const char *key : countKeys)
        counts[key] = result.count(key);
    counts["errors+fatals"] = counts["errors"] + counts["fatals"];
    return counts;
}

void logHalfRun(TestResult &result)
{
    result.start("suite_a", QDir("/suite"), "", "");
    result.startTestCase("tst_half", QDir("/suite"), "", "");
    result.startSection("half done", "", {});
    result.processEntry(entryOf(TestResult::FAIL, "the last that is known"));
}

QString pathIn(const QTemporaryDir &dir)
{
    return dir.filePath("report.xml");
}

} // namespace

TEST(ReportFormatsTest, EveryFormatIsWellFormedAndCountsRightInEverySituation)
{
    for (const SampleRun &run : allRuns()) {
        const Counts expected = countsOf(run);
        const auto expectCounts = [&expected](const Counts &counts) {
            for (const auto &[key, count] : counts)
                EXPECT_EQ(count, expected.at(key)) << key;
        };
        for (const ClassicFormat &format : classicFormats()) {
            SCOPED_TRACE(format.keyword + ": " + run.name);
            const XmlDocument document(reportOf(format.keyword.c_str(), run));
            ASSERT_EQ(document.error(), QString());
            expectCounts(format.read(document));
        }
        for (const auto &keyword : Factory::keywords()) {
            if (keyword.target != Factory::Directory)
                continue;
            SCOPED_TRACE(std::string(keyword.name.data()) + ": " + run.name);
            expectCounts(countsOfResultsFile(keyword.file, reportOf(keyword.name, run)));
        }
    }
}

TEST(ReportFormatsTest, AnAbortedRunLeavesWhatIsKnownAndAnError)
{
    for (const ClassicFormat &format : classicFormats()) {
        SCOPED_TRACE(format.keyword);
        const QByteArray content = reportOf(format.keyword.c_str(), logHalfRun);
        const XmlDocument document(content);
        ASSERT_EQ(document.error(), QString());
        EXPECT_TRUE(content.contains("the last that is known"));
        EXPECT_TRUE(content.contains("Run aborted"));
    }
}

TEST(ReportFormatsTest, WithoutSummariesOnlyFormatsThatNeedNoneAreComplete)
{
    const EnvironmentGuard noSummary("MORVEX_NOREPORTSUMMARY", "1");
    for (const ClassicFormat &format : classicFormats()) {
        SCOPED_TRACE(format.keyword);
        const QByteArray whole = reportOf(format.keyword.c_str(), allRuns().back());
        EXPECT_EQ(XmlDocument(whole).error().isEmpty(), format.needsNoSummary);
        const QByteArray half = reportOf(format.keyword.c_str(), logHalfRun);
        EXPECT_EQ(XmlDocument(half).error().isEmpty(), format.needsNoSummary);
    }
    for (const QString &held : fileKeywords(Factory::NeedsSummary, Factory::Grows))
        EXPECT_TRUE(reportOf(held, allRuns().back()).isEmpty()) << held.toStdString();
}

TEST(ReportFormatsTest, AFormatWithoutAnyEntryLeavesNoHalfReport)
{
    for (const QString &held : fileKeywords({}, Factory::Grows))
        EXPECT_TRUE(reportOf(held, [](TestResult &) {}).isEmpty()) << held.toStdString();
}

TEST(ReportFormatsTest, GrowingFormatsHoldEachEntryAtOnceAndReadersCanCloseTheRest)
{
    for (const QString &keyword : fileKeywords(Factory::Grows, {})) {
        SCOPED_TRACE(keyword.toStdString());
        QTemporaryDir dir;
        TestResult result(makeReport(keyword + ',' + pathIn(dir)).release());
        result.start("suite_a", QDir("/suite"), "", "");
        for (int i = 0; i < 3; ++i) {
            const QString message = QString("entry %1").arg(i);
            result.processEntry(entryOf(TestResult::FAIL, message));
            const QByteArray content = readFile(pathIn(dir));
            EXPECT_TRUE(content.contains(message.toUtf8()));
            EXPECT_NE(XmlDocument(content).error(), QString());
            const XmlDocument recovered(content, XmlDocument::Recover);
            EXPECT_EQ(recovered.count("//testresult[@result='FAIL'] | //x2:result"), i + 1);
        }
    }
}

TEST(ReportFileTest, CharactersThatTheLocaleLacksBecomeReferencesOnAStandardStream)
{
    QTextCodec *before = QTextCodec::codecForLocale();
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("ISO-8859-1"));
    const std::string output = standardOutputOf([] {
        TestResult result(makeReport("xls,/dev/stdout").release());
        result.start("suite_a", QDir("/suite"), "", "");
        result.processEntry(entryOf(TestResult::LOG, QString::fromUtf8("\u00e4\u20ac\U0001F600")));
        result.completed();
    });
    QTextCodec::setCodecForLocale(before);
    EXPECT_NE(output.find("encoding=\"ISO-8859-1\""), std::string::npos);
    EXPECT_NE(output.find("\xe4&#8364;&#128512;"), std::string::npos);
    EXPECT_EQ(XmlDocument(QByteArray::fromStdString(output)).error(), QString());
}

TEST(ReportFileTest, AFileThatEndsInTheMidstOfAWriteIsReportedOnceWithTheReason)
{
    const QTemporaryDir dir;
    const EnvironmentGuard prefix("MORVEX_PREFIX", QFile::encodeName(dir.path()));
    writeFile(dir.filePath("lib/webreport/index.html"), "page");
    QStringList keywords = fileKeywords({}, {});
    for (const Factory::Keyword &keyword : Factory::keywords()) {
        if (keyword.target == Factory::Directory)
            keywords += keyword.name;
    }
    for (const QString &keyword : keywords) {
        const QString line = QString::fromStdString(standardErrorOf([&] {
            const FileSizeLimit limit(5000);
            TestResult result(makeReport(keyword + ',' + dir.filePath(keyword)).release());
            result.start("suite_a", QDir("/suite"), "", "");
            for (int i = 0; i < 100; ++i)
                result.processEntry(entryOf(TestResult::FAIL, QString(999, 'x')));
            result.completed();
        }));
        EXPECT_TRUE(
            line.startsWith("morvexrunner: Could not write report file '" + dir.filePath(keyword)))
            << qPrintable(line);
        EXPECT_TRUE(line.endsWith("': File too large\n")) << qPrintable(line);
        EXPECT_EQ(line.count('\n'), 1) << qPrintable(line);
    }
    const char *const rows[][2] = {
        {"stdout", "morvexrunner: Could not write the console report: No space left on device\n"},
        {"zipxml3", "Failed writing zip xml3 report to /dev/full: Adding file 'results.xml' to zip "
                    "returned error on add: "},
    };
    for (const auto &[keyword, said] : rows) {
        const auto report = makeReport(QString(keyword) + ",/dev/full");
        const std::string errors = standardErrorOf([&] { replay(sampleRun(), report.get()); });
        EXPECT_EQ(errors.find(said), 0U) << errors;
        EXPECT_EQ(errors.find('\n'), errors.size() - 1) << errors;
    }
    EXPECT_TRUE(hasIncompleteReport());
}

TEST(BufferedReportTest, TheGapIsFilledInItsPlaceHoweverMuchComesAfterIt)
{
    QTemporaryDir dir;
    const QByteArray large(200000, 'x');
    BufferedReport held;
    held.append("a");
    held.openGap();
    held.append(large);
    held.append("c");
    held.fillGap("b");
    held.append("d");
    {
        ReportFile file;
        ASSERT_EQ(file.open(pathIn(dir), {}, ReportFile::Utf8), QString());
        held.writeTo(file);
    }
    EXPECT_EQ(readFile(pathIn(dir)), "ab" + large + "cd");
}
