// Entries to a server that answers at once, against a plain socket that sends the same bytes
// without waiting; and the memory that a run takes while its server reads slowly.
//
// With MORVEX_UPLOAD_ENTRIES set, the second one sends so many entries.

#include "ratio.h"
#include "test/openreportfile.h"
#include "test/quillbasereportgenerator.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QProcess>
#include <QSocketNotifier>
#include <QThread>
#include <QWebSocket>
#include <QWebSocketServer>

#include <algorithm>
#include <benchmark/benchmark.h>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <memory>
#include <unistd.h>

using namespace Morvex;

namespace {

const int entries = 5000;
const int slowEntries = 20000;

const char serveOption[] = "--serve";

// Answers each message after a pause of so many microseconds, until its standard input ends.
class Server
{
public:
    explicit Server(unsigned long pause)
        : m_pause(pause)
        , m_server("server", QWebSocketServer::NonSecureMode)
        , m_inputEnd(STDIN_FILENO, QSocketNotifier::Read)
    {
        QObject::connect(&m_server, &QWebSocketServer::newConnection, [this] { accept(); });
        QObject::connect(&m_inputEnd, &QSocketNotifier::activated, &QCoreApplication::quit);
        m_server.listen(QHostAddress::LocalHost);
        std::printf("%d\n", m_server.serverPort());
        std::fflush(stdout);
    }

private:
    void accept()
    {
        QWebSocket *socket = m_server.nextPendingConnection();
        socket->setParent(&m_server);
        QObject::connect(socket, &QWebSocket::binaryMessageReceived,
                         [this, socket](const QByteArray &message) { answer(socket, message); });
    }

    void answer(QWebSocket *socket, const QByteArray &message)
    {
        if (m_pause > 0)
            QThread::usleep(m_pause);
        const char *text = message.startsWith("301") ? "Done" : "";
        socket->sendBinaryMessage(QByteArray("{\"code\":0,\"message\":\"") + text +
                                  "\",\"serial\":" + message.split('|').value(1) + '}');
        // Part of an answer that is 5 seconds late makes the client close the connection.
        socket->flush();
    }

    unsigned long m_pause;
    QWebSocketServer m_server;
    QSocketNotifier m_inputEnd;
};

// A server in a process of its own, so that its memory and its time are not those of the upload.
class ServerProcess
{
public:
    explicit ServerProcess(int pauseMicroseconds)
    {
        m_process.start(QCoreApplication::applicationFilePath(),
                        {serveOption, QString::number(pauseMicroseconds)});
        if (!m_process.waitForReadyRead())
            std::abort();
        port = m_process.readLine().toInt();
    }
    ~ServerProcess()
    {
        m_process.closeWriteChannel();
        m_process.waitForFinished();
    }

    int port = 0;

private:
    QProcess m_process;
};

TestResult::Entry entryOf(TestResult::ResultType type)
{
    TestResult::Entry entry;
    entry.time = QDateTime::currentDateTime();
    entry.type = type;
    entry.message = "The condition holds";
    entry.details = QString(800, 'x');
    entry.line = LineInfo("/suites/suite_a/tst_a/script.js", 42);
    entry.stack = {entry.line};
    return entry;
}

std::unique_ptr<TestReportGenerator> connectTo(const ServerProcess &server)
{
    const QString url = QString("http://127.0.0.1:%1/project/p?token=t").arg(server.port);
    const auto created = QuillbaseReportGenerator::create(url, TestReportGenerator::TEST_SUITE);
    if (!created.generator)
        std::abort();
    return std::unique_ptr<TestReportGenerator>(created.generator);
}

void upload(const ServerProcess &server, int count)
{
    const auto generator = connectTo(server);
    const TestResult::Entry entry = entryOf(TestResult::PASS);
    for (int i = 0; i < count; ++i)
        generator->handleEntry(entry);
}

void sendPlain(const ServerProcess &server, int count)
{
    QWebSocket socket;
    QEventLoop loop;
    QObject::connect(&socket, &QWebSocket::connected, &loop, &QEventLoop::quit);
    socket.open(QString("ws://127.0.0.1:%1").arg(server.port));
    loop.exec();
    int answers = 0;
    QObject::connect(&socket, &QWebSocket::binaryMessageReceived, [&](const QByteArray &) {
        if (++answers == count)
            loop.quit();
    });
    const QByteArray message(1024, '|');
    for (int i = 0; i < count; ++i)
        socket.sendBinaryMessage(message);
    loop.exec();
}

void uploadEntries(benchmark::State &state)
{
    const ServerProcess server(0);
    MorvexBenchmark::Ratio ratio;
    for (auto _ : state)
        state.SetIterationTime(
            ratio.measure([&] { upload(server, entries); }, [&] { sendPlain(server, entries); }));
    state.SetItemsProcessed(entries * state.iterations());
    state.counters["ratio_to_socket"] = ratio.value();
}
BENCHMARK(uploadEntries)->UseManualTime()->Unit(benchmark::kMillisecond);

double residentMegabytes()
{
    long pages = 0;
    long resident = 0;
    if (std::FILE *file = std::fopen("/proc/self/statm", "r")) {
        if (std::fscanf(file, "%ld %ld", &pages, &resident) != 2)
            resident = 0;
        std::fclose(file);
    }
    return static_cast<double>(resident) * static_cast<double>(::sysconf(_SC_PAGESIZE)) / 1e6;
}

void memoryWithASlowServer(benchmark::State &state)
{
    const QByteArray wanted = qgetenv("MORVEX_UPLOAD_ENTRIES");
    const int count = wanted.isEmpty() ? slowEntries : wanted.toInt();
    const ServerProcess server(100);
    double growth = 0;
    for (auto _ : state) {
        const auto generator = connectTo(server);
        const TestResult::Entry entry = entryOf(TestResult::PASS);
        generator->handleEntry(entry);
        const double before = residentMegabytes();
        for (int i = 0; i < count; ++i) {
            generator->handleEntry(entry);
            if (i % 1000 == 0)
                growth = std::max(growth, residentMegabytes() - before);
        }
    }
    if (hasIncompleteReport())
        state.SkipWithError("the upload has ended before all was sent");
    state.SetItemsProcessed(count * state.iterations());
    state.counters["growth_megabytes"] = growth;
}
BENCHMARK(memoryWithASlowServer)->Iterations(1)->UseRealTime()->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    if (argc == 3 && std::strcmp(argv[1], serveOption) == 0) {
        const Server server(std::strtoul(argv[2], nullptr, 10));
        return QCoreApplication::exec();
    }
    // Each entry is shown there.
    const int nowhere = ::open("/dev/null", O_WRONLY | O_CLOEXEC);
    ::dup2(nowhere, STDERR_FILENO);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
