#pragma once

#include "test/testcaseprocess.h"

#include <QEventLoop>
#include <QLocalServer>
#include <QLocalSocket>
#include <QObject>
#include <QProcess>

#include <optional>

namespace Morvex {

/// Supervises the child of one attempt: listens for its report and its video streams, and waits for
/// its end in a nested event loop.
class TestCaseRun : public QObject
{
    Q_OBJECT

public:
    TestCaseRun(TestResult *result, int retriesLeft, Cancellation *cancellation);
    ~TestCaseRun() override;

    int run(const QStringList &args, int timeoutSeconds);

public Q_SLOTS:
    void newReportConnection();
    void reportConnectionStateChange(QLocalSocket::LocalSocketState state);
    void readFromReportConnection();
    void processError(QProcess::ProcessError error);
    void processFinished(int exitCode, QProcess::ExitStatus status);
    void processTimeout();
    void runCancelled();

private:
    bool listen(const QString &name);
    int superviseProcess(const QStringList &args, int timeoutSeconds);
    void endWith(int code);
    void takeLateConnections();
    void closeConnections();

    TestResult *m_result;
    int m_retriesLeft;
    Cancellation *m_cancellation;
    QLocalServer m_reportServer;
    QLocalSocket *m_reportConnection = nullptr;
    QEventLoop m_eventLoop;
    DatagramBuffer m_buffer;
    // Set by the first thing that ends the attempt, be it before the event loop runs.
    std::optional<int> m_code;
};

} // namespace Morvex
