#include "runner/processend.h"

#include "runner/scriptengine.h"
#include "shared/system/clock.h"
#include "test/testresult.h"

#include <QElapsedTimer>
#include <QSocketNotifier>

#include <csignal>
#include <cstdio>
#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

namespace Morvex {
namespace {

// How long a script may take to come to its event loop once it is to end.
const unsigned int graceSeconds = 1;

struct
{
    TestResult *result = nullptr;
    const ScriptEngine *engine = nullptr;
    pid_t process = 0;
    int wakeUp = -1;
} watched;

// A child that has not begun its own program yet has this state too, but ends for itself.
bool isForked()
{
    return ::getpid() != watched.process;
}

// The event loop logs and ends the process. A script that doesn't turn it is ended all the same.
void handleTermination(int)
{
    if (isForked()) {
        ::signal(SIGTERM, SIG_DFL);
        ::raise(SIGTERM);
        return;
    }
    ::signal(SIGALRM, SIG_DFL);
    ::alarm(graceSeconds);
    const quint64 one = 1;
    [[maybe_unused]] const ssize_t written = ::write(watched.wakeUp, &one, sizeof one);
}

void terminate()
{
    watched.result->addResult(currentLocalTime(), TestResult::WARNING,
                              QStringLiteral("The test case is ended while this call is running"),
                              QString(), watched.engine->currentStack());
    // Closes the reports that this process writes.
    watched.result->setReportGenerator(nullptr);
    std::fflush(nullptr);
    std::signal(SIGTERM, SIG_DFL);
    std::raise(SIGTERM);
}

} // namespace

bool isTerminationRequested()
{
    pollfd waited = {watched.wakeUp, POLLIN, 0};
    return ::poll(&waited, 1, 0) > 0;
}

void pauseScript(int milliseconds)
{
    QElapsedTimer timer;
    timer.start();
    for (int rest = milliseconds;;) {
        pollfd waited = {watched.wakeUp, POLLIN, 0};
        if (::poll(&waited, 1, rest) > 0 && watched.result)
            terminate();
        rest = static_cast<int>(qMax<qint64>(0, milliseconds - timer.elapsed()));
        if (rest == 0)
            return;
    }
}

void serveTermination()
{
    pauseScript(0);
}

ProcessEndWatch::ProcessEndWatch(TestResult *result, const ScriptEngine &engine)
{
    watched = {result, &engine, ::getpid(), ::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)};
    if (watched.wakeUp < 0)
        return;
    m_notifier = std::make_unique<QSocketNotifier>(watched.wakeUp, QSocketNotifier::Read);
    QObject::connect(m_notifier.get(), &QSocketNotifier::activated, terminate);
    std::signal(SIGTERM, handleTermination);
}

ProcessEndWatch::~ProcessEndWatch()
{
    watched.result = nullptr;
    if (!m_notifier)
        return;
    std::signal(SIGTERM, SIG_DFL);
    m_notifier.reset();
    ::close(watched.wakeUp);
    watched.wakeUp = -1;
}

} // namespace Morvex
