#include "runner/processsetup.h"

#include <QDir>
#include <QFile>

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace Morvex {
namespace {

void openStandardDescriptors()
{
    // The lowest number that is free is the one that is missing.
    for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (::fcntl(descriptor, F_GETFD) < 0 && errno == EBADF) [[maybe_unused]]
            const int opened = ::open("/dev/null", O_RDWR);
    }
}

void ignore(int) {}

// By a handler, since children would inherit an ignored signal.
void survive(int signal)
{
    struct sigaction before = {};
    ::sigaction(signal, nullptr, &before);
    if (before.sa_handler == SIG_IGN)
        return;
    struct sigaction action = {};
    action.sa_handler = ignore;
    action.sa_flags = SA_RESTART;
    ::sigaction(signal, &action, nullptr);
}

void unblock(int signal)
{
    sigset_t signals;
    ::sigemptyset(&signals);
    ::sigaddset(&signals, signal);
    ::pthread_sigmask(SIG_UNBLOCK, &signals, nullptr);
}

} // namespace

void setUpProcess()
{
    openStandardDescriptors();
    survive(SIGPIPE);
    survive(SIGXFSZ);
    unblock(SIGCHLD);
}

void makeVariableAbsolute(const char *name)
{
    if (!qEnvironmentVariableIsEmpty(name))
        qputenv(name, QFile::encodeName(
                          QDir::current().absoluteFilePath(QFile::decodeName(qgetenv(name)))));
}

} // namespace Morvex
