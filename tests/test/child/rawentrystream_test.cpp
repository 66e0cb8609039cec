#include "test/child/rawentrystream.h"

#include "support/recordinggenerator.h"
#include "support/runs.h"
#include "test/testcaseprocess.h"
#include "test/testresult.h"

#include <QTimeZone>

#include <array>

#include <gtest/gtest.h>

using namespace Morvex;
using namespace MorvexTest;

namespace {

QByteArray datagramOf(const TestResult::Entry &entry)
{
    QByteArray datagram;
    encodeEntry(entry, datagram);
    return datagram;
}

TestResult::Entry decode(const QByteArray &payload)
{
    return decodeEntry(payload.constData(), static_cast<std::size_t>(payload.size()));
}

QByteArray payloadOf(const TestResult::Entry &entry)
{
    return datagramOf(entry).mid(rawLengthSize);
}

} // namespace

TEST(RawEntryStreamTest, EveryFieldOfEveryTypeSurvives)
{
    for (const TestResult::ResultType type : allTypes()) {
        const TestResult::Entry entry = fullEntry(type);
        EXPECT_TRUE(areEqual(decode(payloadOf(entry)), entry)) << type;
    }
}

TEST(RawEntryStreamTest, TimesOfAllKindsSurviveAndTheNameOfATimeZoneIsReadOver)
{
    const QDateTime local(QDate(2024, 3, 31), QTime(1, 59, 59, 999));
    TestResult::Entry entry;
    for (const QDateTime &time : {local, local, local.toUTC(), local.addMSecs(1), local,
                                  local.toOffsetFromUtc(3600), QDateTime(), local}) {
        entry.time = time;
        EXPECT_TRUE(areEqual(decode(payloadOf(entry)), entry));
        EXPECT_EQ(decode(payloadOf(entry)).time.timeSpec(), time.timeSpec());
    }
    entry.message = "m";
    for (const QTimeZone &zone : {QTimeZone("Europe/Berlin"), QTimeZone(3600)}) {
        entry.time = local.toTimeZone(zone);
        EXPECT_TRUE(decode(payloadOf(entry)).time.isNull());
        EXPECT_EQ(decode(payloadOf(entry)).message, "m");
    }
}

TEST(RawEntryStreamTest, TheWireHasTheLengthBeforeTheFields)
{
    TestResult::Entry entry;
    entry.type = TestResult::FAIL;
    entry.message = "ab";
    const QByteArray datagram = datagramOf(entry);
    EXPECT_EQ(datagram.left(4).toHex().toUInt(nullptr, 16), unsigned(datagram.size() - 4));
    const int timeSize = 8 + 4 + 1;
    EXPECT_EQ(datagram.mid(4 + timeSize, 1), QByteArray(1, TestResult::FAIL));
    EXPECT_EQ(datagram.mid(4 + timeSize + 1, 8), QByteArray::fromHex("0000000400610062"));
}

TEST(RawEntryStreamTest, AStreamCutAtAnyByteKeepsTheFieldsBefore)
{
    const TestResult::Entry entry = fullEntry(TestResult::FAIL);
    const QByteArray payload = payloadOf(entry);
    for (int size = 0; size < payload.size(); ++size) {
        const TestResult::Entry cut = decode(payload.left(size));
        EXPECT_TRUE(cut.attachmentUri.isEmpty()) << size;
        EXPECT_TRUE(cut.message.isEmpty() || cut.message == entry.message) << size;
        EXPECT_TRUE(cut.retry == -1 || cut.retry == entry.retry) << size;
    }
}

TEST(RawEntryStreamTest, HugeCountsTakeNoMemory)
{
    TestResult::Entry entry;
    entry.message = "m";
    const QByteArray payload = payloadOf(entry);
    // Sets each run of four bytes to the largest count in turn: one of them is that of the stack,
    // one that of the table difference.
    for (int i = 0; i + 4 <= payload.size(); ++i) {
        QByteArray broken = payload;
        broken.replace(i, 4, QByteArray("\x7f\xff\xff\xff", 4));
        const TestResult::Entry read = decode(broken);
        EXPECT_TRUE(read.stack.size() <= std::size_t(payload.size())) << i;
        EXPECT_TRUE(read.tableDiff.count() <= payload.size()) << i;
    }
}

TEST(RawEntryStreamTest, APropertyOfAnotherTypeEndsTheTableDifference)
{
    TestResult::Entry entry = fullEntry(TestResult::FAIL);
    TableDiff::Cell cell;
    cell.properties.insert("list", QVariantList{1, 2});
    TableDiff::Element element;
    element.subject.cells.append(cell);
    entry.tableDiff = {element};
    const TestResult::Entry read = decode(payloadOf(entry));
    EXPECT_EQ(read.name, entry.name);
    EXPECT_TRUE(read.tableDiff.isEmpty());
    EXPECT_TRUE(read.vpName.isEmpty());
}

TEST(DatagramBufferTest, TheCutsBetweenReadsDoNotMatter)
{
    QByteArray stream;
    for (int i = 0; i < 20; ++i) {
        TestResult::Entry entry;
        entry.type = TestResult::LOG;
        entry.message = QString::number(i);
        stream += datagramOf(entry);
    }
    for (const int step : {1, 3, 4, 5, 64, stream.size()}) {
        auto *recorder = new RecordingGenerator;
        TestResult result(recorder);
        DatagramBuffer buffer;
        for (int position = 0; position < stream.size(); position += step) {
            const QByteArray part = stream.mid(position, step);
            buffer.append(part.constData(), static_cast<std::size_t>(part.size()));
            buffer.convertToTestResults(&result, 0);
        }
        ASSERT_EQ(recorder->entries.size(), 20U) << step;
        for (int i = 0; i < 20; ++i)
            EXPECT_EQ(recorder->entries[std::size_t(i)].message, QString::number(i));
        EXPECT_TRUE(buffer.pending.empty());
    }
}

TEST(DatagramBufferTest, TheRunOfTheChildBecomesATestCase)
{
    using Row = std::array<int, 3>;
    for (const auto &[retryOfChild, retriesLeft, expected] :
         {Row{-1, 0, 0}, Row{-1, 3, 3}, Row{5, 3, 5}}) {
        auto *recorder = new RecordingGenerator;
        TestResult result(recorder);
        DatagramBuffer buffer;
        TestResult::Entry entry;
        entry.name = "tst_a";
        entry.retry = retryOfChild;
        for (const auto type : {TestResult::START, TestResult::END}) {
            entry.type = type;
            const QByteArray datagram = datagramOf(entry);
            buffer.append(datagram.constData(), static_cast<std::size_t>(datagram.size()));
        }
        buffer.convertToTestResults(&result, retriesLeft);
        ASSERT_EQ(recorder->entries.size(), 2U);
        EXPECT_EQ(recorder->entries[0].type, TestResult::START_TEST_CASE);
        EXPECT_EQ(recorder->entries[0].info, "tst_a");
        EXPECT_EQ(recorder->entries[0].retry, expected);
        EXPECT_EQ(recorder->entries[1].type, TestResult::END_TEST_CASE);
        EXPECT_FALSE(result.isStarted());
        EXPECT_FALSE(result.isComplete());
        EXPECT_TRUE(result.isTestCaseComplete());
    }
}
