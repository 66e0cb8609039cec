#include "test/testresult.h"

#include "support/recordinggenerator.h"
#include "support/test.h"

using namespace Morvex;
using namespace MorvexTest;

namespace {

class TestResultTest : public testing::Test
{
protected:
    void add(TestResult::ResultType type, const QString &message = "m")
    {
        result.addResult(type, message, "d", LineInfo(), "", -1);
    }

    const TestResult::Entry &last() const { return recorder->entries.back(); }

    const EnvironmentGuard noSummary{"MORVEX_NOREPORTSUMMARY", QByteArray()};
    RecordingGenerator *recorder = new RecordingGenerator;
    TestResult result{recorder};
};

using TestResultDeathTest = TestResultTest;

} // namespace

TEST_F(TestResultTest, TheFrameOfARunSaysWhatRunsWhere)
{
    result.start("suite_a", QDir("/some/dir"), "sum", "desc");
    EXPECT_EQ(last().type, TestResult::START);
    EXPECT_EQ(last().line, LineInfo("/some/dir", -1));
    EXPECT_EQ(last().summary, "sum");
    EXPECT_EQ(last().description, "desc");
    result.startTestCase("tst_a", "s", "d");
    EXPECT_EQ(last().info, "tst_a");
    EXPECT_EQ(last().line, LineInfo(QDir::currentPath(), -1));
    EXPECT_EQ(last().name, "suite_a");
    result.completedTestCase("tst_a");
    EXPECT_EQ(last().info, "tst_a");
    result.completed();
    EXPECT_EQ(last().type, TestResult::END);
    EXPECT_EQ(recorder->summaries, 1);
}

TEST_F(TestResultDeathTest, AWrongOrderOfTheRunEndsTheProcess)
{
    EXPECT_DEATH(add(TestResult::LOG, "early"),
                 "TestResult::addEntry: first result has to be of type Start. Got type 7 with "
                 "message 'early'");
    result.start("a", "", "");
    EXPECT_DEATH(result.start("b", "", ""), "TestResult::addEntry: already started");
}

TEST_F(TestResultTest, EntriesAfterTheEndAreLostWithAWarning)
{
    result.start("a", "", "");
    result.completed();
    const auto count = recorder->entries.size();
    EXPECT_NE(standardErrorOf([this] { add(TestResult::FAIL, "late"); })
                  .find("Cannot add entry to test result which is completed already, type 11 with "
                        "message 'late'"),
              std::string::npos);
    standardErrorOf([this] { result.completed(); });
    EXPECT_EQ(recorder->entries.size(), count);
    EXPECT_EQ(result.count("fails"), 0);
    EXPECT_EQ(recorder->summaries, 1);
}

TEST(TestResultWithoutGeneratorTest, EntriesAreLostWithAWarning)
{
    TestResult result;
    const std::string warning = standardErrorOf([&result] { result.start("a", "", ""); });
    EXPECT_NE(warning.find("Cannot add entry to test result without valid report generator."),
              std::string::npos);
    EXPECT_FALSE(result.isStarted());
    EXPECT_EQ(result.resultCount(TestResult::FAIL), -1);
    EXPECT_FALSE(result.isSuccessfulRetry());
}

TEST_F(TestResultTest, FlagsFollowTheEntries)
{
    result.start("a", "", "");
    EXPECT_FALSE(result.isTestCaseComplete());
    for (const auto type : {TestResult::FATAL, TestResult::ERROR, TestResult::FAIL}) {
        result.startTestCase("tst", "", "");
        EXPECT_FALSE(result.currentTestHasFailure());
        EXPECT_FALSE(result.isTestCaseComplete());
        result.clearLastScenarioError();
        add(TestResult::XPASS);
        EXPECT_FALSE(result.currentTestHasFailure());
        add(type);
        EXPECT_TRUE(result.currentTestHasFailure());
        EXPECT_TRUE(result.lastScenarioHasError());
        result.completedTestCase("tst");
        EXPECT_TRUE(result.isTestCaseComplete());
    }
}

TEST_F(TestResultTest, AnUnexpectedPassIsAFailureThatCountsTwice)
{
    result.start("a", "", "");
    EXPECT_FALSE(result.hasFailure());
    add(TestResult::XPASS);
    EXPECT_EQ(result.count("fails"), 1);
    EXPECT_EQ(result.resultCount(TestResult::XPASS), 1);
    EXPECT_EQ(result.failureCount(), 2);
    EXPECT_TRUE(result.hasFailure());
}

TEST_F(TestResultTest, ALocationBecomesAStackWhenItIsValid)
{
    result.start("a", "", "");
    const std::pair<LineInfo, std::size_t> rows[] = {
        {LineInfo("f", 0), 1}, {LineInfo("f", -1), 0}, {LineInfo("", 3), 0}};
    for (const auto &[line, frames] : rows) {
        result.addResult(TestResult::LOG, "", "", line, "", -1);
        EXPECT_EQ(last().stack.size(), frames);
        EXPECT_EQ(last().line, line);
    }
    result.addError("e", "", {LineInfo("inner", 1), LineInfo("outer", 2)});
    EXPECT_EQ(last().line, LineInfo("inner", 1));
    EXPECT_EQ(last().stack.size(), 2U);
}

TEST_F(TestResultTest, ComparisonsAreExactAndSayWhatWasGot)
{
    result.start("a", "", "");
    EXPECT_TRUE(result.addComparison("m", "x", "x", LineInfo(), ""));
    EXPECT_FALSE(result.addComparison("m", "%2", "X", LineInfo(), ""));
    EXPECT_TRUE(result.addComparison("m", 4, 4, LineInfo(), ""));
    EXPECT_FALSE(result.addComparison("m", 4, 5, LineInfo(), ""));
    const char *const results[] = {"PASS Got expected 'x'.", "FAIL Expected '%2', got 'X'.",
                                   "PASS Got expected 4.", "FAIL Expected 4, got 5."};
    for (std::size_t i = 0; i < 4; ++i) {
        const TestResult::Entry &entry = recorder->entries[i + 1];
        EXPECT_EQ(TestResult::resultToString(entry.type) + ' ' + entry.details, results[i]);
    }
}

TEST_F(TestResultTest, VerificationsAreNumberedOverTheWholeRun)
{
    result.start("a", "", "");
    EXPECT_EQ(last().vpCounter, 0);
    for (int number = 1; number <= 2; ++number) {
        result.startTestCase("tst", "", "");
        result.startVP();
        add(TestResult::PASS);
        add(TestResult::LOG);
        EXPECT_EQ(last().vpCounter, number);
        EXPECT_EQ(recorder->entries[recorder->entries.size() - 2].vpCounter, number);
        result.endVP();
        add(TestResult::LOG);
        EXPECT_EQ(last().vpCounter, 0);
    }
}

TEST_F(TestResultTest, SectionsEndWithTheirTitles)
{
    result.start("a", "", "");
    result.startSection("outer", "o", LineInfo("f", 1));
    result.startSection("inner", "i", LineInfo("f", 2));
    EXPECT_EQ(result.endSection(LineInfo("f", 3)), "");
    EXPECT_EQ(last().message, "inner");
    EXPECT_EQ(last().details, "i");
    EXPECT_EQ(last().info, "section");
    EXPECT_EQ(last().line, LineInfo("f", 3));
    EXPECT_EQ(result.endSection(LineInfo()), "");
    EXPECT_EQ(last().message, "outer");
    const auto count = recorder->entries.size();
    EXPECT_EQ(result.endSection(LineInfo()), "there are no started result sections");
    EXPECT_EQ(recorder->entries.size(), count);
}

TEST_F(TestResultTest, AttachmentsAndVideosCarryTheirLocationTwice)
{
    result.start("a", "", "");
    result.addAttachment(TestResult::SCREENSHOT_ATTACHMENT, "m", "/x.png", {});
    EXPECT_EQ(last().type, TestResult::ATTACHMENT);
    EXPECT_EQ(last().details, "/x.png");
    EXPECT_EQ(last().attachmentUri, "/x.png");
    EXPECT_EQ(last().attachmentType, TestResult::SCREENSHOT_ATTACHMENT);
    result.addStartVideo("m", "/v.mp4", {});
    EXPECT_EQ(last().type, TestResult::STARTVIDEOCAPTURE);
    EXPECT_EQ(last().attachmentType, TestResult::FILE_ATTACHMENT);
    result.addEndVideo("m", "/v.mp4", {});
    EXPECT_EQ(last().type, TestResult::ENDVIDEOCAPTURE);
}

TEST(ResultNameTest, NamesAreFoundWithBlanksAroundAndOnlyInUpperCase)
{
    for (int type = TestResult::START; type < TestResult::NONE; ++type) {
        const QString name = TestResult::resultToString(static_cast<TestResult::ResultType>(type));
        EXPECT_EQ(TestResult::stringToResult(" " + name + "\n"), type);
        EXPECT_EQ(TestResult::stringToResult(name.toLower()), TestResult::NONE);
    }
    EXPECT_EQ(TestResult::resultToString(TestResult::NONE), "");
    EXPECT_EQ(TestResult::resultToString(static_cast<TestResult::ResultType>(200)), "");
}

TEST(SuccessfulRetryTest, OnlyFailuresThatARetryReplacedAreForgiven)
{
    // A number starts an attempt with that many left, "F" fails in it, "s" marks a scenario.
    const std::tuple<const char *, std::vector<std::string>, bool> rows[] = {
        {"nothing happened", {}, false},
        {"passes at once", {"2"}, true},
        {"the last attempt passes", {"2", "F", "1", "F", "0"}, true},
        {"fails in every attempt", {"2", "F", "1", "F", "0", "F"}, false},
        {"no retry applies", {"-1", "F"}, false},
        {"retries stopped after the first attempt", {"2", "F"}, true},
        {"a scenario is repeated", {"s1", "F", "s0"}, true},
        {"a scenario fails in the end", {"s1", "F", "s0", "F"}, false},
    };
    for (const auto &[name, steps, isSuccessful] : rows) {
        TestResult result(new RecordingGenerator);
        for (const std::string &step : steps) {
            TestResult::Entry entry;
            entry.type = step == "F"      ? TestResult::FAIL
                         : step[0] == 's' ? TestResult::START_SECTION
                                          : TestResult::START_TEST_CASE;
            if (step[0] == 's')
                entry.info = "scenario";
            if (step != "F")
                entry.retry = std::stoi(step[0] == 's' ? step.substr(1) : step);
            result.processEntry(entry);
        }
        EXPECT_EQ(result.isSuccessfulRetry(), isSuccessful) << name;
    }
}
