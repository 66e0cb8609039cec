#pragma once

#include "morvex_export.h"
#include "test/datagrambuffer.h"
#include "test/testcasetransmission.h"

#include <QEventLoop>
#include <QLocalServer>
#include <QLocalSocket>
#include <QObject>
#include <QProcess>
#include <QString>
#include <QStringList>

#include <memory>
#include <optional>

class QTemporaryDir;

namespace Morvex {

class Cancellation;
class TestResult;

/// One child runner for one attempt of one test case.
class MORVEX_EXPORT TestCaseProcess
{
public:
    /// Codes that no exit status of a child can be.
    enum Code {
        CANNOT_START = -42001,
        TIMED_OUT = -42002,
        ABNORMAL_END = -42003,
        CANCELLED = -42004
    };

    /// Starts $MORVEX_PREFIX/bin/morvexrunner with @p args, and logs in @p result what it reports.
    /// Blocks in an event loop. A timeout of 0 is none. @p cancellation may be null. Returns the
    /// exit status of the child or a Code.
    static int run(const QStringList &args, int timeoutSeconds, int retriesLeft, TestResult *result,
                   Cancellation *cancellation = nullptr);

    /// The path of the runner's executable, according to MORVEX_PREFIX.
    static QString program();
};

/// Supervises the child of one attempt: listens for its report and its video streams, and waits for
/// its end in a nested event loop. Serves one attempt.
class MORVEX_EXPORT TestCaseRun : public QObject
{
    Q_OBJECT

public:
    /// @p cancellation may be null. Neither is owned.
    TestCaseRun(TestResult *result, int retriesLeft, Cancellation *cancellation);
    ~TestCaseRun() override;

    /// See TestCaseProcess::run.
    int run(const QStringList &args, int timeoutSeconds);

    /// The signal that ended the child; 0 unless it ended by one that did not come from here.
    int crashSignal() const { return m_crashSignal; }
    /// The last place in the script that the child reported; not valid when there was none.
    LineInfo lastPlace() const { return m_buffer.lastPlace; }

public Q_SLOTS:
    void newReportConnection();
    void reportConnectionStateChange(QLocalSocket::LocalSocketState state);
    void readFromReportConnection();
    void processError(QProcess::ProcessError error);
    void processFinished(int exitCode, QProcess::ExitStatus status);
    void processTimeout();
    void runCancelled();

private:
    int superviseProcess(const QStringList &args, int timeoutSeconds);
    void endWith(int code);
    void takeLateConnections();
    void closeConnections();

    TestResult *m_result;
    int m_retriesLeft;
    // Where the socket is when it can't be below the directory for temporary files.
    std::unique_ptr<QTemporaryDir> m_socketDirectory;
    QLocalServer m_reportServer;
    QLocalSocket *m_reportConnection = nullptr;
    QEventLoop m_eventLoop;
    DatagramBuffer m_buffer;
    Cancellation *m_cancellation;
    // Set by the first thing that ends the attempt, perhaps before the event loop runs.
    std::optional<int> m_code;
    int m_crashSignal = 0;
};

} // namespace Morvex
