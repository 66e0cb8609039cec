#include "support/runs.h"

#include "support/sampleentries.h"

#include <QDir>

#include <gtest/gtest.h>

namespace MorvexTest {

using Morvex::LineInfo;
using Morvex::TestResult;

namespace {

const LineInfo place("/suite/tst_a b/script.js", 12);

void add(TestResult &result, TestResult::ResultType type, const QString &message,
         const QString &details = "details", const LineInfo &line = place)
{
    result.addResult(type, message, details, line, QString(), -1);
}

// As the suite loop replays them: with the number of attempts that remain.
void startAttempt(TestResult &result, const QString &name, int retry)
{
    TestResult::Entry entry = fullEntry(TestResult::START_TEST_CASE);
    entry.info = name;
    entry.message = "Start '" + name + "'";
    entry.retry = retry;
    result.processEntry(entry);
}

void logNestedSections(TestResult &result)
{
    result.startTestCase("tst_v1.2/nested", QDir("/suite"), "summary", "description");
    add(result, TestResult::LOG, "in the test case");
    result.startSection("outer.1", "without results of its own", place);
    add(result, TestResult::LOG, "in a section without results");
    result.startSection("inner/1", "", place);
    add(result, TestResult::FAIL, "expected one", "Expected '1', got '2'.");
    add(result, TestResult::XFAIL, "known");
    EXPECT_EQ(result.endSection(place), "");
    EXPECT_EQ(result.endSection(place), "");
    result.startSection("outer.1", "the same name again", place);
    add(result, TestResult::PASS, "right");
    add(result, TestResult::XPASS, "no longer known");
    result.startSection("left open", "", place);
    add(result, TestResult::WARNING, hostileText(), hostileText());
    result.completedTestCase("tst_v1.2/nested");
}

void logRetries(TestResult &result)
{
    for (const int retry : {1, 0}) {
        startAttempt(result, "tst_retried", retry);
        add(result, retry == 1 ? TestResult::FAIL : TestResult::PASS, "flaky");
        result.completedTestCase("tst_retried");
    }
}

void logCrash(TestResult &result)
{
    result.startTestCase("tst_crash", QDir("/suite"), "", "");
    result.startSection("dies in here", "", place);
    add(result, TestResult::PASS, "last words", QString(1 << 20, 'x'));
    add(result, TestResult::FATAL, "Execution error", "The process was killed.", LineInfo());
    result.completedTestCase("tst_crash");
}

void logAllTypes(TestResult &result)
{
    for (const TestResult::ResultType type : allTypes()) {
        if (type != TestResult::START && type != TestResult::END)
            result.processEntry(fullEntry(type));
    }
}

const SampleRun hardRun{"hard", logHardRun};

} // namespace

void logHardRun(TestResult &result)
{
    add(result, TestResult::PASS, "before the first test case");
    logNestedSections(result);
    logRetries(result);
    result.addAttachment(TestResult::FILE_ATTACHMENT, "outside", "/results/a b.txt", {place});
    add(result, TestResult::ERROR, "between test cases", hostileText());
    logCrash(result);
    logAllTypes(result);
}

const std::vector<SampleRun> &allRuns()
{
    static const std::vector<SampleRun> runs{
        {"empty", [](TestResult &) {}},
        {"log only", [](TestResult &result) { add(result, TestResult::LOG, "text"); }},
        {"outside of test cases",
         [](TestResult &result) { add(result, TestResult::FAIL, "text", "", LineInfo()); }},
        {"nested sections", logNestedSections},
        {"retries", logRetries},
        {"crash", logCrash},
        {"all types", logAllTypes},
        hardRun,
    };
    return runs;
}

void logRun(const SampleRun &run, TestResult &result)
{
    result.start("suite_hard", QDir("/suite"), "summary", "description");
    run.log(result);
    result.completed();
}

QString hostileText()
{
    QString text = "<a href=\"x\">&amp;'</a> ]]> ]]]> \x1b[31mred\x1b[0m \x1b]0;title\x07 end";
    for (ushort unit = 1; unit <= 0xa0; ++unit)
        text += QChar(unit);
    text += QChar(0xfffe);
    text += QChar(0xffff);
    text += QString::fromUtf8("\U0001F600");
    text += QChar(0xdc00);
    text += QChar(0xd800);
    return text;
}

} // namespace MorvexTest
