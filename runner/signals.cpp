#include "runner/signals.h"

#include "runner/messages.h"
#include "test/cancellation.h"

#include <csignal>
#include <unistd.h>

namespace Morvex {
namespace {

Cancellation *signalledCancellation = nullptr;

pid_t signalledProcess = 0;

void handleSignal(int number)
{
    // A child that has not begun its own program yet shares what the request would wake up.
    if (::getpid() != signalledProcess) {
        ::signal(number, SIG_DFL);
        ::raise(number);
        return;
    }
    if (signalledCancellation->isRequested()) {
        signalledCancellation->killRunningAttempt();
        ::_exit(ExitInterrupted);
    }
    signalledCancellation->request();
}

// A closed terminal ends a run like a request.
const int signalNumbers[] = {SIGINT, SIGTERM, SIGHUP};

void setHandler(void (*handler)(int))
{
    for (const int number : signalNumbers) {
        struct sigaction before = {};
        ::sigaction(number, nullptr, &before);
        // As of a program that was started with nohup.
        if (before.sa_handler == SIG_IGN)
            continue;
        struct sigaction action = {};
        action.sa_handler = handler;
        action.sa_flags = SA_RESTART;
        ::sigaction(number, &action, nullptr);
    }
}

} // namespace

CancelOnSignals::CancelOnSignals(Cancellation *cancellation)
{
    signalledCancellation = cancellation;
    signalledProcess = ::getpid();
    setHandler(handleSignal);
}

CancelOnSignals::~CancelOnSignals()
{
    setHandler(SIG_DFL);
    signalledCancellation = nullptr;
}

} // namespace Morvex
