#include "runner/failurepause.h"

#include "objectmodel/inspector.h"
#include "runner/processend.h"
#include "test/report/resultkinds.h"

#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <termios.h>
#include <unistd.h>

namespace Morvex {
namespace {

const char variable[] = "MORVEX_PAUSE_ON_FAILURE";
const int waitStepMs = 100;
const char interruptKey = 3;

// The terminal of this process, which gives each key at once, until the end of this object's life.
class Terminal
{
public:
    Terminal()
        : m_descriptor(::open("/dev/tty", O_RDWR | O_CLOEXEC))
    {
        // A test case is not in the group that the terminal belongs to, which would stop it.
        sigset_t stopping;
        sigemptyset(&stopping);
        sigaddset(&stopping, SIGTTOU);
        ::pthread_sigmask(SIG_BLOCK, &stopping, &m_mask);
        m_group = ::tcgetpgrp(m_descriptor);
        ::tcsetpgrp(m_descriptor, ::getpgrp());
        ::tcgetattr(m_descriptor, &m_settings);
        termios settings = m_settings;
        settings.c_lflag &= ~static_cast<tcflag_t>(ICANON | ECHO | ISIG);
        settings.c_cc[VMIN] = 0;
        settings.c_cc[VTIME] = 0;
        ::tcsetattr(m_descriptor, TCSAFLUSH, &settings);
    }

    ~Terminal()
    {
        ::tcsetattr(m_descriptor, TCSADRAIN, &m_settings);
        ::tcsetpgrp(m_descriptor, m_group);
        ::pthread_sigmask(SIG_SETMASK, &m_mask, nullptr);
        ::close(m_descriptor);
    }

    Terminal(const Terminal &) = delete;
    Terminal &operator=(const Terminal &) = delete;

    void print(const char *text)
    {
        [[maybe_unused]] const ssize_t written = ::write(m_descriptor, text, std::strlen(text));
    }

    // The one that had the terminal before.
    pid_t group() const { return m_group; }

    // 0 when none was pressed in time, -1 when the terminal is closed.
    int key(int timeoutMs)
    {
        if (m_descriptor < 0)
            return -1;
        pollfd waited = {m_descriptor, POLLIN, 0};
        char key = 0;
        if (::poll(&waited, 1, timeoutMs) <= 0)
            return 0;
        return ::read(m_descriptor, &key, 1) == 1 ? key : -1;
    }

private:
    int m_descriptor;
    pid_t m_group = 0;
    sigset_t m_mask = {};
    termios m_settings = {};
};

void waitForKey()
{
    Terminal terminal;
    terminal.print("morvexrunner: paused after a failure, press a key to go on\n");
    int key = 0;
    while (key == 0 && !isTerminationRequested())
        key = terminal.key(waitStepMs);
    if (key == interruptKey)
        ::kill(-terminal.group(), SIGINT);
}

bool hasTerminal()
{
    const int terminal = ::open("/dev/tty", O_RDWR | O_CLOEXEC);
    if (terminal < 0)
        return false;
    const bool isInForeground = ::tcgetpgrp(terminal) == ::getpgrp();
    ::close(terminal);
    return isInForeground;
}

} // namespace

QString setPauseOnFailure(bool isWanted)
{
    qunsetenv(variable);
    if (!isWanted)
        return {};
    if (!hasTerminal())
        return QStringLiteral(
            "--pause-on-failure needs a terminal that it is in the foreground of");
    qputenv(variable, "1");
    return {};
}

void pauseAfter(TestResult::ResultType type)
{
    if (!isFailure(type) || !qEnvironmentVariableIsSet(variable) || !Inspector::self())
        return;
    waitForKey();
    serveTermination();
}

} // namespace Morvex
