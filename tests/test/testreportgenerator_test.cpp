#include "test/testreportgenerator.h"

#include "support/recordinggenerator.h"
#include "support/runs.h"
#include "support/test.h"
#include "test/multireportgenerator.h"
#include "test/nullreportgenerator.h"
#include "test/openreportfile.h"
#include "test/output/multioutputdevice.h"
#include "test/testreportgeneratorfactory.h"

#include <QBuffer>

#include <map>

using namespace Morvex;
using namespace MorvexTest;

namespace {

TestResult::Entry makeEntry(TestResult::ResultType type, const QString &info = {})
{
    TestResult::Entry entry;
    entry.type = type;
    entry.info = info;
    return entry;
}

// "+x" starts and "-x" ends a section of kind x; other words are names of types.
void feed(TestReportGenerator &generator, const QStringList &steps)
{
    for (const QString &step : steps) {
        if (step.startsWith('+'))
            generator.handleEntry(makeEntry(TestResult::START_SECTION, step.mid(1)));
        else if (step.startsWith('-'))
            generator.handleEntry(makeEntry(TestResult::END_SECTION, step.mid(1)));
        else
            generator.handleEntry(makeEntry(TestResult::stringToResult(step)));
    }
}

QStringList written(const RecordingGenerator &generator)
{
    QStringList steps;
    for (const TestResult::Entry &entry : generator.entries) {
        if (entry.type == TestResult::START_SECTION)
            steps += "+" + entry.info;
        else if (entry.type == TestResult::END_SECTION)
            steps += (entry.message.isEmpty() ? "-" : "auto-") + entry.info;
        else
            steps += TestResult::resultToString(entry.type);
    }
    return steps;
}

} // namespace

TEST(TestReportGeneratorTest, SectionsStayNested)
{
    const std::pair<QStringList, QStringList> rows[] = {
        {{"+section", "-section"}, {"+section", "-section"}},
        {{"-section"}, {}},
        {{"+section", "+section", "+section", "END_TEST_CASE"},
         {"+section", "+section", "+section", "auto-section", "auto-section", "auto-section",
          "END_TEST_CASE"}},
        {{"+feature", "+section", "END"},
         {"+feature", "+section", "auto-section", "auto-feature", "END"}},
        {{"+section", "START_TEST_CASE"}, {"+section", "auto-section", "START_TEST_CASE"}},
        {{"+section", "+scenario"}, {"+section", "auto-section", "WARNING", "+scenario"}},
        {{"+scenario", "+section", "+section", "-scenario"},
         {"+scenario", "+section", "+section", "auto-section", "auto-section", "WARNING",
          "-scenario"}},
        {{"+scenario", "-section"}, {"+scenario"}},
        {{"+scenario", "-section", "-scenario"}, {"+scenario", "-scenario"}},
        {{"+scenario", "-step"}, {"+scenario"}},
        {{"+scenario", "+step", "-step", "-scenario"},
         {"+scenario", "+step", "-step", "-scenario"}},
    };
    for (const auto &[in, out] : rows) {
        RecordingGenerator generator;
        feed(generator, in);
        EXPECT_EQ(written(generator), out) << in.join(' ').toStdString();
        EXPECT_EQ(generator.resultCount("warnings"), 0);
    }
}

TEST(TestReportGeneratorTest, ClosingASectionByForceSaysWhyAndWhere)
{
    RecordingGenerator generator;
    TestResult::Entry scenario = makeEntry(TestResult::START_SECTION, "scenario");
    scenario.line = LineInfo("f", 5);
    feed(generator, {"+section"});
    generator.handleEntry(scenario);
    EXPECT_EQ(generator.entries[1].message, "auto-closed dangling section");
    EXPECT_EQ(generator.entries[1].vpCounter, 0);
    EXPECT_TRUE(generator.entries[2].message.startsWith("scenario cannot be closed/opened inside"));
    EXPECT_EQ(generator.entries[2].line, LineInfo("f", 5));
}

TEST(TestReportGeneratorTest, EachTypeCountsWhereItBelongs)
{
    using Counts = std::map<std::string, int>;
    const std::map<TestResult::ResultType, Counts> expected{
        {TestResult::START_TEST_CASE, {{"testcases", 1}}},
        {TestResult::FATAL, {{"fatals", 1}}},
        {TestResult::ERROR, {{"errors", 1}}},
        {TestResult::PASS, {{"tests", 1}, {"passes", 1}}},
        {TestResult::FAIL, {{"tests", 1}, {"fails", 1}}},
        {TestResult::XFAIL, {{"tests", 1}, {"passes", 1}, {"xfails", 1}}},
        {TestResult::XPASS, {{"tests", 1}, {"fails", 1}, {"xpasses", 1}}},
        {TestResult::WARNING, {{"warnings", 1}}},
    };
    for (const TestResult::ResultType type : allTypes()) {
        NullReportGenerator generator;
        generator.handleEntry(makeEntry(type));
        Counts counts = expected.count(type) ? expected.at(type) : Counts();
        for (const char *key : {"tests", "fails", "passes", "testcases", "errors", "fatals",
                                "warnings", "xfails", "xpasses"})
            EXPECT_EQ(generator.resultCount(key), counts[key]) << type << ' ' << key;
        EXPECT_EQ(generator.resultCount(type), expected.count(type) ? 1 : -1) << type;
        EXPECT_EQ(generator.resultCount("Tests"), -1);
    }
}

TEST(TestReportGeneratorTest, OnlyWhatRetryAnalysisNeedsIsRetainedAndNothingWithoutAType)
{
    RecordingGenerator generator;
    generator.handleEntry(TestResult::Entry());
    generator.handleEntry(makeEntry(static_cast<TestResult::ResultType>(99)));
    EXPECT_TRUE(generator.entries.empty());
    for (const TestResult::ResultType type : allTypes())
        generator.handleEntry(makeEntry(type));
    feed(generator, {"+scenario", "-scenario", "+scenariooutline", "+row", "+Scenario", "+step"});
    QStringList retained;
    for (const TestResult::Entry &entry : generator.retainedEntries())
        retained += TestResult::resultToString(entry.type) + entry.info;
    EXPECT_EQ(retained, (QStringList{"START_TEST_CASE", "FATAL", "ERROR", "FAIL", "XPASS",
                                     "START_SECTIONscenario", "START_SECTIONscenariooutline",
                                     "START_SECTIONrow"}));
}

TEST(MultiReportGeneratorTest, EachMemberHasItsOwnSectionsCountsAndSummary)
{
    auto *first = new RecordingGenerator;
    auto *second = new RecordingGenerator;
    MultiReportGenerator multi({first, second});
    feed(multi, {"+section", "FAIL", "+scenario", "END_TEST_CASE"});
    multi.generateSummary();
    for (const RecordingGenerator *member : {first, second}) {
        EXPECT_EQ(written(*member).join(' '), "+section FAIL auto-section WARNING +scenario "
                                              "auto-scenario END_TEST_CASE");
        EXPECT_EQ(member->resultCount("warnings"), 0);
        EXPECT_EQ(member->resultCount("fails"), 1);
        EXPECT_EQ(member->summaries, 1);
    }
    EXPECT_EQ(multi.resultCount("fails"), 1);
}

namespace {

class FailingDevice : public QIODevice
{
public:
    FailingDevice() { open(WriteOnly); }

protected:
    qint64 readData(char *, qint64) override { return -1; }
    qint64 writeData(const char *, qint64) override
    {
        setErrorString("no room");
        return -1;
    }
};

// Takes everything, and confirms only when asked to.
class SlowDevice : public QIODevice
{
public:
    SlowDevice() { open(WriteOnly); }
    void confirm(qint64 bytes) { Q_EMIT bytesWritten(bytes); }

protected:
    qint64 readData(char *, qint64) override { return -1; }
    qint64 writeData(const char *, qint64) override { return 0; }
};

} // namespace

TEST(MultiOutputDeviceTest, AFailingDeviceLeavesTheOthers)
{
    auto *good = new QBuffer;
    good->open(QIODevice::WriteOnly);
    MultiOutputDevice device({new FailingDevice, good});
    qint64 written = -1;
    EXPECT_EQ(standardErrorOf([&] { written = device.write("abc"); }),
              "Error writing output file: no room\n");
    EXPECT_EQ(written, 3);
    EXPECT_TRUE(device.seek(1));
    EXPECT_EQ(device.write("de"), 2);
    EXPECT_EQ(good->data(), "ade");

    MultiOutputDevice onlyFailing({new FailingDevice});
    standardErrorOf([&] { written = onlyFailing.write("abc"); });
    EXPECT_EQ(written, 0);
}

TEST(MultiOutputDeviceTest, OnlyWhatAllHaveTakenIsConfirmed)
{
    auto *fast = new QBuffer;
    fast->open(QIODevice::WriteOnly);
    auto *slow = new SlowDevice;
    MultiOutputDevice device({fast, slow});
    QList<qint64> confirmed;
    QObject::connect(&device, &QIODevice::bytesWritten,
                     [&confirmed](qint64 bytes) { confirmed += bytes; });
    EXPECT_EQ(device.write("0123456789"), 0);
    slow->confirm(4);
    slow->confirm(6);
    slow->confirm(5);
    EXPECT_EQ(confirmed, (QList<qint64>{4, 6, 0}));
}

TEST(FactoryTest, BadValuesAreRefusedWithTheirName)
{
    const std::pair<QStringList, const char *> rows[] = {
        {{"bogus"}, "bogus report generator: Unknown or unsupported report generator: bogus"},
        {{"Stdout"}, "Stdout report generator: Unknown or unsupported report generator: Stdout"},
        {{"null", "x,y"}, "x report generator: Unknown or unsupported report generator: x"},
        {{"x:h?token=S"}, "x:h report generator: Unknown or unsupported report generator: x:h"},
    };
    for (const auto &[values, error] : rows) {
        QString resultDir;
        const auto result =
            TestReportGeneratorFactory::create(values, &resultDir, TestReportGenerator::TEST_SUITE);
        EXPECT_EQ(result.generator, nullptr);
        EXPECT_EQ(result.error, error);
    }
}

TEST(FactoryTest, ThePathIsAllAfterTheFirstCommaLessOneSeparator)
{
    QTemporaryDir dir;
    QDir(dir.path()).mkdir("a,b");
    const QString path = dir.filePath("a,b/log.txt");
    const auto generator = makeReport("stdout," + path + "/");
    EXPECT_TRUE(QFile::exists(path));
}

TEST(FactoryDeathTest, TheShortFormEndsTheProcess)
{
    EXPECT_EXIT(TestReportGeneratorFactory::create({"bogus"}, TestReportGenerator::TEST_CASE),
                testing::ExitedWithCode(1),
                "bogus report generator: Unknown or unsupported report generator: bogus\n");
}

TEST(OpenReportFileTest, AFreshNameLeavesFilesWithContent)
{
    QTemporaryDir dir;
    writeFile(dir.filePath("r.tar.xml"), "x");
    writeFile(dir.filePath("r.tar_1.tar.xml"), "x");
    writeFile(dir.filePath("empty.xml"), "");
    const std::tuple<const char *, OpenReportFileOptions, const char *> rows[] = {
        {"r.tar.xml", FreshFileName, "r.tar_2.tar.xml"},
        {"r.tar.xml", {}, "r.tar.xml"},
        {"empty.xml", FreshFileName, "empty.xml"},
        {"new/deep/r.xml", FreshFileName, "new/deep/r.xml"},
    };
    for (const auto &[given, options, opened] : rows) {
        QFile file;
        bool isStd = true;
        EXPECT_EQ(openReportFile(dir.filePath(given), options, &file, &isStd), "");
        EXPECT_EQ(file.fileName(), dir.filePath(opened));
        EXPECT_FALSE(isStd);
        EXPECT_EQ(file.size(), 0);
    }
}

TEST(OpenReportFileTest, StandardStreamsAndErrors)
{
    for (const char *name : {"", "/dev/stdout", "/dev/stderr"}) {
        QFile file;
        bool isStd = false;
        EXPECT_EQ(openReportFile(name, FreshFileName, &file, &isStd), "");
        EXPECT_TRUE(isStd) << name;
        EXPECT_TRUE(file.isOpen());
    }
    QTemporaryDir dir;
    writeFile(dir.filePath("plain"), "x");
    QFile file;
    EXPECT_EQ(openReportFile(dir.filePath("plain/sub/r.xml"), {}, &file, nullptr),
              "Could not create report directory '" + dir.filePath("plain/sub") + "'");
    EXPECT_EQ(openReportFile(dir.path(), {}, &file, nullptr)
                  .indexOf("Could not open report file '" + dir.path() + "' for writing: "),
              0);
}
