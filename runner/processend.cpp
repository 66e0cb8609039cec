#include "runner/processend.h"

#include "runner/messages.h"
#include "runner/scriptengine.h"
#include "runner/windowsystem.h"
#include "shared/clock.h"
#include "test/testresult.h"

#include <QSocketNotifier>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <poll.h>
#include <pthread.h>
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
    pthread_t thread = {};
    int wakeUp = -1;
} watched;

// A process that the application has forked has this state too, but ends for itself.
bool isForked()
{
    return ::getpid() != watched.process;
}

// The last entry. Then the reports that this process writes are closed.
void end(TestResult::ResultType type, const char *message)
{
    watched.result->addResult(currentLocalTime(), type, QString::fromLatin1(message), QString(),
                              watched.engine->currentStack(), QString(), -1);
    watched.result->setReportGenerator(nullptr);
    std::fflush(nullptr);
}

void handleExit()
{
    if (!watched.result || isForked())
        return;
    // The log belongs to the main thread.
    if (::pthread_equal(::pthread_self(), watched.thread))
        end(TestResult::FATAL, "The application ended the process");
    ::_exit(ExitUnusable);
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
    end(TestResult::WARNING, "The test case is ended while this call is running");
    std::signal(SIGTERM, SIG_DFL);
    std::raise(SIGTERM);
}

} // namespace

void serveTermination()
{
    pollfd waited = {watched.wakeUp, POLLIN, 0};
    if (watched.result && watched.wakeUp >= 0 && ::poll(&waited, 1, 0) > 0)
        terminate();
}

ProcessEndWatch::ProcessEndWatch(TestResult *result, const ScriptEngine &engine)
{
    watched = {result, &engine, ::getpid(), ::pthread_self(),
               ::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)};
    std::atexit(handleExit);
    std::at_quick_exit(handleExit);
    if (watched.wakeUp < 0)
        return;
    listen();
    setWindowSystemCallback([this] { listen(); });
    std::signal(SIGTERM, handleTermination);
}

void ProcessEndWatch::listen()
{
    m_notifier = std::make_unique<QSocketNotifier>(watched.wakeUp, QSocketNotifier::Read);
    QObject::connect(m_notifier.get(), &QSocketNotifier::activated, terminate);
}

ProcessEndWatch::~ProcessEndWatch()
{
    watched.result = nullptr;
    if (!m_notifier)
        return;
    std::signal(SIGTERM, SIG_DFL);
    setWindowSystemCallback(nullptr);
    m_notifier.reset();
    ::close(watched.wakeUp);
}

} // namespace Morvex
