// Starts a program for a test case and ends it, with all that it has started, when the test case
// comes to its end, in whatever way that happens.
//
// morvexwatcher DIRECTORY WORKING_DIRECTORY PROGRAM ARGUMENTS...
//
// The directory is removed at the end. The test case is at the other end of descriptor 3: it gets
// reports there of what becomes of the program, and has come to its end when it has closed it.

#include "processes.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <fcntl.h>
#include <ftw.h>
#include <initializer_list>
#include <poll.h>
#include <string>
#include <sys/prctl.h>
#include <sys/signalfd.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace Morvex;

namespace {

const int control = 3;
// Of reports that the test case has not taken yet, in bytes; later ones of other processes than the
// program are left out.
const std::size_t maxUnsent = 64 * 1024;

std::string unsent;
pid_t program = 0;

// A test case that doesn't listen must not hold up the watch.
void sendReports()
{
    ssize_t sent;
    while (!unsent.empty() &&
           (sent = ::send(control, unsent.data(), unsent.size(), MSG_NOSIGNAL | MSG_DONTWAIT)) > 0)
        unsent.erase(0, static_cast<std::size_t>(sent));
}

void report(const char *event, int number, const char *how, int status)
{
    char line[64];
    std::snprintf(line, sizeof line, "%s %d %s %d\n", event, number, how, status);
    if (unsent.size() < maxUnsent || number == program || number == 0)
        unsent += line;
    sendReports();
}

// In the new process. Returns on failure, with errno set.
void run(char **arguments, const sigset_t &signals)
{
    ::sigprocmask(SIG_SETMASK, &signals, nullptr);
    const char *workingDirectory = arguments[2];
    if (*workingDirectory && ::chdir(workingDirectory) != 0)
        return;
    ::execvp(arguments[3], arguments + 3);
}

void start(char **arguments, const sigset_t &signals)
{
    int failure[2];
    if (::pipe2(failure, O_CLOEXEC) != 0)
        return report("failed", errno, "", 0);
    program = ::fork();
    if (program == 0) {
        run(arguments, signals);
        [[maybe_unused]] const ssize_t written = ::write(failure[1], &errno, sizeof errno);
        ::_exit(127);
    }
    const int forkError = errno;
    ::close(failure[1]);
    int error = 0;
    // Ends when the program is there.
    const bool hasFailed = program > 0 && ::read(failure[0], &error, sizeof error) > 0;
    ::close(failure[0]);
    if (program < 0 || hasFailed)
        report("failed", program < 0 ? forkError : error, "", 0);
    else
        report("started", program, "", 0);
}

void reap()
{
    int status = 0;
    pid_t process;
    while ((process = ::waitpid(-1, &status, WNOHANG)) > 0) {
        if (WIFSIGNALED(status))
            report("ended", process, "signal", WTERMSIG(status));
        else
            report("ended", process, "exit", WEXITSTATUS(status));
    }
    if (process < 0 && errno == ECHILD)
        report("empty", 0, "", 0);
}

// Until the test case has come to its end, or somebody ends this process.
void watch(int signals)
{
    for (;;) {
        const short wanted = unsent.empty() ? POLLIN : POLLIN | POLLOUT;
        pollfd waited[] = {{control, wanted, 0}, {signals, POLLIN, 0}};
        if (::poll(waited, 2, -1) < 0 && errno != EINTR)
            return;
        signalfd_siginfo signal = {};
        if (waited[1].revents && ::read(signals, &signal, sizeof signal) > 0) {
            if (signal.ssi_signo != SIGCHLD)
                return;
            reap();
        }
        if (waited[0].revents & ~POLLOUT)
            return;
        sendReports();
    }
}

int removeEntry(const char *path, const struct stat *, int, FTW *)
{
    [[maybe_unused]] const int removed = ::remove(path);
    return 0;
}

} // namespace

int main(int argc, char **argv)
{
    if (argc < 4 || ::fcntl(control, F_SETFD, FD_CLOEXEC) != 0) {
        std::fputs("morvexwatcher is started by morvexrunner\n", stderr);
        return 2;
    }
    ::setsid();
    ::prctl(PR_SET_CHILD_SUBREAPER, 1);
    sigset_t signals;
    sigset_t before;
    ::sigemptyset(&signals);
    for (const int signal : {SIGCHLD, SIGTERM, SIGINT, SIGHUP})
        ::sigaddset(&signals, signal);
    ::sigprocmask(SIG_BLOCK, &signals, &before);
    const int descriptor = ::signalfd(-1, &signals, SFD_CLOEXEC | SFD_NONBLOCK);
    start(argv, before);
    watch(descriptor);
    endDescendants();
    const int maxOpen = 16;
    ::nftw(argv[1], removeEntry, maxOpen, FTW_DEPTH | FTW_PHYS | FTW_MOUNT);
    return 0;
}
