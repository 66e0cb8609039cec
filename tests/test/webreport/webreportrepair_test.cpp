#include "test/webreport/webreportrepair.h"

#include "support/filesizelimit.h"
#include "support/runs.h"
#include "support/test.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>

#include <algorithm>
#ifdef __SANITIZE_ADDRESS__
#include <sanitizer/lsan_interface.h>
#endif

using namespace Morvex;
using namespace MorvexTest;

namespace {

const QByteArray header = "var data = [];\n";

// The run has texts with escapes, numbers, keywords and table differences.
QByteArray dataFileOf(int runs)
{
    const QTemporaryDir dir;
    const EnvironmentGuard prefix("MORVEX_PREFIX", QFile::encodeName(dir.path()));
    writeFile(dir.filePath("lib/webreport/index.html"), "page");
    std::vector<TestResult::Entry> entries = sampleRun();
    entries[2].message = QString::fromUtf8("ä \U0001F600 \"]}\\ data.push( {\"version\" );\n\n");
    for (int i = 0; i < runs; ++i)
        replay(entries, makeReport("html," + dir.filePath("report")).get());
    return readFile(dir.filePath("report/data/results-v1.js"));
}

QByteArray repaired(const QByteArray &data)
{
    const WebReportEdits edits = webReportEdits(data.constData(), data.size());
    EXPECT_EQ(edits.error, QString());
    return applyWebReportEdits(data.constData(), data.size(), edits.edits);
}

// The documents of a data file that is a valid script; reports one that is not.
// Qt's reader loses memory when a key comes twice in an object, as it may where two runs met.
QJsonDocument parsed(const QByteArray &text)
{
#ifdef __SANITIZE_ADDRESS__
    const __lsan::ScopedDisabler disabler;
#endif
    return QJsonDocument::fromJson(text);
}

std::vector<QJsonObject> documentsOf(const QByteArray &data)
{
    std::vector<QJsonObject> documents;
    EXPECT_TRUE(data.startsWith(header) || data.isEmpty());
    int position = header.size();
    while (position < data.size()) {
        const QByteArray begin = "data.push( ";
        EXPECT_EQ(data.mid(position, begin.size()), begin);
        const int end = data.indexOf(" );\n\n", position);
        const int from = position + begin.size();
        const QJsonDocument document = parsed(data.mid(from, end - from));
        EXPECT_TRUE(document.isObject()) << data.mid(position).constData();
        if (end < 0 || !document.isObject())
            return documents;
        documents.push_back(document.object());
        position = end + 5;
        while (position < data.size() && QByteArray(" \n").contains(data[position]))
            ++position;
    }
    return documents;
}

bool isMarked(const QJsonObject &document)
{
    return document["ended"] == QJsonValue(false);
}

QJsonObject nodeOf(const QJsonObject &document)
{
    return document["tests"].toArray()[0].toObject();
}

} // namespace

TEST(WebReportRepairTest, AFileCutAtAnyByteBecomesAScriptWithAllWholeEntries)
{
    const QByteArray whole = dataFileOf(2);
    const int secondRun = whole.lastIndexOf("data.push( {\"version\":");
    const QRegularExpression closing("\\A[]}]*(,\"ended\":false)?[]}]* \\);\n\n\\z");
    int entries = 0;
    for (int size = secondRun + 1; size < whole.size(); ++size) {
        const QByteArray cut = repaired(whole.left(size));
        const auto documents = documentsOf(cut);
        ASSERT_EQ(documents.size(), 2U) << size;
        const auto differs = std::mismatch(cut.begin(), cut.end(), whole.begin(), whole.end());
        const QString added = cut.mid(int(differs.first - cut.begin()));
        EXPECT_TRUE(added.isEmpty() || closing.match(added).hasMatch()) << qPrintable(added);
        EXPECT_EQ(isMarked(documents[1]), !nodeOf(documents[1]).contains("stop")) << size;
        EXPECT_TRUE(webReportEdits(cut.constData(), cut.size()).edits.empty()) << size;
        const int entriesNow = cut.count("\"time\":");
        EXPECT_GE(entriesNow, entries) << size;
        entries = entriesNow;
        if (testing::Test::HasFailure())
            break;
    }
    EXPECT_EQ(entries, whole.count("\"time\":"));
}

// The pages read the same files.
TEST(WebReportRepairTest, ACutFileLosesOnlyWhatIsNotComplete)
{
    const QByteArray text = readFile(MORVEX_SOURCE_DIR "/tests/support/cutreports.json");
    const QJsonArray files = QJsonDocument::fromJson(text).array();
    EXPECT_FALSE(files.isEmpty());
    for (const QJsonValue &file : files) {
        const QByteArray result = repaired(file["cut"].toString().toLatin1());
        EXPECT_EQ(result, file["repaired"].toString().toLatin1())
            << qPrintable(file["name"].toString());
        documentsOf(result);
    }
}

TEST(WebReportRepairTest, TwoRunsThatWroteAtTheSameTimeLeaveAScriptAndTheRunsAround)
{
    const QByteArray run = dataFileOf(1).mid(header.size());
    for (int first = 1; first < run.size(); first += 211) {
        for (int second = 1; second < run.size(); second += 179) {
            const QByteArray mixed =
                run.left(first) + run.left(second) + run.mid(first) + run.mid(second);
            const QByteArray result = repaired(header + run + mixed + run);
            ASSERT_GE(documentsOf(result).size(), 3U) << first << ' ' << second;
            EXPECT_TRUE(result.startsWith(header + run)) << first << ' ' << second;
            EXPECT_TRUE(result.endsWith(run)) << first << ' ' << second;
            if (testing::Test::HasFailure())
                return;
        }
    }
}

TEST(WebReportRepairTest, AFileThatIsDamagedInAnotherWayIsLeftAlone)
{
    const QByteArray whole = dataFileOf(1);
    const QByteArray rows[] = {
        "something else",
        header + "// a note\n",
        header + "data.push( [1] );\n\n",
        whole + "data.push( [1] );\n\n",
    };
    for (const QByteArray &data : rows) {
        const WebReportEdits edits = webReportEdits(data.constData(), data.size());
        EXPECT_FALSE(edits.error.isEmpty()) << data.constData();
        EXPECT_TRUE(edits.edits.empty());
    }
}

TEST(WebReportRepairTest, TheFileIsReplacedAndTheMessageSaysWhichRun)
{
    const QTemporaryDir dir;
    const QString fileName = dir.filePath("data/results-v1.js");
    const QByteArray whole = dataFileOf(2);
    writeFile(fileName, whole.left(whole.size() - 200));
    const WebReportRepair first = repairWebReport(dir.path());
    EXPECT_EQ(first.error, QString());
    EXPECT_TRUE(first.isRepaired);
    EXPECT_EQ(first.message,
              QStringLiteral("Closed run 2 of 2 in '%1', which did not end").arg(fileName));
    EXPECT_EQ(documentsOf(readFile(fileName)).size(), 2U);
    const WebReportRepair second = repairWebReport(dir.path());
    EXPECT_FALSE(second.isRepaired);
    EXPECT_EQ(second.message, QStringLiteral("Nothing to repair in '%1'").arg(fileName));
}

TEST(WebReportRepairTest, AFullDiskLeavesWhatCanStillBeRepaired)
{
    const QByteArray cut = dataFileOf(2).chopped(200);
    const QByteArray run = dataFileOf(1);
    const QByteArray lost = run + "data.push( {\"version\":{\"major\":7";
    const std::pair<QByteArray, int> rows[] = {
        {cut, 1000},
        {cut + run.mid(header.size()), 1000},
        // There is no room for a byte more, as after a kill before the first one.
        {lost, lost.size()},
        {run + "data.push( {\"vers", run.size() + 17},
    };
    for (const auto &[data, room] : rows) {
        const QTemporaryDir dir;
        const QString fileName = dir.filePath("data/results-v1.js");
        writeFile(fileName, data);
        WebReportRepair repair;
        {
            const FileSizeLimit limit(room);
            repair = repairWebReport(dir.path());
        }
        EXPECT_EQ(repair.error,
                  QStringLiteral("Could not write '%1': File too large").arg(fileName));
        EXPECT_FALSE(repair.isRepaired);
        EXPECT_EQ(repairWebReport(dir.path()).error, QString());
        EXPECT_EQ(readFile(fileName), repaired(data));
    }
}

TEST(WebReportRepairTest, AClosedTailLeavesTheFileItsPlaceAndOwner)
{
    const QTemporaryDir dir;
    const QString fileName = dir.filePath("data/results-v1.js");
    writeFile(fileName, dataFileOf(2).chopped(200));
    QFile before(fileName);
    ASSERT_TRUE(before.open(QIODevice::ReadOnly));
    EXPECT_TRUE(repairWebReport(dir.path()).isRepaired);
    EXPECT_EQ(before.readAll(), readFile(fileName));
}

TEST(WebReportRepairTest, AFileThatIsMissingOrCanNotBeReadIsNotCalledInUse)
{
    const QTemporaryDir dir;
    for (const char *reason : {"No such file or directory", ""}) {
        const WebReportRepair repair = repairWebReport(dir.path());
        EXPECT_FALSE(repair.isInUse);
        EXPECT_TRUE(repair.error.startsWith("Could not open")) << qPrintable(repair.error);
        EXPECT_TRUE(repair.error.endsWith(reason)) << qPrintable(repair.error);
        QDir(dir.path()).mkpath("data/results-v1.js");
    }
}

TEST(WebReportRepairTest, DeepNestingTakesNoStack)
{
    const QByteArray deep = header + "data.push( {\"tests\":[" + QByteArray(1000000, '[');
    EXPECT_EQ(repaired(deep), header + "data.push( {\"tests\":[],\"ended\":false} );\n\n");
}
