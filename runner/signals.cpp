#include "runner/signals.h"

#include "runner/messages.h"
#include "test/cancellation.h"

#include <csignal>
#include <unistd.h>

namespace Morvex {
namespace {

Cancellation *signalledCancellation = nullptr;

void handleSignal(int)
{
    if (signalledCancellation->isRequested()) {
        signalledCancellation->killRunningAttempt();
        ::_exit(ExitInterrupted);
    }
    signalledCancellation->request();
}

void setHandler(void (*handler)(int))
{
    struct sigaction action = {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    ::sigaction(SIGINT, &action, nullptr);
    ::sigaction(SIGTERM, &action, nullptr);
}

} // namespace

CancelOnSignals::CancelOnSignals(Cancellation *cancellation)
{
    signalledCancellation = cancellation;
    setHandler(handleSignal);
}

CancelOnSignals::~CancelOnSignals()
{
    setHandler(SIG_DFL);
    signalledCancellation = nullptr;
}

} // namespace Morvex
