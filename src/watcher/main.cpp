// Starts a program for a test case and ends it, with all that it has started, when the test case
// comes to its end, in whatever way that happens.
//
// morvexwatcher DIRECTORY WORKING_DIRECTORY [PROGRAM ARGUMENTS...]
//
// The directory is made at first and removed at the end; it is empty for an application, whose
// output is shown. The test case is at the other end of descriptor 3: it gets reports there of what
// becomes of the program, says by any byte that the program may start, asks by further ones for
// what it has written, and has come to its end when it has closed it. Descriptor 4 is the memory
// that keeps the output of the program. Descriptor 5, if there is one, is held open until all
// processes have ended: another watcher removes what they write to after that.

#include "output.h"
#include "processes.h"
#include "remote/protocol/environmentnames.h"
#include "removetree.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <fcntl.h>
#include <initializer_list>
#include <poll.h>
#include <string>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/signalfd.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace Morvex;

namespace {

const int control = 3;
const int lifeline = 5;
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
void run(char **arguments, const sigset_t &signals, const Output &output, const Output &errors)
{
    // Otherwise nobody would end it after the watcher was killed.
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    ::signal(SIGPIPE, SIG_DFL);
    ::sigprocmask(SIG_SETMASK, &signals, nullptr);
    ::dup2(output.programEnd(), STDOUT_FILENO);
    ::dup2(errors.programEnd(), STDERR_FILENO);
    const char *workingDirectory = arguments[2];
    if (*workingDirectory && ::chdir(workingDirectory) != 0)
        return;
    ::execvp(arguments[3], arguments + 3);
}

void start(char **arguments, const sigset_t &signals, Output &output, Output &errors)
{
    int failure[2];
    if (::pipe2(failure, O_CLOEXEC) != 0)
        return report("failed", errno, "", 0);
    program = ::fork();
    if (program == 0) {
        run(arguments, signals, output, errors);
        [[maybe_unused]] const ssize_t written = ::write(failure[1], &errno, sizeof errno);
        ::_exit(127);
    }
    const int forkError = errno;
    ::close(failure[1]);
    output.closeProgramEnd();
    errors.closeProgramEnd();
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
            report("ended", process, WCOREDUMP(status) ? "core" : "signal", WTERMSIG(status));
        else
            report("ended", process, "exit", WEXITSTATUS(status));
    }
    if (process < 0 && errno == ECHILD)
        report("empty", 0, "", 0);
}

// False when the test case came to its end before it said so.
bool waitForConsent(int signals)
{
    for (;;) {
        pollfd waited[] = {{control, POLLIN, 0}, {signals, POLLIN, 0}};
        if (::poll(waited, 2, -1) < 0 && errno != EINTR)
            return false;
        char consent;
        if (waited[1].revents)
            return false;
        if (waited[0].revents)
            return ::recv(control, &consent, 1, 0) == 1;
    }
}

// Until the test case has come to its end, or somebody ends this process.
void watch(int signals, Output &output, Output &errors)
{
    for (;;) {
        const short wanted = unsent.empty() ? POLLIN : POLLIN | POLLOUT;
        const bool isHeldUp = output.isHeldUp() || errors.isHeldUp();
        pollfd waited[] = {{control, wanted, 0},
                           {signals, POLLIN, 0},
                           output.wanted(),
                           errors.wanted(),
                           {isHeldUp ? STDERR_FILENO : -1, POLLOUT, 0}};
        if (::poll(waited, 5, -1) < 0 && errno != EINTR)
            return;
        // What was written before an end is there when the end is reported.
        output.drain();
        errors.drain();
        output.show();
        errors.show();
        signalfd_siginfo signal = {};
        if (waited[1].revents && ::read(signals, &signal, sizeof signal) > 0) {
            if (signal.ssi_signo != SIGCHLD)
                return;
            reap();
        }
        if (waited[0].revents & ~POLLOUT) {
            char question;
            if (::recv(control, &question, 1, MSG_DONTWAIT) != 1)
                return;
            // What the program wrote before it was asked.
            output.drain();
            errors.drain();
            report("drained", 0, "", 0);
        }
        sendReports();
    }
}

// Null when there is none.
OutputMemory *outputMemory()
{
    void *memory = ::mmap(nullptr, sizeof(OutputMemory), PROT_READ | PROT_WRITE, MAP_SHARED,
                          OutputMemory::descriptor, 0);
    ::close(OutputMemory::descriptor);
    return memory == MAP_FAILED ? nullptr : static_cast<OutputMemory *>(memory);
}

// From the making of the directory to its removal.
void serve(char **arguments, int signals, const sigset_t &signalsBefore)
{
    OutputMemory *memory = outputMemory();
    // What runs beside an application is of no interest.
    const bool isApplication = !*arguments[1];
    Output output(memory ? &memory->standardOutput : nullptr, isApplication);
    Output errors(memory ? &memory->standardError : nullptr, isApplication);
    report("ready", 0, "", 0);
    if (arguments[3]) {
        if (!waitForConsent(signals))
            return;
        start(arguments, signalsBefore, output, errors);
    }
    output.closeProgramEnd();
    errors.closeProgramEnd();
    watch(signals, output, errors);
    endDescendants();
}

} // namespace

int main(int argc, char **argv)
{
    if (argc < 3 || ::fcntl(control, F_SETFD, FD_CLOEXEC) != 0) {
        std::fputs("morvexwatcher is started by morvexrunner\n", stderr);
        return 2;
    }
    ::fcntl(lifeline, F_SETFD, FD_CLOEXEC);
    // It leads one already, unless somebody else has started it.
    ::setsid();
    ::prctl(PR_SET_CHILD_SUBREAPER, 1);
    ::signal(SIGPIPE, SIG_IGN);
    sigset_t signals;
    sigset_t before;
    ::sigemptyset(&signals);
    for (const int signal : {SIGCHLD, SIGTERM, SIGINT, SIGHUP})
        ::sigaddset(&signals, signal);
    ::sigprocmask(SIG_BLOCK, &signals, &before);
    const int descriptor = ::signalfd(-1, &signals, SFD_CLOEXEC | SFD_NONBLOCK);
    const char *directory = argv[1];
    if (*directory && ::mkdir(directory, S_IRWXU) != 0) {
        report("failed", errno, "directory", 0);
        return 1;
    }
    serve(argv, descriptor, before);
    if (*directory) {
        endOthersWith((socketVariable + ('=' + std::string(directory)) + '/').c_str());
        removeTree(directory);
    }
    return 0;
}
