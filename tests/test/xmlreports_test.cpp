#include "support/runs.h"
#include "support/test.h"

using namespace Morvex;
using namespace MorvexTest;

namespace {

const char *const flatFormats[] = {"xml", "xmlIncremental"};

// The second testresult: the first is START.
QStringList attributesOfEntry(const char *keyword, const TestResult::Entry &entry)
{
    return XmlDocument(reportOf(keyword, entry)).attributes("/MorvexReport/testresult[2]");
}

TestResult::Entry resultOf(TestResult::VPType vpType, const QString &message,
                           const QString &details)
{
    TestResult::Entry entry = entryOf(TestResult::FAIL, message, details);
    entry.vpType = vpType;
    entry.vpName = "VP1";
    entry.line = LineInfo("/suite/a.js", 3);
    return entry;
}

QStringList descriptionsOf(const char *keyword, const TestResult::Entry &entry)
{
    const XmlDocument document(reportOf(keyword, entry));
    QStringList descriptions;
    for (int i = 1; i <= document.count("//x2:result/x2:description"); ++i) {
        const QByteArray path = QString("//x2:result/x2:description[%1]").arg(i).toUtf8();
        descriptions +=
            document.text((path + "/@type").constData()) + ": " + document.text(path.constData());
    }
    return descriptions;
}

} // namespace

TEST(FlatXmlTest, AttributesHaveTheirOrderAndOnlyWhatIsKnownIsWritten)
{
    TestResult::Entry bare = entryOf(TestResult::LOG, "text");
    TestResult::Entry named = bare;
    named.vpName = "VP1";
    TestResult::Entry withInfo = bare;
    withInfo.info = "word";
    TestResult::Entry full = named;
    full.info = "word";
    full.line = LineInfo("/suite/a.js", 0);
    const QStringList common{"time=2024-03-01T12:00:00", "result=LOG", "message=text"};
    for (const char *keyword : flatFormats) {
        EXPECT_EQ(attributesOfEntry(keyword, bare), common);
        EXPECT_EQ(attributesOfEntry(keyword, named), common + QStringList("info=VP1"));
        EXPECT_EQ(attributesOfEntry(keyword, withInfo), common + QStringList("info=word"));
        EXPECT_EQ(attributesOfEntry(keyword, full),
                  common + QStringList({"line=/suite/a.js:0", "info=VP1", "extra=word"}));
    }
}

TEST(FlatXmlTest, ControlsInMessageAndDetailsAreShown)
{
    const auto entry = entryOf(TestResult::LOG, "a\tb\nc\bd\x01", "e\tf\ng\bh\x01");
    for (const char *keyword : flatFormats) {
        const XmlDocument document(reportOf(keyword, entry));
        EXPECT_EQ(document.text("/MorvexReport/testresult[2]/@message"), "a\\tb\\nc\\bd\\x01");
        EXPECT_EQ(document.text("/MorvexReport/testresult[2]"), "e\\tf\\ng\\bh\\x01");
    }
}

TEST(FlatXmlTest, TheSummaryIsWhereTheReaderOfEachFormLooksForIt)
{
    const QByteArray held = reportOf("xml", allRuns().front());
    const QByteArray grown = reportOf("xmlIncremental", allRuns().front());
    EXPECT_EQ(XmlDocument(held).count("/MorvexReport[@version='1.2']/*[1][self::summary]"), 1);
    EXPECT_EQ(XmlDocument(grown).count("/MorvexReport[@version='1.2']/*[last()][self::summary]"),
              1);
    EXPECT_EQ(
        XmlDocument(held).attributes("/MorvexReport/summary"),
        QStringList({"tests=0", "fails=0", "passes=0", "expected_fails=0", "unexpected_passes=0",
                     "testcases=0", "errors=0", "fatals=0", "warnings=0"}));
    EXPECT_TRUE(held.startsWith("<MorvexReport version=\"1.2\">\n    <summary tests=\"0\" "));
    EXPECT_TRUE(grown.endsWith("/>\n</MorvexReport>\n"));
}

TEST(FlatXmlTest, OnlyTheHeldFormHasTheCountsOfEachTestCase)
{
    const auto log = [](TestResult &result) {
        result.start("suite_a", QDir("/suite"), "", "");
        result.startTestCase("tst_a", QDir("/suite"), "", "");
        for (const auto type : allTypes()) {
            if (type >= TestResult::LOG)
                result.processEntry(fullEntry(type));
        }
        result.completedTestCase("tst_a");
        result.startTestCase("tst_b", QDir("/suite"), "", "");
        result.processEntry(fullEntry(TestResult::PASS));
        result.completed();
    };
    const char starts[] = "/MorvexReport/testresult[@result='START_TEST_CASE']";
    const XmlDocument held(reportOf("xml", log));
    EXPECT_EQ(held.attributes(starts).mid(4),
              QStringList({"passes=2", "fails=2", "expected_fails=1", "unexpected_passes=1",
                           "errors=1", "fatals=1", "warnings=1"}));
    EXPECT_EQ(held.text("/MorvexReport/testresult[@info='tst_b']/@passes"), "1");
    EXPECT_EQ(XmlDocument(reportOf("xmlIncremental", log)).attributes(starts).size(), 4);
}

TEST(FlatXmlTest, OnlyTheGrownFormMakesLogLinesOfSections)
{
    TestResult::Entry section = entryOf(TestResult::START_SECTION, "title", "text");
    section.info = "scenario";
    EXPECT_EQ(attributesOfEntry("xml", section).mid(1, 2),
              QStringList({"result=START_SECTION", "message=title"}));
    EXPECT_EQ(attributesOfEntry("xmlIncremental", section).mid(1, 2),
              QStringList({"result=LOG", "message=Start Scenario"}));
}

TEST(Xml2Test, LaterVersionsSayMoreOfAVerification)
{
    const std::tuple<TestResult::VPType, const char *, const char *, QStringList, QStringList>
        rows[] = {
            {TestResult::NO_VP, "':A.b' differs", "'1' and '2'", {"", "", ""}, {}},
            {TestResult::PROPERTY_VP,
             "':A.b' differs",
             "'1' and '2'",
             {"", "properties", "properties"},
             {"object: :A", "property: b", "failedValue: 1"}},
            {TestResult::PROPERTY_VP,
             "':A.b' differs",
             "not found",
             {"", "properties", "properties"},
             {"object: :A", "property: b"}},
            {TestResult::SCREENSHOT_VP,
             "':A' differs",
             "saved as '/tmp/x.png'",
             {"", "screenshot", "screenshot"},
             {"object: :A", "failedImage: /tmp/x.png"}},
            {TestResult::VISUAL_VP,
             "':A' differs",
             "no picture",
             {"", "screenshot", "screenshot"},
             {"object: :A"}},
            {TestResult::TABLE_VP, "':A' differs", "", {"", "", "table"}, {}},
            {TestResult::NO_VP,
             "failed",
             "Screenshot in \"/tmp/shot.png\"",
             {"", "", ""},
             {"file: /tmp/shot.png"}},
        };
    const char *const keywords[] = {"xml2", "xml2.1", "xml2.2"};
    for (const auto &[vpType, message, details, types, added] : rows) {
        const TestResult::Entry entry = resultOf(vpType, message, details);
        const QStringList common{QString(": ") + message, QString("DETAILED: ") + details};
        for (int version = 0; version < 3; ++version) {
            const XmlDocument document(reportOf(keywords[version], entry));
            EXPECT_EQ(document.text("/x2:MorvexReport/@version"), QString("2.%1").arg(version));
            QStringList attributes{"name=VP1", "file=/suite/a.js", "line=3"};
            if (!types[version].isEmpty())
                attributes += "type=" + types[version];
            EXPECT_EQ(document.attributes("//x2:verification"), attributes);
            EXPECT_EQ(descriptionsOf(keywords[version], entry),
                      version == 0 ? common : common + added);
        }
    }
}

TEST(Xml2Test, EachSubjectOfADifferenceHasItsFormInTheLatestVersion)
{
    TestResult::Entry entry = fullEntry(TestResult::FAIL);
    EXPECT_EQ(XmlDocument(reportOf("xml2.1", entry)).count("//x2:tablediff"), 0);
    TableDiff::Cell cell;
    cell.row = 4;
    cell.column = 5;
    cell.properties.insert("text", "t");
    TableDiff::Element element;
    element.subject.cells = {cell};
    entry.tableDiff.append(element);
    element.subject.type = TableDiff::Subject::COLUMN;
    entry.tableDiff.append(element);
    TableDiff::Element emptyRow;
    emptyRow.subject.type = TableDiff::Subject::ROW;
    entry.tableDiff.append(emptyRow);
    const XmlDocument document(reportOf("xml2.2", entry));
    EXPECT_EQ(document.text("//x2:deletion/x2:row[@line='3']/x2:cell[1]/x2:property[@name='text']"),
              "old");
    EXPECT_EQ(document.text("//x2:tablediff/x2:insertion/x2:row/x2:cell[2]"
                            "/x2:property[@name='backgroundColor']"),
              "#c8ff8000");
    EXPECT_EQ(document.count("//x2:tablediff/x2:context[1]/x2:cell/x2:property"), 1);
    EXPECT_EQ(document.text("//x2:tablediff/x2:context[2]/x2:column/@index"), "5");
    EXPECT_EQ(document.count("//x2:tablediff/x2:context[3]/x2:row[not(@*)]"), 1);
}

TEST(Xml2Test, ATestCaseThatWasLeftOutDoesNotLookPassed)
{
    TestResult::Entry testCase = entryOf(TestResult::SKIP_SECTION, "tst_a", "left out");
    testCase.info = "testcase";
    TestResult::Entry scenario = entryOf(TestResult::SKIP_SECTION, "title");
    scenario.info = "scenario";
    const XmlDocument document(reportOf("xml2", [&](TestResult &result) {
        result.start("suite_a", QDir("/suite"), "", "");
        result.processEntry(testCase);
        result.processEntry(scenario);
        result.completed();
    }));
    EXPECT_EQ(document.texts("//x2:message/@type"), QStringList({"SKIP_SECTION", "LOG"}));
    EXPECT_EQ(document.texts("//x2:message/x2:description"),
              QStringList({"tst_a", "left out", "Skip Scenario", "title"}));
}

TEST(Xml2Test, AVerificationHoldsItsOwnResultsAndNoOthers)
{
    const XmlDocument document(reportOf("xml2", [](TestResult &result) {
        const auto pass = [&result](const char *message) {
            result.addResult(TestResult::PASS, message, "", LineInfo(), "", -1);
        };
        result.start("suite_a", QDir("/suite"), "", "");
        result.startVP();
        pass("1a");
        pass("1b");
        result.endVP();
        result.startVP();
        pass("2a");
        result.addError("broken", "", {});
        pass("2b");
        result.endVP();
        pass("none");
        pass("none");
        result.completed();
    }));
    QStringList groups;
    for (int i = 1; i <= document.count("//x2:verification"); ++i) {
        const auto path = QString("//x2:verification[%1]/x2:result/x2:description[1]").arg(i);
        groups += document.texts(path.toUtf8().constData()).join("+");
    }
    EXPECT_EQ(groups, QStringList({"1a+1b", "2a", "2b", "none", "none"}));
    EXPECT_EQ(document.count("/x2:MorvexReport/x2:test/x2:message[@type='ERROR']"), 1);
}

TEST(Xml2Test, TestCasesNestInTheRunBetweenPrologAndEpilog)
{
    const XmlDocument document(reportOf("xml2", [](TestResult &result) {
        result.start("suite_a", QDir("/suite"), "", "");
        result.startTestCase("tst_a", QDir("/suite"), "", "");
        result.addResult(TestResult::LOG, "]]>", "<b>", LineInfo("/a.js", 1), "", -1);
        result.completedTestCase("tst_a");
        // A test case that nobody ends.
        result.startTestCase("tst_b", QDir("/suite"), "", "");
        result.completed();
    }));
    ASSERT_EQ(document.error(), QString());
    const QByteArray framed = "[x2:prolog[1]/@time][x2:epilog[last()]/@time]";
    for (const QByteArray path : {"/x2:MorvexReport/x2:test[@name='suite_a']",
                                  "/x2:MorvexReport/x2:test/x2:test[@name='tst_a']",
                                  "/x2:MorvexReport/x2:test/x2:test[@name='tst_b']"})
        EXPECT_EQ(document.count((path + framed).constData()), 1) << path.constData();
    EXPECT_EQ(document.attributes("//x2:message").mid(1),
              QStringList({"type=LOG", "file=/a.js", "line=1"}));
    EXPECT_EQ(document.texts("//x2:message/x2:description"), QStringList({"]]>", "<b>"}));
}
