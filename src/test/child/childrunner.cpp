#include "test/child/childrunner.h"

#include "test/child/testcasedeadline.h"

#include <QProcessEnvironment>

#include <csignal>
#include <sys/prctl.h>
#include <unistd.h>

namespace Morvex {
namespace {

const int terminateTimeoutMs = 3000;
const int killTimeoutMs = 1000;

QProcessEnvironment environmentOfChild(const QDeadlineTimer &deadline)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    addTestCaseDeadline(&environment, deadline);
    environment.insert(QStringLiteral("MORVEX_NOREPORTSUMMARY"), QStringLiteral("1"));
    return environment;
}

} // namespace

ChildRunner::ChildRunner(const QDeadlineTimer &deadline)
{
    setProcessChannelMode(QProcess::ForwardedChannels);
    setProcessEnvironment(environmentOfChild(deadline));
}

void ChildRunner::end()
{
    if (state() == QProcess::NotRunning)
        return;
    signalGroup(SIGTERM);
    if (waitForFinished(terminateTimeoutMs))
        return;
    signalGroup(SIGKILL);
    if (!waitForFinished(killTimeoutMs))
        qWarning("Could not terminate testcase morvexrunner process after timeout");
}

void ChildRunner::killGroup(pid_t processGroup)
{
    if (processGroup > 0)
        ::kill(-processGroup, SIGKILL);
}

void ChildRunner::setupChildProcess()
{
    ::setpgid(0, 0);
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
}

// The process alone in the moment in which it has no group yet.
void ChildRunner::signalGroup(int signal) const
{
    const auto pid = static_cast<pid_t>(processId());
    if (pid > 0 && ::kill(-pid, signal) != 0)
        ::kill(pid, signal);
}

} // namespace Morvex
