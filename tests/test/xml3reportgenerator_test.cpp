#include "support/runs.h"
#include "support/test.h"

using namespace Morvex;
using namespace MorvexTest;

namespace {

Entries inRun(Entries entries)
{
    entries.insert(entries.begin(), plainEntry(TestResult::START));
    entries.push_back(plainEntry(TestResult::END));
    return entries;
}

} // namespace

TEST(Xml3ReportGeneratorTest, EveryVersionReadsBackAndHasWhatCameWithIt)
{
    const std::pair<const char *, QStringList> rows[] = {
        {"/MorvexReport/@version", {"3.0", "3.1", "3.2", "3.3", "3.4", "3.5"}},
        {"count(//visualVerificationResult)", {"0", "4", "4", "4", "4", "4"}},
        {"count(//scriptedVerificationResult)", {"8", "4", "4", "4", "4", "4"}},
        {"string(//test[@type='testcase'][1]/prolog/retry/@count)", {"", "", "0", "0", "0", "0"}},
        {"string(//test[@type='testcase'][2]/prolog/retry/@count)", {"", "", "1", "1", "1", "1"}},
        {"string(//test[@type='testcase'][2]/prolog/retry/@max)", {"", "", "1", "1", "1", "1"}},
        {"count(//stacktrace/location)", {"0", "0", "0", "40", "40", "40"}},
        {"boolean(/MorvexReport/@executedBy)",
         {"false", "false", "false", "false", "true", "true"}},
        {"string(//message/@time)",
         {"2024-02-29T23:59:58+01:00", "2024-02-29T23:59:58+01:00", "2024-02-29T23:59:58+01:00",
          "2024-02-29T23:59:58+01:00", "2024-02-29T23:59:58+01:00",
          "2024-02-29T23:59:58.007+01:00"}},
        {"count(//attachment)", {"3", "3", "3", "3", "3", "1"}},
        {"count(//videoCaptureStart) + count(//videoCaptureEnd)", {"0", "0", "0", "0", "0", "2"}},
    };
    for (int version = 0; version <= 5; ++version) {
        const XmlDocument document(
            reportOf(version == 0 ? "xml3" : QString("xml3.%1").arg(version), sampleRun()),
            XmlDocument::NoNamespaces);
        ASSERT_TRUE(document.error().isEmpty()) << version;
        for (const auto &[xpath, byVersion] : rows)
            EXPECT_EQ(document.value(xpath), byVersion[version])
                << xpath << " in version " << version;
    }
}

TEST(Xml3ReportGeneratorTest, EachKindOfResultHasItsFields)
{
    const XmlDocument document(reportOf("xml3.5", sampleRun()), XmlDocument::NoNamespaces);
    const std::pair<const char *, const char *> rows[] = {
        {"/MorvexReport/test/@type", "testsuite"},
        {"/MorvexReport/test/prolog/name", "suite_a"},
        {"count(/MorvexReport/test/prolog/retry)", "0"},
        {"//test[@type='testcase']/prolog/name", "tst_a"},
        {"//test[@type='testcase']/prolog/summary", "summary of a"},
        {"//test[@type='testcase']/prolog/description", "description of a"},
        {"count(//test/epilog)", "4"},
        {"//test[@type='section']/prolog/description", "about it"},
        {"//skippedTest[@type='section']/name", "title"},
        {"count(//skippedTest/location/lineNo)", "0"},
        {"count(//verification)", "20"},
        {"//verification/location/uri", "file:///s/tst_a/script.js"},
        {"//scriptedVerificationResult/scriptedLocation/lineNo", "12"},
        {"//propertyVerificationResult/objectPropertyLocation/uri", "file:///s/points/VP1.xml"},
        {"//propertyVerificationResult/objectPropertyLocation/objectName", ":Main.ok"},
        {"//propertyVerificationResult/objectPropertyLocation/property", "enabled"},
        {"//propertyVerificationResult/expectedValue", "false"},
        {"//propertyVerificationResult/actualValue", "true"},
        {"//tableVerificationResult/objectLocation/objectName", ":Main.ok"},
        {"//tableVerificationResult/tablediff/deletion/row/@line", "3"},
        {"//tableVerificationResult/tablediff/insertion/row/cell/property[@name='text']", "new"},
        {"//screenshotVerificationResult[@type='FAIL']/detail", "Saved as 'tst_a/failed_1.png'."},
        {"count(//screenshotVerificationResult/failedImage)", "2"},
        {"count(//visualVerificationResult[@type='XFAIL']/failedObjectDump)", "1"},
        {"count(//message)", "4"},
        {"//attachment/@type", "file"},
        {"count(//videoCaptureStart/@type)", "0"},
    };
    for (const auto &[xpath, expected] : rows)
        EXPECT_EQ(document.value(xpath), expected) << xpath;
    EXPECT_EQ(document.texts("//message/@type"), QStringList({"LOG", "FATAL", "ERROR", "WARNING"}));
}

TEST(Xml3ReportGeneratorTest, TheBytesOfAShortReport)
{
    TestResult::Entry message = plainEntry(TestResult::WARNING, "text");
    message.info = "info";
    message.details = "Screenshot in \"/x y/shot.png\"";
    TestResult::Entry video = plainEntry(TestResult::STARTVIDEOCAPTURE, "on");
    video.line = LineInfo("/s/a.js", 0);
    QByteArray report = reportOf("xml3.2", inRun({message, video}), TestReportGenerator::TEST_CASE);
    // The result directory of this run is a temporary one.
    report.replace(report.mid(report.indexOf("x-results:"),
                              report.indexOf("/x%20y") - report.indexOf("x-results:")),
                   "x-results:/..");
    const int attachment = report.indexOf("<attachment");
    EXPECT_EQ(report.left(attachment).toStdString(),
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
              "<MorvexReport version=\"3.2\" "
              "xmlns=\"http://www.morvex.org/resources/schemas/xml3\">\n"
              "    <test type=\"testcase\">\n"
              "        <prolog time=\"2024-02-29T23:59:58+01:00\">\n"
              "            <name><![CDATA[suite_a]]></name>\n"
              "            <location>\n"
              "                <uri/>\n"
              "            </location>\n"
              "        </prolog>\n"
              "        <message time=\"2024-02-29T23:59:58+01:00\" type=\"WARNING\">\n"
              "            <text><![CDATA[text: info]]></text>\n"
              "            <detail><![CDATA[Screenshot in \"/x y/shot.png\"]]></detail>\n"
              "            <screenshot>\n"
              "                <uri><![CDATA[x-results:/../x%20y/shot.png]]></uri>\n"
              "            </screenshot>\n"
              "        </message>\n"
              "        ");
    EXPECT_TRUE(report.mid(attachment)
                    .startsWith("<attachment type=\"file\" time=\"2024-02-29T23:59:58+01:00\">\n"));
    EXPECT_TRUE(report.endsWith("        <epilog time=\"2024-02-29T23:59:58+01:00\"/>\n"
                                "    </test>\n"
                                "</MorvexReport>\n"));
}

TEST(Xml3ReportGeneratorTest, ResultsOfOneVerificationStayTogetherUntilAnythingElseComes)
{
    const auto result = [](int counter) {
        return verificationEntry(TestResult::PASS, TestResult::NO_VP, counter);
    };
    const XmlDocument document(
        reportOf("xml3.5", inRun({result(1), result(1), plainEntry(TestResult::LOG, "l"), result(1),
                                  result(2)})),
        XmlDocument::NoNamespaces);
    EXPECT_EQ(document.value("count(/MorvexReport/test/*)"), "6");
    EXPECT_EQ(document.value("count(//verification[1]/scriptedVerificationResult)"), "2");
    EXPECT_EQ(document.value("name(//message/following-sibling::*[1])"), "verification");
    EXPECT_EQ(document.value("count(//verification)"), "3");
}

TEST(Xml3ReportGeneratorTest, EntriesThatLackTheirStackOrCellsKeepTheReportWellFormed)
{
    TestResult::Entry entry = plainEntry(TestResult::PASS);
    entry.vpType = TestResult::TABLE_VP;
    TableDiff::Element row;
    row.subject.type = TableDiff::Subject::ROW;
    entry.tableDiff = {TableDiff::Element(), row};
    const XmlDocument document(reportOf("xml3.5", inRun({entry})), XmlDocument::NoNamespaces);
    ASSERT_TRUE(document.error().isEmpty());
    EXPECT_EQ(document.value("count(//verification/location)"), "0");
    EXPECT_EQ(document.value("count(//row/@line)"), "0");
}

TEST(Xml3ReportGeneratorTest, NoTextBreaksTheReportOrTakesAnythingElseWithIt)
{
    const QStringList texts = awkwardTexts();
    Entries entries = runOfMessages(texts);
    for (TestResult::Entry &entry : entries)
        entry.details = entry.message;
    const XmlDocument document(reportOf("xml3.5", entries), XmlDocument::NoNamespaces);
    ASSERT_TRUE(document.error().isEmpty());
    const QStringList read = document.texts("//message/text");
    ASSERT_EQ(read.size(), texts.size());
    for (int i = 0; i < texts.size(); ++i) {
        // Readers take each line end for a line feed.
        const QString expected =
            withoutUnwritable(texts[i], true).replace("\r\n", "\n").replace('\r', '\n');
        EXPECT_TRUE(read[i] == expected) << i << ' ' << qPrintable(read[i].left(40));
    }
}
