#include "support/runs.h"
#include "support/test.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <json/json.h>

using namespace Morvex;
using namespace MorvexTest;

namespace {

QJsonObject runOf(const QByteArray &report)
{
    return QJsonDocument::fromJson(report).object()["tests"].toArray()[0].toObject();
}

QJsonArray childrenOf(const QJsonObject &test)
{
    return test["tests"].toArray();
}

} // namespace

TEST(JsonReportGeneratorTest, TheBytesOfAShortReport)
{
    TestResult::Entry skipped = plainEntry(TestResult::SKIP_SECTION, "later");
    skipped.info = "scenario";
    const Entries entries{plainEntry(TestResult::START),
                          plainEntry(TestResult::LOG, QString::fromUtf8("ä\"\n\x7f")),
                          plainEntry(TestResult::LOG), skipped, plainEntry(TestResult::END)};
    EXPECT_EQ(reportOf("json1.1", entries, TestReportGenerator::TEST_CASE),
              R"({"version":{"major":1,"minor":1},"tests":[{"name":"suite_a",)"
              R"("start":"2024-02-29T23:59:58+01:00","type":"testcase","tests":[)"
              R"({"result":"LOG","text":"\u00e4\"\n)"
              "\x7f"
              R"(","time":"2024-02-29T23:59:58+01:00","type":"msg"},)"
              R"({"result":"LOG","time":"2024-02-29T23:59:58+01:00","type":"msg"},)"
              R"({"isSkipped":true,"name":"later","start":"2024-02-29T23:59:58+01:00",)"
              R"("stop":"2024-02-29T23:59:58+01:00","type":"scenario"}],)"
              R"("stop":"2024-02-29T23:59:58+01:00"}]})");
}

TEST(JsonReportGeneratorTest, EveryVersionReadsBackAndOnlyTheNewestHasRetries)
{
    for (int version = 0; version <= 2; ++version) {
        const QByteArray report =
            reportOf(version == 0 ? "json" : QString("json1.%1").arg(version), sampleRun());
        QJsonParseError error;
        const QJsonDocument document = QJsonDocument::fromJson(report, &error);
        ASSERT_EQ(error.error, QJsonParseError::NoError) << qPrintable(error.errorString());
        EXPECT_EQ(document.object()["version"].toObject()["minor"].toInt(), version);
        const QJsonArray attempts = childrenOf(runOf(report));
        ASSERT_EQ(attempts.size(), 2);
        for (int attempt = 0; attempt < 2; ++attempt) {
            const QJsonValue retry = attempts[attempt].toObject()["retry"];
            EXPECT_EQ(retry.isObject(), version == 2);
            const QJsonObject expected{{"count", attempt}, {"max", 1}};
            EXPECT_TRUE(!retry.isObject() || retry.toObject() == expected) << attempt;
        }
    }
}

TEST(JsonReportGeneratorTest, EachKindOfResultHasItsFields)
{
    const QJsonArray attempts = childrenOf(runOf(reportOf("json", sampleRun())));
    const QJsonArray failures = childrenOf(attempts[0].toObject());
    const QJsonObject common{{"result", "FAIL"},
                             {"time", "2024-02-29T23:59:58+01:00"},
                             {"uri", "file:///s/tst_a/script.js"},
                             {"lineNo", 12}};
    const std::pair<TestResult::VPType, QJsonObject> rows[] = {
        {TestResult::NO_VP,
         {{"type", "scriptedVerificationResult"}, {"detail", "Expected 'a', got 'b'."}}},
        {TestResult::PROPERTY_VP,
         {{"type", "propertyVerificationResult"},
          {"vpUri", "file:///s/points/VP1.xml"},
          {"objectName", ":Main.ok"},
          {"property", "enabled"},
          {"expectedValue", "false"},
          {"actualValue", "true"}}},
        {TestResult::SCREENSHOT_VP,
         {{"type", "screenshotVerificationResult"}, {"objectName", ":Main.ok"}}},
        {TestResult::VISUAL_VP, {{"type", "visualVerificationResult"}, {"objectName", ":Main.ok"}}},
    };
    const int firstFailure = 5;
    for (const auto &[vpType, wanted] : rows) {
        const QJsonObject result = failures[firstFailure + vpType].toObject();
        for (const QJsonObject &expected : {common, wanted}) {
            for (auto field = expected.begin(); field != expected.end(); ++field)
                EXPECT_EQ(result[field.key()], field.value()) << qPrintable(field.key());
        }
    }
    const auto image = [&failures](int index, const char *key) {
        return failures[firstFailure + index].toObject()[QLatin1String(key)].toString();
    };
    EXPECT_TRUE(image(TestResult::SCREENSHOT_VP, "failedImageUri").startsWith("x-results:/"));
    EXPECT_TRUE(image(TestResult::VISUAL_VP, "failedObjectDump").endsWith("/failed_1.png"));
}

TEST(JsonReportGeneratorTest, TableDifferencesAreThereAsRowsColumnsAndCells)
{
    TestResult::Entry entry = verificationEntry(TestResult::FAIL, TestResult::TABLE_VP, 1);
    TableDiff::Element element = *entry.tableDiff.begin();
    entry.tableDiff.clear();
    element.subject.cells.begin()->column = 5;
    for (const auto type :
         {TableDiff::Subject::ROW, TableDiff::Subject::COLUMN, TableDiff::Subject::CELL}) {
        element.subject.type = type;
        entry.tableDiff.append(element);
    }
    const QJsonObject run = runOf(
        reportOf("json1.2", {plainEntry(TestResult::START), entry, plainEntry(TestResult::END)}));
    const QJsonArray diff = childrenOf(run)[0].toObject()["tablediff"].toArray();
    ASSERT_EQ(diff.size(), 3);
    EXPECT_EQ(diff[0].toObject()["elementType"], "deletion");
    EXPECT_EQ(diff[0].toObject()["diffType"], "row");
    const QJsonObject row = diff[0].toObject()["diffValue"].toObject();
    EXPECT_EQ(row["line"], 3);
    const QJsonArray cells = row["cells"].toArray();
    ASSERT_EQ(cells.size(), 2);
    EXPECT_EQ(cells[0].toObject()["properties"].toArray(),
              QJsonArray({QJsonObject({{"name", "text"}, {"value", "old"}})}));
    EXPECT_EQ(diff[1].toObject()["diffType"], "column");
    EXPECT_EQ(diff[1].toObject()["diffValue"].toObject()["index"], 5);
    EXPECT_EQ(diff[2].toObject()["diffType"], "cell");
    EXPECT_EQ(diff[2].toObject()["diffValue"], QJsonObject({{"row", 3}, {"column", 5}}));
}

TEST(JsonReportGeneratorTest, DetailsMoveIntoTheTextWhenThereIsAWordOfTheVerifier)
{
    const std::tuple<const char *, const char *, QString, QJsonValue> rows[] = {
        {"", "", "m", QJsonValue(QJsonValue::Undefined)},
        {"d", "", "m", "d"},
        {"", "i", "m", "i"},
        {"d", "i", "m: d", "i"}};
    for (const auto &[details, info, text, detail] : rows) {
        TestResult::Entry entry = plainEntry(TestResult::LOG, "m");
        entry.details = details;
        entry.info = info;
        const QJsonObject message =
            childrenOf(runOf(reportOf("json1.2", {plainEntry(TestResult::START), entry})))[0]
                .toObject();
        EXPECT_EQ(message["text"], text);
        EXPECT_EQ(message["detail"], detail);
    }
}

TEST(JsonReportGeneratorTest, ARunThatIsGivenUpIsADocumentAllTheSame)
{
    Entries entries = sampleRun();
    while (!entries.empty()) {
        entries.pop_back();
        const QByteArray report = reportOf("json1.2", entries);
        EXPECT_EQ(QJsonDocument::fromJson(report).isObject(), !entries.empty()) << entries.size();
    }
}

TEST(JsonReportGeneratorTest, AFrameOfWhichPartsAreMissingBreaksNothing)
{
    for (const auto type :
         {TestResult::START_TEST_CASE, TestResult::START_SECTION, TestResult::END_TEST_CASE}) {
        Entries entries = sampleRun();
        TestResult::Entry damaged;
        damaged.type = type;
        entries.insert(entries.begin() + 1, damaged);
        EXPECT_TRUE(QJsonDocument::fromJson(reportOf("json1.2", entries)).isObject()) << type;
    }
}

TEST(JsonReportGeneratorTest, NoTextBreaksTheReportOrTakesAnythingElseWithIt)
{
    const QStringList texts = awkwardTexts();
    const QJsonArray messages = childrenOf(runOf(reportOf("json1.2", runOfMessages(texts))));
    ASSERT_EQ(messages.size(), texts.size());
    for (int i = 0; i < texts.size(); ++i)
        EXPECT_TRUE(messages[i].toObject()["text"] == withoutUnwritable(texts[i], false)) << i;
}

// Readers that compare reports byte for byte know the forms of this writer.
TEST(JsonReportGeneratorTest, EachResultIsWrittenAsJsonCppWritesIt)
{
    Entries entries = runOfMessages(awkwardTexts().mid(1));
    const Entries sample = sampleRun();
    entries.insert(entries.begin() + 1, sample.begin() + 2, sample.begin() + 22);
    const std::string report = reportOf("json1.2", entries).toStdString();
    Json::Value document;
    std::string errors;
    std::istringstream stream(report);
    ASSERT_TRUE(Json::parseFromStream(Json::CharReaderBuilder(), stream, &document, &errors))
        << errors;
    Json::StreamWriterBuilder compact;
    compact["indentation"] = "";
    std::string expected;
    for (const Json::Value &result : document["tests"][0]["tests"])
        expected += (expected.empty() ? "" : ",") + Json::writeString(compact, result);
    EXPECT_NE(report.find("\"tests\":[" + expected + "],\"stop\""), std::string::npos);
}
