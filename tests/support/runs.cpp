#include "support/runs.h"

#include "support/capture.h"
#include "support/environmentguard.h"
#include "support/files.h"
#include "test/testreportgeneratorfactory.h"

#include <QColor>
#include <QDir>
#include <QTemporaryDir>

#include <tuple>

#include <gtest/gtest.h>

namespace MorvexTest {

using namespace Morvex;

namespace {

const LineInfo place("/suite/tst_a b/script.js", 12);

TableDiff::Element changedRow(TableDiff::Element::Kind kind, const QString &text)
{
    TableDiff::Cell plain;
    plain.row = 3;
    plain.properties.insert("text", text);
    TableDiff::Cell coloured = plain;
    coloured.column = 1;
    coloured.properties.insert("backgroundColor", QColor(255, 128, 0, 200));
    TableDiff::Element element;
    element.kind = kind;
    element.subject.type = TableDiff::Subject::ROW;
    element.subject.cells = {plain, coloured};
    return element;
}

auto fields(const TestResult::Entry &entry)
{
    return std::tie(entry.time, entry.type, entry.message, entry.details, entry.line, entry.stack,
                    entry.info, entry.vpCounter, entry.name, entry.tableDiff, entry.vpName,
                    entry.vpType, entry.summary, entry.description, entry.retry,
                    entry.attachmentType, entry.attachmentUri);
}

TestResult::Entry frameEntry(TestResult::ResultType type, const QString &message,
                             const QString &info, const QString &details = {})
{
    TestResult::Entry entry = plainEntry(type, message);
    entry.info = info;
    entry.details = details;
    return entry;
}

// As the suite loop replays them: with the number of attempts that remain.
TestResult::Entry attempt(int retry)
{
    TestResult::Entry entry = frameEntry(TestResult::START_TEST_CASE, "Start 'tst_a'", "tst_a");
    entry.retry = retry;
    entry.summary = "summary of a";
    entry.description = "description of a";
    return entry;
}

void add(TestResult &result, TestResult::ResultType type, const QString &message,
         const QString &details = "details", const LineInfo &line = place)
{
    result.addResult(type, message, details, line, QString(), -1);
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
        result.processEntry(attempt(retry));
        add(result, retry == 1 ? TestResult::FAIL : TestResult::PASS, "flaky");
        result.completedTestCase("tst_a");
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

// Dangling sections, retries, a crash, expected failures, names with dots and slashes, results
// outside of any test case.
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

} // namespace

std::vector<TestResult::ResultType> allTypes()
{
    std::vector<TestResult::ResultType> types;
    for (int type = TestResult::START; type < TestResult::NONE; ++type)
        types.push_back(static_cast<TestResult::ResultType>(type));
    return types;
}

TestResult::Entry entryOf(TestResult::ResultType type, const QString &message,
                          const QString &details)
{
    TestResult::Entry entry;
    entry.time = QDateTime(QDate(2024, 3, 1), QTime(12, 0, 0));
    entry.type = type;
    entry.message = message;
    entry.details = details;
    return entry;
}

TestResult::Entry plainEntry(TestResult::ResultType type, const QString &message)
{
    TestResult::Entry entry = entryOf(type, message);
    entry.time = QDateTime(QDate(2024, 2, 29), QTime(23, 59, 58, 7), Qt::OffsetFromUTC, 3600);
    entry.vpCounter = 0;
    entry.name = "suite_a";
    return entry;
}

TestResult::Entry fullEntry(TestResult::ResultType type)
{
    TestResult::Entry entry = entryOf(type, QString::fromUtf8("message äöü \U0001F600 <&>\"'"),
                                      "details\nsecond line\twith a tab\\and a backslash");
    entry.time = QDateTime(QDate(2024, 2, 29), QTime(23, 59, 58, 7));
    entry.stack = {LineInfo("/suite/tst_a/script.js", 12), LineInfo("/suite/shared.js", 0)};
    entry.line = entry.stack.front();
    entry.info = "info";
    entry.vpCounter = 4;
    entry.name = "suite_name";
    entry.tableDiff = {changedRow(TableDiff::Element::DELETION, "old"),
                       changedRow(TableDiff::Element::INSERTION, "new")};
    entry.vpName = "VP1";
    entry.vpType = TestResult::TABLE_VP;
    entry.vpFile = QFileInfo("/suite/tst_a/points/VP1.xml");
    entry.summary = "summary";
    entry.description = "description";
    entry.retry = 2;
    entry.attachmentType = TestResult::SCREENSHOT_ATTACHMENT;
    entry.attachmentUri = "/results/shot 1.png";
    return entry;
}

TestResult::Entry verificationEntry(TestResult::ResultType type, TestResult::VPType vpType,
                                    int vpCounter)
{
    const bool isProperty = vpType == TestResult::PROPERTY_VP;
    const bool hasPicture = vpType == TestResult::SCREENSHOT_VP || vpType == TestResult::VISUAL_VP;
    TestResult::Entry entry =
        plainEntry(type, isProperty ? "VP: Property comparison of ':Main.ok.enabled' failed"
                         : vpType == TestResult::NO_VP ? "Values differ"
                                                       : "VP: Comparison of ':Main.ok' failed");
    entry.details = isProperty   ? "The values 'true' and 'false' differ"
                    : hasPicture ? "Saved as '/r/tst_a/failed_1.png'."
                                 : "Expected 'a', got 'b'.";
    entry.stack = {LineInfo("/s/tst_a/script.js", 12), LineInfo("/s/shared.js", 3)};
    entry.line = entry.stack.front();
    entry.vpCounter = vpCounter;
    entry.vpType = vpType;
    if (vpType != TestResult::NO_VP)
        entry.vpFile = QFileInfo("/s/points/VP1.xml");
    if (vpType == TestResult::TABLE_VP)
        entry.tableDiff = fullEntry(type).tableDiff;
    return entry;
}

bool areEqual(const TestResult::Entry &a, const TestResult::Entry &b)
{
    return fields(a) == fields(b) && a.vpFile.filePath() == b.vpFile.filePath();
}

Entries sampleRun()
{
    Entries entries{plainEntry(TestResult::START, "Start 'suite_a'"), attempt(1)};
    int vpCounter = 0;
    for (const auto type :
         {TestResult::PASS, TestResult::FAIL, TestResult::XFAIL, TestResult::XPASS}) {
        for (const auto vpType : {TestResult::NO_VP, TestResult::PROPERTY_VP, TestResult::TABLE_VP,
                                  TestResult::SCREENSHOT_VP, TestResult::VISUAL_VP})
            entries.push_back(verificationEntry(type, vpType, ++vpCounter));
    }
    const TestResult::Entry end = frameEntry(TestResult::END_TEST_CASE, "End 'tst_a'", "tst_a");
    entries.insert(entries.end(), {end, attempt(0)});
    entries.push_back(frameEntry(TestResult::START_SECTION, "title", "section", "about it"));
    for (const auto type :
         {TestResult::LOG, TestResult::FATAL, TestResult::ERROR, TestResult::WARNING})
        entries.push_back(plainEntry(type, "said"));
    for (const auto type : {TestResult::END_SECTION, TestResult::SKIP_SECTION})
        entries.push_back(frameEntry(type, "title", "section", "about it"));
    for (const auto type :
         {TestResult::ATTACHMENT, TestResult::STARTVIDEOCAPTURE, TestResult::ENDVIDEOCAPTURE}) {
        entries.push_back(plainEntry(type, "attached"));
        entries.back().attachmentType = TestResult::FILE_ATTACHMENT;
        entries.back().attachmentUri = "/r/a b.txt";
    }
    entries.insert(entries.end(), {end, plainEntry(TestResult::END, "End 'suite_a'")});
    return entries;
}

Entries runOfMessages(const QStringList &messages)
{
    Entries entries{plainEntry(TestResult::START)};
    for (const QString &message : messages)
        entries.push_back(plainEntry(TestResult::LOG, message));
    entries.push_back(plainEntry(TestResult::END));
    return entries;
}

std::unique_ptr<TestReportGenerator> makeReport(const QString &value, QString *resultDir,
                                                TestReportGenerator::TestType type)
{
    QString ignored;
    const auto created =
        TestReportGeneratorFactory::create({value}, resultDir ? resultDir : &ignored, type);
    if (!created.generator)
        qFatal("%s", qUtf8Printable(created.error));
    return std::unique_ptr<TestReportGenerator>(created.generator);
}

void replay(const Entries &entries, TestReportGenerator *generator)
{
    for (const TestResult::Entry &entry : entries)
        generator->handleEntry(entry);
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
        {"hard", logHardRun},
    };
    return runs;
}

void logRun(const SampleRun &run, TestResult &result)
{
    result.start("suite_hard", QDir("/suite"), "summary", "description");
    run.log(result);
    result.completed();
}

namespace {

// What a format wrote that `write` has used and deleted.
QByteArray reportBy(const QString &keyword, TestReportGenerator::TestType type,
                    const std::function<void(TestReportGenerator *)> &write)
{
    const QTemporaryDir dir;
    const EnvironmentGuard prefix("MORVEX_PREFIX", QFile::encodeName(dir.path()));
    writeFile(dir.filePath("lib/webreport/index.html"), "page");
    QString path = dir.filePath("report.xml");
    standardErrorOf([&] { write(makeReport(keyword + ',' + path, nullptr, type).release()); });
    for (const auto &format : TestReportGeneratorFactory::keywords()) {
        if (format.name == keyword && format.target == TestReportGeneratorFactory::Directory)
            path += '/' + format.file;
    }
    return readFile(path);
}

} // namespace

QByteArray reportOf(const QString &keyword, const std::function<void(TestResult &)> &log)
{
    return reportBy(keyword, TestReportGenerator::TEST_SUITE, [&log](auto *generator) {
        TestResult result(generator);
        log(result);
    });
}

QByteArray reportOf(const QString &keyword, const SampleRun &run)
{
    return reportOf(keyword, [&run](TestResult &result) { logRun(run, result); });
}

QByteArray reportOf(const QString &keyword, const TestResult::Entry &entry)
{
    return reportOf(keyword, [&entry](TestResult &result) {
        result.start("suite_a", QDir("/suite"), "", "");
        result.processEntry(entry);
        result.completed();
    });
}

QByteArray reportOf(const QString &keyword, const Entries &entries,
                    TestReportGenerator::TestType type)
{
    return reportBy(keyword, type, [&entries](auto *generator) {
        replay(entries, generator);
        delete generator;
    });
}

QString hostileText()
{
    QString text = "<a href=\"x\">&amp;'</a> ]]> ]]]> \x1b[31mred\x1b[0m \x1b]0;title\x07 end";
    for (ushort unit = 1; unit <= 0xa0; ++unit)
        text += QChar(unit);
    for (const ushort unit : {0xfffe, 0xffff, 0xd83d, 0xde00, 0xdc00, 0xd800})
        text += QChar(unit);
    return text;
}

QStringList awkwardTexts()
{
    QStringList texts{QString(1 << 20, QLatin1Char('x')), hostileText(), QString(QChar(0xd83d)),
                      "a" + QString(QChar(0)) + "b", "C:\\path\\new \"quoted\"\r\n\ttabbed \u2028"};
    for (int brackets = 0; brackets < 6; ++brackets) {
        const QString run(brackets, QLatin1Char(']'));
        texts += {"a" + run, run + ">" + run + ">b", run + QChar(7) + "]>" + run};
    }
    return texts;
}

QString withoutUnwritable(const QString &text, bool dropsControls)
{
    QString expected;
    for (int i = 0; i < text.size(); ++i) {
        const QChar unit = text[i];
        const bool isPair =
            unit.isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate();
        if (isPair)
            expected += text.mid(i++, 2);
        else if (unit.isSurrogate() || unit.unicode() >= 0xfffe)
            expected += QChar(QChar::ReplacementCharacter);
        else if (!dropsControls || unit.unicode() >= 0x20 || unit == '\t' || unit == '\n' ||
                 unit == '\r')
            expected += unit;
    }
    return expected;
}

} // namespace MorvexTest
