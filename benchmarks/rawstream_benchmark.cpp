// Entries through the raw stream, parent and child together, against the same bytes through a bare
// local socket with a wait for each write.

#include "passingchecks.h"
#include "ratio.h"
#include "test/child/rawentrystream.h"
#include "test/nullreportgenerator.h"
#include "test/rawreportgenerator.h"
#include "test/testcaseprocess.h"
#include "test/testresult.h"

#include <QCoreApplication>
#include <QLocalServer>
#include <QLocalSocket>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>
#include <functional>
#include <memory>
#include <sys/wait.h>
#include <unistd.h>

using namespace Morvex;

namespace {

const int entries = 50000;

TestResult::Entry sampleEntry()
{
    TestResult::Entry entry;
    entry.time = QDateTime::currentDateTime();
    entry.type = TestResult::PASS;
    entry.message = "The condition holds";
    entry.details = "Got expected 'value'.";
    entry.stack = {LineInfo("/suites/suite_a/tst_a/script.js", 42)};
    entry.line = entry.stack.front();
    return entry;
}

// Forks a sender, and reads in this process until it disconnects.
void transfer(const std::function<void(const QString &)> &send,
              const std::function<void(const QByteArray &)> &receive)
{
    QTemporaryDir dir;
    QLocalServer server;
    server.listen(dir.filePath("socket"));
    const QString name = server.fullServerName();
    const pid_t sender = ::fork();
    if (sender == 0) {
        send(name);
        ::_exit(0);
    }
    server.waitForNewConnection(10000);
    const std::unique_ptr<QLocalSocket> socket(server.nextPendingConnection());
    while (socket->waitForReadyRead(10000))
        receive(socket->readAll());
    receive(socket->readAll());
    ::waitpid(sender, nullptr, 0);
}

void sendEntries(const QString &name)
{
    logPassingChecks(RawReportGenerator::create(name).generator, entries);
}

void sendBytes(const QString &name, const QByteArray &datagram)
{
    QLocalSocket socket;
    socket.connectToServer(name);
    socket.waitForConnected(10000);
    for (int i = 0; i < entries; ++i) {
        socket.write(datagram.constData(), datagram.size());
        socket.waitForBytesWritten(10000);
    }
    socket.disconnectFromServer();
    if (socket.state() != QLocalSocket::UnconnectedState)
        socket.waitForDisconnected(10000);
}

void rawStream(benchmark::State &state)
{
    QByteArray datagram;
    encodeEntry(sampleEntry(), datagram);
    MorvexBenchmark::Ratio ratio;
    for (auto _ : state) {
        state.SetIterationTime(ratio.measure(
            [] {
                TestResult result(new NullReportGenerator);
                DatagramBuffer buffer;
                transfer(sendEntries, [&](const QByteArray &data) {
                    buffer.append(data.constData(), static_cast<std::size_t>(data.size()));
                    buffer.convertToTestResults(&result, 0);
                });
                if (result.resultCount(TestResult::PASS) != entries)
                    std::abort();
            },
            [&datagram] {
                transfer([&datagram](const QString &name) { sendBytes(name, datagram); },
                         [](const QByteArray &) {});
            }));
    }
    state.counters["ratio_to_socket"] = ratio.value();
}
BENCHMARK(rawStream)->UseManualTime()->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
