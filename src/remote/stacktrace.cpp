#include "remote/stacktrace.h"

#include <QElapsedTimer>
#include <QProcess>
#include <QStandardPaths>

namespace Morvex {
namespace {

const int killTimeoutMs = 10000;
const int waitStepMs = 50;
const int maxSize = 64 * 1024;

// Without what it prints about the libraries.
QString threadsOf(const QString &text)
{
    const int begin = text.indexOf(QLatin1String("\nThread "));
    return begin < 0 ? QString() : text.mid(begin + 1, maxSize).trimmed();
}

} // namespace

QString stackTrace(qint64 processId, int timeout, const std::function<void()> &idle)
{
    const QString gdb = QStandardPaths::findExecutable(QStringLiteral("gdb"));
    if (gdb.isEmpty())
        return {};
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    // It would fetch what is missing from servers.
    environment.remove(QStringLiteral("DEBUGINFOD_URLS"));
    process.setProcessEnvironment(environment);
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(gdb, {QStringLiteral("-nx"), QStringLiteral("-batch"), QStringLiteral("-ex"),
                        QStringLiteral("thread apply all backtrace 40"), QStringLiteral("-p"),
                        QString::number(processId)});
    process.closeWriteChannel();
    QElapsedTimer timer;
    timer.start();
    while (!process.waitForFinished(waitStepMs) && process.state() != QProcess::NotRunning) {
        if (idle)
            idle();
        if (timer.elapsed() < timeout)
            continue;
        process.kill();
        process.waitForFinished(killTimeoutMs);
        return {};
    }
    return threadsOf(QString::fromLocal8Bit(process.readAll()));
}

} // namespace Morvex
