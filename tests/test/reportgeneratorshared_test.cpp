#include "test/reportgeneratorshared.h"

#include "shared/realpath.h"
#include "support/runs.h"
#include "support/test.h"

#include <QTimeZone>

#include <sstream>

using namespace Morvex;
using namespace MorvexTest;

TEST(TextParserTest, ObjectAndPropertyOfAMessage)
{
    const std::tuple<const char *, const char *, const char *, const char *> rows[] = {
        {"VP1: Property ':Main.OK_Button.text' is wrong", ":Main.OK_Button.text", ":Main.OK_Button",
         "text"},
        {"VP1: ':{name='a.b' type='B'}.enabled' differs", ":{name='a.b' type='B'}.enabled",
         ":{name='a.b' type='B'}", "enabled"},
        {"VP1: '{name='a' type='B'}.enabled' differs", "{name='a' type='B'}.enabled",
         "{name='a' type='B'}", "enabled"},
        {"VP1: 'plain' differs", "plain", "plain", ""},
        {"no quote at all", "", "", ""},
        {"':open", ":open", ":open", ""},
        {"'{open", "{open", "{open", ""},
    };
    for (const auto &[msg, withProperty, object, property] : rows) {
        EXPECT_EQ(vpObjectFromMsg(msg, false), withProperty) << msg;
        EXPECT_EQ(vpObjectFromMsg(msg, true), object) << msg;
        EXPECT_EQ(vpPropertyFromMsg(msg), property) << msg;
    }
}

TEST(TextParserTest, ImagesAndValuesOfAMessage)
{
    EXPECT_EQ(vpFailedImgFromMsg("see '/a/b.png' and 'c'"), "/a/b.png");
    EXPECT_EQ(vpFailedImgFromMsg("one ' only"), "");
    EXPECT_EQ(extractScreenshotFromMsg("x \"no\" Screenshot in \"/s.png\" taken"), "/s.png");
    EXPECT_EQ(extractScreenshotFromMsg("Screenshot in \"/s.png"), "");
    EXPECT_EQ(extractScreenshotFromMsgAndDetail("m", "Screenshot in \"/d.png\""), "/d.png");
    EXPECT_EQ(
        extractScreenshotFromMsgAndDetail("Screenshot in \"/m.png\"", "Screenshot in \"/d.png\""),
        "/m.png");

    const std::tuple<const char *, const char *, const char *> rows[] = {
        {"'a' and 'b' differ", "a", "b"}, {"'it's' and 'it''s' differ", "it's", "it''s"},
        {"'' and '' differ", "", ""},     {"'a' or 'b'", "old1", "old2"},
        {"no quotes", "old1", "old2"},    {"'a' and '", "old1", "old2"},
    };
    for (const auto &[msg, former, latter] : rows) {
        QString first = "old1";
        QString second = "old2";
        expectedAndActualValueFromMsg(msg, &second, &first);
        EXPECT_EQ(first, former) << msg;
        EXPECT_EQ(second, latter) << msg;
    }
}

TEST(ReportUriTest, LocationsSurviveMovingTheSuite)
{
    QTemporaryDir dir;
    const QString suite = realPath(dir.path()) + "/suite";
    const QString testCase = suite + "/tst_a";
    const QString outside = realPath(dir.path()) + "/out side%20/ü.js";
    writeFile(testCase + "/script #1?.js", "");
    writeFile(suite + "/shared.js", "");
    writeFile(outside, "");
    ASSERT_TRUE(QFile::link(suite, dir.filePath("link")));
    EXPECT_EQ(relativeURI(testCase + "/script #1?.js", suite, testCase),
              "x-testcase:/script%20%231%3F.js");
    EXPECT_EQ(relativeURI(testCase + "/script #1?.js", suite, ""),
              "x-testsuite:/tst_a/script%20%231%3F.js");
    EXPECT_EQ(relativeURI(dir.filePath("link/shared.js"), suite, testCase),
              "x-testsuite:/shared.js");
    EXPECT_EQ(relativeURI(outside, suite, testCase),
              ("file://" + realPath(dir.path()) + "/out%20side%2520/%C3%BC.js").toStdString());
    EXPECT_EQ(relativeURI("no/such.js", suite, testCase), "no/such.js");
    EXPECT_EQ(relativeURI("", suite, testCase), "");
    EXPECT_EQ(relativeURI("eval:code.js", suite, testCase), "eval:code.js");
    EXPECT_EQ(relativeURI("a b:c", suite, testCase), "a%20b:c");
    EXPECT_EQ(attachmentURI("/r/a/b c.png", suite, testCase, "/r"), "x-results:/a/b%20c.png");
    EXPECT_EQ(failedImageURI(suite + "/shared.js", suite, testCase, ""), "x-testsuite:/shared.js");
}

TEST(ReportUriTest, TheStartSaysWhereSuiteAndTestCaseAre)
{
    QTemporaryDir dir;
    const QString base = realPath(dir.path());
    QDir(base).mkpath("suite/tst_a");
    TestResult::Entry entry;
    entry.type = TestResult::START;
    entry.line = LineInfo(base + "/suite/tst_a", -1);
    QString suite;
    QString testCase;
    setTestSuiteAndTestCasePath(TestReportGenerator::TEST_CASE, entry, &suite, &testCase);
    EXPECT_EQ(suite, base + "/suite");
    EXPECT_EQ(testCase, base + "/suite/tst_a");
    setTestSuiteAndTestCasePath(TestReportGenerator::TEST_SUITE, entry, &suite, &testCase);
    EXPECT_EQ(suite, base + "/suite/tst_a");
    entry.type = TestResult::LOG;
    entry.line = LineInfo("/", -1);
    setTestSuiteAndTestCasePath(TestReportGenerator::TEST_SUITE, entry, &suite, &testCase);
    EXPECT_EQ(suite, base + "/suite/tst_a");
}

TEST(ReportTimeTest, TheOffsetIsWritten)
{
    const QDateTime time(QDate(2024, 2, 29), QTime(1, 2, 3, 45), QTimeZone("Asia/Kolkata"));
    EXPECT_EQ(formatAsISO8601(time), "2024-02-29T01:02:03+05:30");
    EXPECT_EQ(formatAsISO8601WithMs(time), "2024-02-29T01:02:03.045+05:30");
}

TEST(SectionLogTest, SectionsBecomeLogLines)
{
    const std::tuple<TestResult::ResultType, const char *, const char *, const char *> rows[] = {
        {TestResult::START_SECTION, "section", "Start Section: title", "text"},
        {TestResult::END_SECTION, "scenariooutline", "End Scenario Outline", "title"},
        {TestResult::SKIP_SECTION, "row", "Skip Example", "title"},
    };
    for (const auto &[type, info, message, details] : rows) {
        TestResult::Entry entry;
        entry.type = type;
        entry.info = info;
        entry.message = "title";
        entry.details = "text";
        const TestResult::Entry converted = convertSectionEventToLogEvent(entry);
        EXPECT_EQ(converted.type, TestResult::LOG);
        EXPECT_EQ(converted.message, message);
        EXPECT_EQ(converted.details, details);
        EXPECT_EQ(converted.info, info);
    }
    TestResult::Entry other = fullEntry(TestResult::START_SECTION);
    EXPECT_TRUE(areEqual(convertSectionEventToLogEvent(other), other));
    other.type = TestResult::FAIL;
    other.info = "section";
    EXPECT_TRUE(areEqual(convertSectionEventToLogEvent(other), other));
}
