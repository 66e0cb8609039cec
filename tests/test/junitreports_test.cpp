#include "support/runs.h"
#include "support/test.h"

#include <cstdio>
#include <cstdlib>

using namespace Morvex;
using namespace MorvexTest;

namespace {

const char *const formats[] = {"junit", "xmljunit"};

QString schema(const char *name)
{
    return QString(MORVEX_SOURCE_DIR "/tests/test/schemas/") + name;
}

// A run whose entries come a second after each other.
class SteadyRun
{
public:
    explicit SteadyRun(TestResult &result)
        : m_result(result)
    {
    }

    void add(TestResult::ResultType type, const QString &message, const QString &info = {})
    {
        TestResult::Entry entry = entryOf(type, message);
        entry.time = entry.time.addSecs(m_seconds++);
        entry.info = info;
        entry.name = "suite_a";
        m_result.processEntry(entry);
    }

private:
    TestResult &m_result;
    int m_seconds = 0;
};

struct Step
{
    TestResult::ResultType type;
    QString message;
    QString info = {};
};

// A run of one test case with these steps.
XmlDocument junitOf(const QString &testCase, const std::vector<Step> &steps)
{
    return XmlDocument(reportOf("junit", [&](TestResult &result) {
        SteadyRun run(result);
        run.add(TestResult::START, "");
        run.add(TestResult::START_TEST_CASE, "", testCase);
        for (const Step &step : steps)
            run.add(step.type, step.message, step.info);
        run.add(TestResult::END_TEST_CASE, "", testCase);
        run.add(TestResult::END, "");
    }));
}

void logSteadyRun(TestResult &result)
{
    SteadyRun run(result);
    run.add(TestResult::START, "");
    run.add(TestResult::START_TEST_CASE, "", "tst.a");
    run.add(TestResult::PASS, "of the test case");
    run.add(TestResult::START_SECTION, "with.results", "section");
    run.add(TestResult::START_SECTION, "without", "section");
    run.add(TestResult::LOG, "taken over");
    run.add(TestResult::END_SECTION, "without", "section");
    run.add(TestResult::FAIL, "of the section");
    run.add(TestResult::ERROR, "of the section");
    run.add(TestResult::END_SECTION, "with.results", "section");
    run.add(TestResult::END_TEST_CASE, "", "tst.a");
    run.add(TestResult::XPASS, "outside");
    run.add(TestResult::END, "");
}

} // namespace

TEST(JUnitReportsTest, EveryRunIsValidForReadersOfEachDialect)
{
    for (const char *format : formats) {
        for (const SampleRun &run : allRuns()) {
            const XmlDocument document(reportOf(format, run));
            for (const char *dialect : {"junit-ant.xsd", "junit-10.xsd", "junit-4.xsd"})
                EXPECT_EQ(document.validate(schema(dialect)), QString()) << format << run.name;
        }
    }
}

TEST(JUnitReportsTest, NoTwoTestCasesShareAClassAndAName)
{
    for (const char *format : formats) {
        const XmlDocument document(reportOf(format, allRuns().back()));
        QStringList names;
        for (int i = 1; i <= document.count("//testcase"); ++i) {
            const QByteArray path = QString("//testcase[%1]").arg(i).toUtf8();
            names += document.text((path + "/@classname").constData()) + '|' +
                     document.text((path + "/@name").constData());
        }
        EXPECT_GT(names.size(), 5);
        EXPECT_EQ(names.removeDuplicates(), 0) << names.join("\n").toStdString();
    }
}

// In a process of its own: the toolkit asks for the locale of the system once.
TEST(JUnitDeathTest, TheTimeStampHasLatinDigitsInEachLocale)
{
    const EnvironmentGuard locale("LC_ALL", "ar_EG.UTF-8");
    const auto printTimeStamps = [] {
        for (const char *format : formats)
            std::fprintf(stderr, "%s\n",
                         qPrintable(XmlDocument(reportOf(format, logSteadyRun))
                                        .text("(//testsuite)[1]/@timestamp")));
        std::exit(0);
    };
    EXPECT_EXIT(printTimeStamps(), testing::ExitedWithCode(0),
                "^(2024-03-01T[0-9]{2}:00:00\n){2}$");
}

TEST(JUnitTest, EachTestCaseAndEachSectionWithResultsIsATestCaseAndTheTimesAddUp)
{
    const XmlDocument document(reportOf("junit", logSteadyRun));
    EXPECT_EQ(document.texts("//testcase/@classname"),
              QStringList({"(root)", "tst_a", "tst_a.with_results"}));
    EXPECT_EQ(document.texts("//testcase/@name"),
              QStringList({"(main)", "tst_a", "tst_a/with_results"}));
    EXPECT_EQ(document.texts("//testcase/@time"), QStringList({"3.000", "3.000", "6.000"}));
    EXPECT_EQ(document.attributes("/testsuite").filter("hostname", Qt::CaseSensitive).size(), 1);
    QStringList attributes = document.attributes("/testsuite");
    attributes.removeAt(1);
    attributes.removeAt(2);
    EXPECT_EQ(attributes,
              QStringList({"name=suite_a", "time=12.000", "errors=1", "failures=1", "tests=3"}));
}

TEST(JUnitTest, AFailureBringsItsNumberAndTheLogOfItsTestCase)
{
    const XmlDocument document(reportOf("junit", logSteadyRun));
    EXPECT_EQ(document.attributes("//error"),
              QStringList({"message=Test had 2 failures or errors", "type=ERROR"}));
    EXPECT_EQ(document.attributes("//failure"),
              QStringList({"message=Test had 1 failures", "type=FAILURE"}));
    const QString log = document.text("//error");
    EXPECT_EQ(log.count('\n'), 7);
    EXPECT_TRUE(log.contains("2024-03-01T12:00:05 [LOG] taken over\n"));
    EXPECT_FALSE(log.contains("of the test case"));
}

TEST(JUnitTest, ALogLineHasItsPartsAndItsFrames)
{
    TestResult::Entry entry = entryOf(TestResult::FAIL, "a\tb", "c\nd\x1b");
    entry.stack = {LineInfo("/x.js", 3), LineInfo("/y.js", 4)};
    entry.line = entry.stack.front();
    entry.vpName = "VP1";
    EXPECT_TRUE(XmlDocument(reportOf("junit", entry))
                    .text("//failure")
                    .contains("2024-03-01T12:00:00 [FAIL] /x.js:3 a\\tb c\\nd\\u001b VP1\n"
                              "  at /x.js:3\n"
                              "  at /y.js:4\n"));
}

TEST(JUnitTest, DeepNestingTakesSpaceInProportion)
{
    const auto sizeOf = [](int levels) {
        return reportOf("junit",
                        [levels](TestResult &result) {
                            SteadyRun run(result);
                            run.add(TestResult::START, "");
                            run.add(TestResult::START_TEST_CASE, "", "tst_a");
                            for (int level = 0; level < levels; ++level) {
                                run.add(TestResult::START_SECTION, "section", "section");
                                run.add(TestResult::PASS, "");
                            }
                            run.add(TestResult::END, "");
                        })
            .size();
    };
    EXPECT_LT(sizeOf(2000), 3 * sizeOf(1000));
}

TEST(JUnitTest, DeepSectionsKeepNamesOfTheirOwn)
{
    std::vector<Step> steps;
    for (const char *title : {"outer", "other", "outer"}) {
        for (int level = 1; level <= 20; ++level) {
            steps.push_back({TestResult::START_SECTION, level == 10 ? title : "s", "section"});
            if (level > 18)
                steps.push_back({TestResult::PASS, ""});
        }
        steps.insert(steps.end(), 20, {TestResult::END_SECTION, "s", "section"});
    }
    const QString nine = 't' + QString("/s").repeated(9);
    const QString rest = QString("/s").repeated(9);
    EXPECT_EQ(junitOf("t", steps).texts("//testcase/@name"),
              QStringList({"t", nine + "/outer" + rest, nine + "/[11]/s" + rest,
                           nine + "/other" + rest, nine + "/[22]/s" + rest,
                           nine + "/outer" + rest + "_2", nine + "/[11]/s" + rest + "_2"}));
}

TEST(JUnitTest, ASectionWithoutATitleDoesNotEndItsClassWithADot)
{
    const XmlDocument document = junitOf("tst_a", {{TestResult::START_SECTION, "", "section"},
                                                   {TestResult::PASS, ""},
                                                   {TestResult::END_SECTION, "", "section"}});
    EXPECT_EQ(document.texts("//testcase/@classname"), QStringList({"tst_a", "tst_a.<unnamed>"}));
    EXPECT_EQ(document.texts("//testcase/@name"), QStringList({"tst_a", "tst_a/<unnamed>"}));
}

TEST(JUnitTest, ARunWithoutTestCasesIsNotLostByReaders)
{
    const XmlDocument document(reportOf("junit", allRuns().front()));
    EXPECT_EQ(document.attributes("/testsuite[@tests='1']/testcase").mid(0, 2),
              QStringList({"classname=(root)", "name=(empty)"}));
}

TEST(JUnitTest, ATestCaseThatWasLeftOutDoesNotLookPassed)
{
    const XmlDocument skipped = junitOf("tst_a", {{TestResult::SKIP_SECTION, "", "testcase"}});
    EXPECT_EQ(skipped.texts("//testcase[skipped]/@name"), QStringList("tst_a"));
    EXPECT_EQ(skipped.validate(schema("junit-ant.xsd")), QString());
    const XmlDocument other =
        junitOf("tst_b", {{TestResult::SKIP_SECTION, "title", "scenario"}, {TestResult::PASS, ""}});
    EXPECT_EQ(other.count("//skipped"), 0);
}

TEST(JUnitTest, ResultsOfAnEarlierTimeDoNotLengthenTheRun)
{
    const XmlDocument document(reportOf("junit", [](TestResult &result) {
        TestResult::Entry entry = entryOf(TestResult::START, "");
        result.processEntry(entry);
        for (const int second : {5, 1, 6}) {
            entry = entryOf(second == 6 ? TestResult::END : TestResult::PASS, "");
            entry.time = entry.time.addSecs(second);
            result.processEntry(entry);
        }
    }));
    EXPECT_EQ(document.text("//testcase/@time"), "6.000");
    EXPECT_EQ(document.text("/testsuite/@time"), "6.000");
}

TEST(XmlJUnitTest, EachResultIsATestCaseWithTheTimeSinceTheOneBefore)
{
    const XmlDocument document(reportOf("xmljunit", [](TestResult &result) {
        TestResult::Entry entry = entryOf(TestResult::START, "");
        entry.name = "'suite_a'";
        result.processEntry(entry);
        entry = entryOf(TestResult::START_TEST_CASE, "");
        entry.info = "tst_a";
        result.processEntry(entry);
        int step = 0;
        for (const auto type : {TestResult::PASS, TestResult::LOG, TestResult::XFAIL}) {
            entry = entryOf(type, "my message");
            entry.time = entry.time.addMSecs(250 * ++step);
            result.processEntry(entry);
        }
        for (int i = 0; i < 2; ++i)
            result.processEntry(entryOf(TestResult::FATAL, ""));
        entry = entryOf(TestResult::END, "");
        entry.time = entry.time.addMSecs(1500);
        result.processEntry(entry);
    }));
    EXPECT_EQ(document.texts("//testcase/@name"),
              QStringList({"my_message", "my_message_2", "no_line_info_and_no_msg_1",
                           "no_line_info_and_no_msg_2"}));
    EXPECT_EQ(document.texts("//testcase/@time"), QStringList({"0.25", "0.5", "0", "0"}));
    EXPECT_EQ(document.texts("//testcase/@classname"),
              QStringList({"tst_a", "tst_a", "tst_a", "tst_a"}));
    EXPECT_EQ(document.attributes("/testsuite").mid(0, 4),
              QStringList({"name=suite_a", "tests=4", "failures=0", "errors=2"}));
    EXPECT_EQ(document.text("/testsuite/@time"), "1.5");
}

TEST(XmlJUnitTest, AFailureAndTheLogShowAllFieldsOfTheResult)
{
    TestResult::Entry entry = entryOf(TestResult::XPASS, "text", "more\x01");
    entry.info = "word";
    entry.vpName = "VP1";
    entry.line = LineInfo("/a b.js", 3);
    const XmlDocument document(reportOf("xmljunit", entry));
    EXPECT_EQ(document.attributes("//testcase").value(0), "name=/a_b.js:3");
    EXPECT_EQ(document.attributes("//failure"), QStringList({"type=XPASS", "message=text"}));
    EXPECT_EQ(document.text("//failure"), "/a b.js:3\ntext\nmore\\x01|word|VP1|");
    EXPECT_EQ(document.text("//system-out"), "XPASS|/a b.js:3|text|more\\x01|word|VP1\n");
}
