#include "test/testcaseprocess.h"

#include "support/fakerunner.h"
#include "support/processes.h"
#include "support/recordinggenerator.h"
#include "support/test.h"
#include "test/rawreportgenerator.h"
#include "test/testresult.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QLocalServer>
#include <QLocalSocket>
#include <QThread>
#include <QTimer>
#include <QtEndian>

#include <csignal>
#include <functional>

using namespace Morvex;
using namespace MorvexTest;

namespace {

int runTestCase(int timeoutSeconds = 0)
{
    TestResult result(new RecordingGenerator);
    return TestCaseProcess::run({"--testcase", "tst"}, timeoutSeconds, 0, &result);
}

int runFake(const QByteArray &script, int timeoutSeconds = 0)
{
    const FakeRunner runner(script);
    return runTestCase(timeoutSeconds);
}

QString socketName()
{
    return QString("morvexrunner_report_%1").arg(QCoreApplication::applicationPid());
}

bool waitFor(const std::function<bool()> &condition)
{
    QElapsedTimer timer;
    timer.start();
    while (!condition() && timer.elapsed() < 60000) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
        // Outside of an event loop objects are not deleted later but never.
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QThread::msleep(1);
    }
    return condition();
}

} // namespace

TEST(TestCaseProcessTest, CodesOfAChildsEnd)
{
    EXPECT_EQ(runFake("exit 0"), 0);
    EXPECT_EQ(runFake("exit 7"), 7);
    EXPECT_EQ(runFake("kill -SEGV $$"), TestCaseProcess::ABNORMAL_END);
    // It writes no summary.
    EXPECT_EQ(runFake("[ \"$MORVEX_NOREPORTSUMMARY\" = 1 ] && exit 9"), 9);
}

TEST(TestCaseProcessTest, WhatTheChildStartedEndsWithItsTimeout)
{
    QTemporaryDir dir;
    const QString pidFile = dir.filePath("pid");
    int pid = 0;
    // A busy machine may take longer for the start.
    for (int timeoutSeconds = 1; pid == 0 && timeoutSeconds < 60; timeoutSeconds *= 4) {
        EXPECT_EQ(runFake("trap '' TERM; sleep 300 & echo $! > '" + pidFile.toLocal8Bit() +
                              "'; wait; sleep 300",
                          timeoutSeconds),
                  TestCaseProcess::TIMED_OUT);
        pid = readFile(pidFile).trimmed().toInt();
    }
    ASSERT_GT(pid, 0);
    EXPECT_TRUE(waitFor([pid] { return !isRunning(pid); }));
}

TEST(TestCaseProcessTest, WhereItsSocketCannotBeTheReportArrivesByAnother)
{
    const QString name = socketName();
    const FakeRunner runner("[ -S \"$socket\" ] && exit 3");
    const QTemporaryDir dir;
    for (const QString &temporary : {dir.filePath("left by another run"),
                                     dir.filePath(QString(200, 'x')), dir.filePath("missing")}) {
        SCOPED_TRACE(temporary.toStdString());
        if (temporary.endsWith("run"))
            writeFile(temporary + '/' + name, "as it was");
        else if (temporary.endsWith('x'))
            QDir().mkpath(temporary);
        const EnvironmentGuard directory("TMPDIR", temporary.toLocal8Bit());
        EXPECT_EQ(runTestCase(), 3);
    }
    // A run in another container may use it.
    EXPECT_EQ(readFile(dir.filePath("left by another run/" + name)), "as it was");
}

TEST(TestCaseProcessTest, AServerInUseIsAnError)
{
    QLocalServer other;
    ASSERT_TRUE(other.listen(socketName())) << other.errorString().toStdString();
    int code = 0;
    const std::string message = standardErrorOf([&code] { code = runFake("exit 0"); });
    EXPECT_EQ(code, TestCaseProcess::CANNOT_START);
    EXPECT_EQ(message.find("Could not open pipe \"morvexrunner_report_"), 0U);
}

TEST(RawReportGeneratorTest, ASocketThatIsNotThereIsAnError)
{
    const auto result = RawReportGenerator::create("/no/such/socket");
    EXPECT_EQ(result.generator, nullptr);
    EXPECT_EQ(result.error.indexOf("Could not connect to local report socket '/no/such/socket': "),
              0);
}

TEST(RawReportGeneratorTest, ALostParentDoesNotStopTheRun)
{
    QLocalServer server;
    QTemporaryDir dir;
    ASSERT_TRUE(server.listen(dir.filePath("socket")));
    const std::unique_ptr<TestReportGenerator> generator(
        RawReportGenerator::create(server.fullServerName()).generator);
    ASSERT_TRUE(generator);
    ASSERT_TRUE(server.waitForNewConnection(60000));
    delete server.nextPendingConnection();
    TestResult::Entry entry;
    entry.type = TestResult::LOG;
    entry.message = QString(1000000, 'x');
    const std::string message = standardErrorOf([&] {
        for (int i = 0; i < 5; ++i)
            generator->handleEntry(entry);
    });
    EXPECT_EQ(message, "RawReportGenerator: failed to send testresult entry to testsuite "
                       "morvexrunner\n");
    EXPECT_TRUE(static_cast<RawReportGenerator *>(generator.get())->hasLostEntries());
}

namespace {

// Keeps where videos go.
class VideoGenerator : public RecordingGenerator
{
public:
    explicit VideoGenerator(const QString &directory)
        : dir(directory)
    {
    }

    QIODeviceResult videoOutput(const QString &path) override
    {
        names += path;
        return TestReportGenerator::videoOutput(dir + "/" + path);
    }

    QString dir;
    QStringList names;
};

class VideoStreamTest : public testing::Test
{
protected:
    void SetUp() override { ASSERT_TRUE(server.listen(dir.filePath("socket"))); }

    // The parent's end of the next connection. It deletes itself at the end of the stream.
    TestCaseTransmission *accept()
    {
        EXPECT_TRUE(waitFor([this] { return server.hasPendingConnections(); }));
        QLocalSocket *socket = server.nextPendingConnection();
        auto *transmission = new TestCaseTransmission(&parent, socket);
        QObject::connect(socket, &QLocalSocket::readyRead, transmission,
                         &TestCaseTransmission::onReadyRead);
        QObject::connect(socket, &QLocalSocket::stateChanged, transmission,
                         &TestCaseTransmission::onStateChanged);
        transmission->onReadyRead();
        return transmission;
    }

    // As a child would, over a connection that is made when there is none.
    void send(QLocalSocket &socket, const QByteArray &bytes)
    {
        if (socket.state() == QLocalSocket::UnconnectedState)
            socket.connectToServer(server.fullServerName());
        ASSERT_TRUE(socket.waitForConnected(60000));
        socket.write(bytes);
        ASSERT_TRUE(socket.waitForBytesWritten(60000));
    }

    QTemporaryDir dir;
    QLocalServer server;
    VideoGenerator parent{dir.path()};
};

QByteArray chunk(quint32 type, quint64 value, const QByteArray &data = {})
{
    QByteArray bytes(12, '\0');
    qToBigEndian(type, bytes.data());
    qToBigEndian(value, bytes.data() + 4);
    return bytes + data;
}

} // namespace

TEST_F(VideoStreamTest, AVideoArrivesWithItsSeeksAndIsConfirmed)
{
    const auto report = RawReportGenerator::create(server.fullServerName());
    const std::unique_ptr<TestReportGenerator> child(report.generator);
    ASSERT_TRUE(waitFor([this] { return server.hasPendingConnections(); }));
    const std::unique_ptr<QLocalSocket> reportConnection(server.nextPendingConnection());

    std::unique_ptr<QIODevice> video(child->videoOutput("v.mp4").device);
    ASSERT_TRUE(video);
    TestCaseTransmission *transmission = accept();
    QList<qint64> confirmed;
    QObject::connect(video.get(), &QIODevice::bytesWritten,
                     [&confirmed](qint64 bytes) { confirmed += bytes; });
    EXPECT_EQ(video->write("0123456789"), 0);
    EXPECT_TRUE(video->seek(2));
    video->write("ab");
    video->write("cde");
    // The acknowledgement of the last write waits for another one.
    EXPECT_TRUE(waitFor([&confirmed] { return confirmed.size() == 2; }));
    EXPECT_EQ(confirmed, (QList<qint64>{10, 2}));
    video.reset();
    bool ended = false;
    QObject::connect(transmission, &QObject::destroyed, [&ended] { ended = true; });
    EXPECT_TRUE(waitFor([&ended] { return ended; }));
    EXPECT_EQ(parent.names, QStringList("v.mp4"));
    EXPECT_EQ(readFile(dir.filePath("v.mp4")), "01abcde789");
}

TEST_F(VideoStreamTest, AnUnknownChunkAndAFileThatCannotBeWrittenEndTheStreamOnly)
{
    const std::pair<QByteArray, const char *> rows[] = {
        {QByteArray("\0\0\0\5v.mp4", 9) + chunk(2, 3, "abc") + chunk(9, 0),
         "Video stream error: unknown chunk type\n"},
        {QByteArray("\0\0\0\4no/v", 8), "Could not start the stream: Fialed opening file '"},
    };
    for (const auto &[bytes, said] : rows) {
        QLocalSocket socket;
        send(socket, bytes);
        const std::string message = standardErrorOf([this, &socket] {
            accept();
            EXPECT_TRUE(
                waitFor([&socket] { return socket.state() == QLocalSocket::UnconnectedState; }));
        });
        EXPECT_EQ(message.find(said), 0U) << message;
    }
    EXPECT_EQ(readFile(dir.filePath("v.mp4")), "abc");
}

TEST_F(VideoStreamTest, AChunkIsWrittenAsItArrivesHoweverLongItSaysItIs)
{
    QLocalSocket socket;
    send(socket, QByteArray("\0\0\0\1v", 5) + chunk(1, 0xffffffffffffffffULL) +
                     chunk(2, 0xffffffffffffffffULL, "abc"));
    std::unique_ptr<TestCaseTransmission> transmission(accept());
    EXPECT_TRUE(waitFor([this] { return !parent.names.isEmpty(); }));
    transmission.reset();
    EXPECT_EQ(readFile(dir.filePath("v")), "abc");
}

TEST_F(VideoStreamTest, TheLastOfTheSmallPartsOfAChunkIsAcknowledgedWithTheirSum)
{
    QLocalSocket socket;
    std::unique_ptr<TestCaseTransmission> transmission;
    for (const QByteArray &part : {QByteArray("\0\0\0\1v", 5) + chunk(2, 6, "a"), QByteArray("bcd"),
                                   "ef" + chunk(2, 2, "gh")}) {
        send(socket, part);
        if (!transmission)
            transmission.reset(accept());
        QCoreApplication::processEvents();
    }
    EXPECT_TRUE(waitFor([&socket] { return socket.bytesAvailable() == 16; }));
    EXPECT_EQ(socket.readAll().toHex(), "00000000000000060000000000000002");
    transmission.reset();
    EXPECT_EQ(readFile(dir.filePath("v")), "abcdefgh");
}
