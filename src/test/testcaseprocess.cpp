#include "test/testcaseprocess.h"

#include "shared/environment.h"
#include "shared/system/trace.h"
#include "test/cancellation.h"
#include "test/child/childrunner.h"
#include "test/child/reportsocket.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QTemporaryDir>
#include <QTimer>

#include <cstdio>
#include <limits>

namespace Morvex {
namespace {

const int maxPendingConnections = 1;
const int disconnectTimeoutMs = 30000;
const int maxLateConnections = 100;
// What a timer of milliseconds can hold; three weeks and more.
const int maxTimeoutSeconds = std::numeric_limits<int>::max() / 1000;

QStringList withReportStream(const QStringList &args, const QString &serverName)
{
    QStringList result = args;
    const int index = qMin(result.indexOf(QStringLiteral("--testcase")) + 2, result.size());
    result.insert(index, QLatin1String("raw,") + serverName);
    result.insert(index, QStringLiteral("--reportgen"));
    return result;
}

} // namespace

int TestCaseProcess::run(const QStringList &args, int timeoutSeconds, int retriesLeft,
                         TestResult *result, Cancellation *cancellation)
{
    TestCaseRun attempt(result, retriesLeft, cancellation);
    return attempt.run(args, timeoutSeconds);
}

QString TestCaseProcess::program()
{
    return QString::fromStdString(Environment::getVariable("MORVEX_PREFIX")) +
           QLatin1String("/bin") + QDir::separator() + QLatin1String("morvexrunner");
}

TestCaseRun::TestCaseRun(TestResult *result, int retriesLeft, Cancellation *cancellation)
    : m_result(result)
    , m_retriesLeft(retriesLeft)
    , m_cancellation(cancellation)
{
    m_reportServer.setMaxPendingConnections(maxPendingConnections);
    connect(&m_reportServer, &QLocalServer::newConnection, this, &TestCaseRun::newReportConnection);
    if (cancellation)
        connect(cancellation, &Cancellation::requested, this, &TestCaseRun::runCancelled);
}

TestCaseRun::~TestCaseRun()
{
    delete m_reportConnection;
}

int TestCaseRun::run(const QStringList &args, int timeoutSeconds)
{
    if (m_cancellation && m_cancellation->isRequested())
        return TestCaseProcess::CANCELLED;
    const QString name =
        QStringLiteral("morvexrunner_report_%1").arg(QCoreApplication::applicationPid());
    qCDebug(traceTestCaseRun) << "report pipe name: " << name;
    if (!listenForReport(&m_reportServer, name, &m_socketDirectory)) {
        std::fprintf(stderr, "Could not open pipe \"%s\" for report file: %s\n",
                     qUtf8Printable(name), qUtf8Printable(m_reportServer.errorString()));
        return TestCaseProcess::CANNOT_START;
    }
    const QString serverName = m_reportServer.fullServerName();
    qCDebug(traceTestCaseRun) << "report pipe path: " << serverName;
    if (serverName.isEmpty()) {
        std::fprintf(stderr, "Could not fetch absolute path to pipe \"%s\" for report file: %s",
                     qUtf8Printable(name), qUtf8Printable(m_reportServer.errorString()));
        m_reportServer.close();
        return TestCaseProcess::CANNOT_START;
    }
    const int code = superviseProcess(withReportStream(args, serverName), timeoutSeconds);
    takeLateConnections();
    closeConnections();
    return code;
}

int TestCaseRun::superviseProcess(const QStringList &args, int timeoutSeconds)
{
    qCDebug(traceTestCaseRun) << "commandline: " << TestCaseProcess::program() << args;
    const int timeoutMs = qBound(0, timeoutSeconds, maxTimeoutSeconds) * 1000;
    ChildRunner process(timeoutMs > 0 ? QDeadlineTimer(timeoutMs)
                                      : QDeadlineTimer(QDeadlineTimer::Forever));
    connect(&process, QOverload<int, QProcess::ExitStatus>::of(&QProcess::finished), this,
            &TestCaseRun::processFinished);
    connect(&process, &QProcess::errorOccurred, this, &TestCaseRun::processError);

    QTimer timer;
    timer.setSingleShot(true);
    connect(&timer, &QTimer::timeout, this, &TestCaseRun::processTimeout);

    process.start(TestCaseProcess::program(), args, QIODevice::ReadOnly);
    const auto processGroup = static_cast<pid_t>(process.processId());
    if (m_cancellation)
        m_cancellation->setRunningAttempt(processGroup);
    if (timeoutMs > 0)
        timer.start(timeoutMs);
    if (!m_code)
        m_eventLoop.exec();
    timer.stop();
    process.disconnect(this);
    process.end();
    if (m_cancellation)
        m_cancellation->setRunningAttempt(0);
    if (*m_code < 0)
        ChildRunner::killGroup(processGroup);
    return *m_code;
}

void TestCaseRun::endWith(int code)
{
    if (m_code)
        return;
    m_code = code;
    // Without effect before the event loop runs, when the code alone keeps it from running.
    m_eventLoop.exit(code);
}

void TestCaseRun::processFinished(int exitCode, QProcess::ExitStatus status)
{
    endWith(status == QProcess::CrashExit ? TestCaseProcess::ABNORMAL_END : exitCode);
    if (status == QProcess::CrashExit && *m_code == TestCaseProcess::ABNORMAL_END)
        m_crashSignal = exitCode;
}

void TestCaseRun::processError(QProcess::ProcessError error)
{
    endWith(error == QProcess::FailedToStart ? TestCaseProcess::CANNOT_START
                                             : TestCaseProcess::ABNORMAL_END);
}

void TestCaseRun::processTimeout()
{
    endWith(TestCaseProcess::TIMED_OUT);
}

void TestCaseRun::runCancelled()
{
    endWith(TestCaseProcess::CANCELLED);
}

// The first connection carries the report, each further one a video.
void TestCaseRun::newReportConnection()
{
    QLocalSocket *socket = m_reportServer.nextPendingConnection();
    if (!socket)
        return;
    if (!m_reportConnection) {
        socket->setParent(nullptr);
        m_reportConnection = socket;
        connect(socket, &QLocalSocket::readyRead, this, &TestCaseRun::readFromReportConnection);
        connect(socket, &QLocalSocket::stateChanged, this,
                &TestCaseRun::reportConnectionStateChange);
        readFromReportConnection();
        return;
    }
    auto *transmission = new TestCaseTransmission(m_result->reportGenerator(), socket);
    transmission->setParent(this);
    connect(socket, &QLocalSocket::readyRead, transmission, &TestCaseTransmission::onReadyRead);
    connect(socket, &QLocalSocket::stateChanged, transmission,
            &TestCaseTransmission::onStateChanged);
    transmission->onReadyRead();
}

void TestCaseRun::reportConnectionStateChange(QLocalSocket::LocalSocketState state)
{
    qCDebug(traceTestCaseRun) << "report-connection state: " << state;
}

void TestCaseRun::readFromReportConnection()
{
    const QByteArray data = m_reportConnection->readAll();
    qCDebug(traceTestCaseRun) << "report-connection read " << data.size();
    if (data.isEmpty())
        return;
    m_buffer.append(data.constData(), static_cast<std::size_t>(data.size()));
    m_buffer.convertToTestResults(m_result, m_retriesLeft);
}

// A short-lived child may end before the event loop got to its connection.
void TestCaseRun::takeLateConnections()
{
    for (int i = 0; i < maxLateConnections && m_reportServer.waitForNewConnection(0); ++i)
        newReportConnection();
    m_reportServer.close();
}

// A child that left its end of a connection to another process may keep all of them open.
void TestCaseRun::closeConnections()
{
    const QDeadlineTimer deadline(disconnectTimeoutMs);
    for (TestCaseTransmission *transmission : findChildren<TestCaseTransmission *>())
        transmission->finish(static_cast<int>(deadline.remainingTime()));
    if (!m_reportConnection)
        return;
    // The text is fixed as it is spelled.
    if (m_reportConnection->state() != QLocalSocket::UnconnectedState &&
        !m_reportConnection->waitForDisconnected(static_cast<int>(deadline.remainingTime())))
        std::fprintf(stderr, "Closing report-connnection failed: %s\n",
                     qUtf8Printable(m_reportConnection->errorString()));
    readFromReportConnection();
    delete m_reportConnection;
    m_reportConnection = nullptr;
}

} // namespace Morvex
