#include "remote/watchedprocess.h"

#include <QElapsedTimer>
#include <QFile>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace Morvex {
namespace {

// Where the watcher looks for its end of the connection.
const int controlDescriptor = 3;
const int watcherEndTimeoutMs = 15000;
// The ends of all processes of a program that starts one after the other would grow without end.
const int maxEnds = 1000;
const int maxLine = 1000;

QString errorText(int error)
{
    return QString::fromLocal8Bit(std::strerror(error));
}

std::vector<char *> pointersTo(QList<QByteArray> &texts)
{
    std::vector<char *> pointers;
    for (QByteArray &text : texts)
        pointers.push_back(text.data());
    pointers.push_back(nullptr);
    return pointers;
}

QList<QByteArray> encoded(const QStringList &texts)
{
    QList<QByteArray> encodedTexts;
    for (const QString &text : texts)
        encodedTexts += QFile::encodeName(text);
    return encodedTexts;
}

// Returns the process; negative, with errno set, on failure.
pid_t spawn(QList<QByteArray> command, QList<QByteArray> environment, int control)
{
    posix_spawn_file_actions_t actions;
    posix_spawnattr_t attributes;
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawnattr_init(&attributes);
    ::posix_spawn_file_actions_adddup2(&actions, control, controlDescriptor);
    ::posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    // Standard output may be that of a report.
    ::posix_spawn_file_actions_adddup2(&actions, STDERR_FILENO, STDOUT_FILENO);
    sigset_t signals;
    ::sigemptyset(&signals);
    ::posix_spawnattr_setsigmask(&attributes, &signals);
    ::sigfillset(&signals);
    ::posix_spawnattr_setsigdefault(&attributes, &signals);
    ::posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    pid_t process = -1;
    errno = ::posix_spawn(&process, command.constFirst().constData(), &actions, &attributes,
                          pointersTo(command).data(), pointersTo(environment).data());
    ::posix_spawn_file_actions_destroy(&actions);
    ::posix_spawnattr_destroy(&attributes);
    return errno == 0 ? process : -1;
}

QString endText(const QByteArray &how, int number)
{
    if (how == "exit")
        return QStringLiteral("ended with status %1").arg(number);
    const bool isByOthers =
        number == SIGTERM || number == SIGKILL || number == SIGINT || number == SIGHUP;
    return (isByOthers ? QStringLiteral("ended by signal %1 (%2)")
                       : QStringLiteral("crashed by signal %1 (%2)"))
        .arg(QString::number(number), QString::fromLocal8Bit(::strsignal(number)));
}

} // namespace

WatchedProcess::WatchedProcess(const QString &watcher, const QString &directory,
                               const QStringList &command, const QString &workingDirectory,
                               const QProcessEnvironment &environment)
    : m_command(command.value(0))
{
    int ends[2];
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0) {
        m_error = errorText(errno);
        return;
    }
    m_watcher = spawn(encoded(QStringList{watcher, directory, workingDirectory} + command),
                      encoded(environment.toStringList()), ends[1]);
    if (m_watcher < 0)
        m_error = QStringLiteral("cannot start '%1': %2").arg(watcher, errorText(errno));
    ::close(ends[1]);
    m_control = ends[0];
}

WatchedProcess::~WatchedProcess()
{
    if (m_control >= 0)
        ::close(m_control);
    if (m_watcher > 0)
        endWatcher();
}

// It ends by itself, once all others have.
void WatchedProcess::endWatcher()
{
    QElapsedTimer timer;
    timer.start();
    while (::waitpid(m_watcher, nullptr, WNOHANG) == 0) {
        if (timer.elapsed() > watcherEndTimeoutMs) {
            ::kill(m_watcher, SIGKILL);
            ::waitpid(m_watcher, nullptr, 0);
            return;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
}

void WatchedProcess::update(int timeout)
{
    pollfd waited = {m_control, POLLIN, 0};
    if (m_control < 0 || ::poll(&waited, 1, timeout) <= 0)
        return;
    char bytes[4096];
    const ssize_t size = ::recv(m_control, bytes, sizeof bytes, MSG_DONTWAIT);
    if (size <= 0) {
        // Somebody has killed the watcher; without it nothing is known.
        if (size == 0 || (errno != EAGAIN && errno != EINTR))
            m_hasEnded = true;
        return;
    }
    m_unfinishedLine.append(bytes, static_cast<int>(size));
    int end;
    while ((end = m_unfinishedLine.indexOf('\n')) >= 0) {
        take(m_unfinishedLine.left(end));
        m_unfinishedLine.remove(0, end + 1);
    }
    if (m_unfinishedLine.size() > maxLine)
        m_unfinishedLine.clear();
}

// Lines: "started PID", "failed ERRNO", "ended PID exit|signal NUMBER", "empty", all with more
// words.
void WatchedProcess::take(const QByteArray &line)
{
    const QList<QByteArray> words = line.split(' ');
    if (words.value(0) == "started") {
        m_program = words.value(1).toLongLong();
    } else if (words.value(0) == "failed") {
        m_error = QStringLiteral("cannot start '%1': %2")
                      .arg(m_command, errorText(words.value(1).toInt()));
    } else if (words.value(0) == "ended") {
        const qint64 process = words.value(1).toLongLong();
        if (m_ends.size() >= maxEnds)
            m_ends.clear();
        m_ends.insert(process, endText(words.value(2), words.value(3).toInt()));
    } else if (words.value(0) == "empty") {
        m_hasEnded = true;
    }
}

} // namespace Morvex
