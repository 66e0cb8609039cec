// What a result server may do to a run, and what a run does with videos.

#include "support/recordinggenerator.h"
#include "support/runs.h"
#include "support/test.h"
#include "support/uploadserver.h"
#include "test/multireportgenerator.h"
#include "test/quillbasereportgenerator.h"
#include "test/upload/quillbaseprivate.h"

#include <QElapsedTimer>
#include <QThread>
#include <QTimer>

#include <algorithm>
#include <thread>
#include <unistd.h>

using namespace Morvex;
using namespace MorvexTest;

namespace {

// Uploads, which must leave neither a thread nor a temporary directory.
class UploadTest : public testing::Test
{
protected:
    UploadTest()
        : m_tempDir("TMPDIR", m_dir.path().toUtf8())
    {
        QuillbasePrivate::defaultWaits = {60000, 60000, 60000, 60000, 60000, 60000};
    }
    ~UploadTest() override
    {
        QuillbasePrivate::defaultWaits = {};
        // One that has ended is listed for a moment longer.
        const QDeadlineTimer limit(60000);
        while (threadCount() > m_threads && !limit.hasExpired())
            QThread::msleep(1);
        EXPECT_EQ(threadCount(), m_threads);
        EXPECT_EQ(QDir(m_dir.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
                  QStringList());
    }

    // For a server that does not answer. A busy machine may take longer for one that does.
    static void waitShortly()
    {
        QuillbasePrivate::defaultWaits = {60000, 60000, 50, 300, 300, 60000};
    }

    static int threadCount() { return QDir("/proc/self/task").entryList(QDir::Dirs).size(); }

    // ThreadSanitizer has a thread of its own from the first other one on.
    static int threadCountAfterAThread()
    {
        QString task;
        std::thread([&task] { task = QString("/proc/self/task/%1").arg(::gettid()); }).join();
        // It is listed for a moment longer.
        while (QFile::exists(task))
            QThread::msleep(1);
        return threadCount();
    }

    static TestReportGenerator *connectTo(const UploadServer &server)
    {
        const auto created =
            QuillbaseReportGenerator::create(server.address(), TestReportGenerator::TEST_SUITE);
        EXPECT_EQ(created.error, "");
        return created.generator;
    }

private:
    QTemporaryDir m_dir;
    EnvironmentGuard m_tempDir;
    int m_threads = threadCountAfterAThread();
};

struct Server
{
    const char *behaviour;
    UploadServer::Encryption encryption;
    bool isConnected;
    bool isSilent;
    // What both standard streams have to hold.
    const char *said;
};

void PrintTo(const Server &server, std::ostream *stream)
{
    *stream << server.behaviour;
}

class UploadServerTest : public UploadTest, public testing::WithParamInterface<Server>
{
};

TEST_P(UploadServerTest, TheRunEndsWithItsResultsWholeInTheOtherFormats)
{
    const Server &row = GetParam();
    if (row.isSilent)
        waitShortly();
    if (!row.isConnected)
        QuillbasePrivate::defaultWaits.connection = 500;
    const UploadServer server(row.behaviour, row.encryption);
    auto *recording = new RecordingGenerator;
    std::vector<TestResult::Entry> entries;
    std::string said;
    said += standardOutputOf([&] {
        said = standardErrorOf([&] {
            const auto created =
                QuillbaseReportGenerator::create(server.address(), TestReportGenerator::TEST_SUITE);
            EXPECT_EQ(created.error, row.isConnected ? "" : "Unknown error");
            std::list<TestReportGenerator *> members{recording};
            if (created.generator)
                members.push_front(created.generator);
            MultiReportGenerator generator(members);
            TestResult::Entry entry = fullEntry(TestResult::LOG);
            entry.details = QString(100000, 'x');
            for (const auto type : {TestResult::START, TestResult::START_TEST_CASE}) {
                entry.type = type;
                entries.push_back(entry);
            }
            entry.type = TestResult::LOG;
            entries.insert(entries.end(), 50, entry);
            for (const auto type : {TestResult::END_TEST_CASE, TestResult::END}) {
                entry.type = type;
                entries.push_back(entry);
            }
            for (const TestResult::Entry &next : entries)
                generator.handleEntry(next);
            ASSERT_EQ(recording->entries.size(), entries.size());
            for (std::size_t i = 0; i < entries.size(); ++i)
                EXPECT_TRUE(areEqual(recording->entries[i], entries[i])) << i;
        });
    });
    EXPECT_NE(said.find(row.said), std::string::npos) << row.said;
    EXPECT_EQ(said.find("secret"), std::string::npos);
}

const auto plain = UploadServer::Plain;
INSTANTIATE_TEST_SUITE_P(
    All, UploadServerTest,
    testing::Values(Server{"ok", plain, true, false, "msg 'Done'\n"},
                    Server{"ok", UploadServer::Encrypted, true, false, "msg 'Done'\n"},
                    Server{"late", plain, true, false, "msg 'Done'\n"},
                    Server{"never", plain, true, true, "did not confirm the end"},
                    Server{"code", plain, true, false, "msg 'no space'\nFatal! 28\n"},
                    Server{"early", plain, true, false, "msg 'Done'\n"},
                    Server{"close", plain, true, false, "has ended before the run"},
                    Server{"abort", plain, true, false, "/event ws error 1 ("},
                    Server{"text", plain, true, true, "did not confirm the end"},
                    Server{"shape", plain, true, false, "msg 'Done'\n"},
                    Server{"large", plain, true, false, "xxxx'\n"},
                    Server{"stall", plain, true, true, "did not confirm the end"},
                    Server{"refuse", plain, false, false, "/event ws error "},
                    Server{"mute", plain, false, false, "is it an address of http?"}));

TEST_F(UploadTest, AServerThatIsNotThereStopsTheRunBeforeItStarts)
{
    UploadServer server;
    server.kill();
    const std::string said = standardErrorOf([&] {
        const auto created =
            QuillbaseReportGenerator::create(server.address(), TestReportGenerator::TEST_SUITE);
        EXPECT_EQ(created.generator, nullptr);
        EXPECT_EQ(created.error, "Unknown error");
    });
    EXPECT_NE(said.find("ws error 0 (Connection refused)"), std::string::npos) << said;
}

// The waits of a user, each too long for all tests.
TEST_F(UploadTest, EachWaitHasItsBound)
{
    const std::tuple<const char *, TestResult::ResultType, int, int, int> rows[] = {
        {"mute", TestResult::NONE, 0, 0, 5000},
        {"stall", TestResult::LOG, 8, 20000000, 5000},
        // A coarse timer may be a twentieth too early.
        {"never", TestResult::END_TEST_CASE, 1, 0, 14250},
        {"never", TestResult::NONE, 0, 0, 30000},
    };
    for (const auto &[behaviour, type, entries, textSize, milliseconds] : rows) {
        QuillbasePrivate::defaultWaits = {};
        if (entries > 0)
            QuillbasePrivate::defaultWaits.done = 100;
        const UploadServer server(behaviour);
        QElapsedTimer timer;
        timer.start();
        std::unique_ptr<TestReportGenerator> generator(
            QuillbaseReportGenerator::create(server.address(), TestReportGenerator::TEST_SUITE)
                .generator);
        TestResult::Entry entry = fullEntry(type);
        entry.details = QString(textSize, 'x');
        for (int i = 0; i < entries; ++i) {
            // Until nothing more fits between the two processes.
            if (i > 0 && i == entries - 1)
                QThread::sleep(2);
            generator->handleEntry(entry);
        }
        generator.reset();
        const qint64 elapsed = timer.elapsed();
        EXPECT_GE(elapsed, milliseconds) << behaviour;
        // Each entry may wait once. The rest is far more than a busy machine takes beside it.
        EXPECT_LE(elapsed, milliseconds * std::max(1, entries) + 60000) << behaviour;
    }
}

TEST_F(UploadTest, WhatIsLoggedDuringAWaitComesAfterItInOrder)
{
    waitShortly();
    const UploadServer server("never");
    auto *recording = new RecordingGenerator;
    MultiReportGenerator generator({connectTo(server), recording});
    QTimer::singleShot(0, [&generator] {
        generator.handleEntry(fullEntry(TestResult::LOG));
        generator.handleEntry(fullEntry(TestResult::END_TEST_CASE));
    });
    for (const auto type : {TestResult::START, TestResult::END_TEST_CASE, TestResult::END})
        generator.handleEntry(fullEntry(type));
    std::vector<int> types;
    for (const TestResult::Entry &entry : recording->entries)
        types.push_back(entry.type);
    EXPECT_EQ(types,
              (std::vector<int>{TestResult::START, TestResult::END_TEST_CASE, TestResult::LOG,
                                TestResult::END_TEST_CASE, TestResult::END}));
}

TEST_F(UploadTest, ALateAnswerEndsNoOtherWait)
{
    waitShortly();
    const UploadServer server("once");
    const std::unique_ptr<TestReportGenerator> generator(connectTo(server));
    generator->handleEntry(fullEntry(TestResult::END_TEST_CASE));
    QThread::msleep(600);
    QElapsedTimer timer;
    timer.start();
    generator->handleEntry(fullEntry(TestResult::END_TEST_CASE));
    EXPECT_GE(timer.elapsed(), 250);
}

class UploadVideoTest : public UploadTest
{
protected:
    std::unique_ptr<QIODevice> record()
    {
        std::unique_ptr<QIODevice> device(generator->videoOutput("/videos/cap.tar.webm").device);
        QObject::connect(device.get(), &QIODevice::bytesWritten,
                         [this](qint64 count) { confirmed += count; });
        return device;
    }

    void capture(TestResult::ResultType type)
    {
        TestResult::Entry entry = fullEntry(type);
        entry.attachmentUri = "/videos/cap.tar.webm";
        generator->handleEntry(entry);
    }

    void waitFor(qint64 count)
    {
        QEventLoop loop;
        QTimer check;
        QObject::connect(&check, &QTimer::timeout, [&] {
            if (confirmed >= count)
                loop.quit();
        });
        check.start(10);
        QTimer::singleShot(60000, &loop, &QEventLoop::quit);
        loop.exec();
        EXPECT_EQ(confirmed, count);
    }

    UploadServer server;
    std::unique_ptr<TestReportGenerator> generator{connectTo(server)};
    qint64 confirmed = 0;
};

TEST_F(UploadVideoTest, TwoCapturesOfOneFileAreTwoFilesAndEachByteIsConfirmed)
{
    for (int i = 0; i < 2; ++i) {
        const std::unique_ptr<QIODevice> device = record();
        capture(TestResult::STARTVIDEOCAPTURE);
        EXPECT_EQ(device->write(QByteArray(70000, 'v')), 0);
        EXPECT_TRUE(device->seek(5000000000));
        EXPECT_EQ(device->write("end"), 0);
        waitFor((i + 1) * 70003);
        capture(TestResult::ENDVIDEOCAPTURE);
    }
    generator.reset();
    const std::vector<QJsonArray> messages = server.messages();
    ASSERT_EQ(messages.size(), 13U);
    const QString first = messages[2].at(15).toString();
    const int number = first.section('_', 1).section('.', 0, 0).toInt();
    EXPECT_EQ(first, QString("cap_%1.tar.webm").arg(number));
    for (int i = 0; i < 2; ++i) {
        const QString name = QString("cap_%1.tar.webm").arg(number + i);
        const QJsonArray *capture = &messages[2 + 5 * i];
        EXPECT_EQ(capture[0].at(15), name);
        EXPECT_EQ(capture[1].at(2), name);
        EXPECT_EQ(capture[1].at(3), 70000);
        EXPECT_EQ(capture[2], (QJsonArray{401, 3 + 5 * i, name, 5e9}));
        EXPECT_EQ(capture[3].at(3), 3);
        EXPECT_EQ(capture[4].at(15), name);
    }
}

// Neither a deleted device nor a dead line keeps a writer waiting.
TEST_F(UploadVideoTest, WhateverEndsTheWriterGetsItsBytes)
{
    record()->write("gone at once");
    const std::unique_ptr<QIODevice> unannounced = record();
    unannounced->write("1234");
    waitFor(4);
    const std::unique_ptr<QIODevice> device = record();
    capture(TestResult::STARTVIDEOCAPTURE);
    server.kill();
    for (int i = 0; i < 10; ++i)
        device->write(QByteArray(100000, 'v'));
    waitFor(1000004);
    EXPECT_FALSE(device->seek(0));
    generator.reset();
    EXPECT_EQ(device->write("after the end"), 0);
}

} // namespace
