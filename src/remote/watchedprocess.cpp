#include "remote/watchedprocess.h"

#include <QElapsedTimer>
#include <QFile>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace Morvex {
namespace {

// Where the watcher looks for its end of the connection, and for what it is to keep open.
const int controlDescriptor = 3;
const int lifelineDescriptor = 5;
const int watcherEndTimeoutMs = 15000;
const int readyTimeoutMs = 10000;
const int drainTimeoutMs = 1000;
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

// What the watcher gets beside its arguments. A descriptor is not there when it is negative.
struct Inherited
{
    int control;
    int output;
    int lifeline;
};

// None of the numbers that the watcher looks for: what is copied to one of them must not be
// overwritten before it is copied itself.
int outOfTheWay(int descriptor)
{
    return descriptor < 0 ? -1 : ::fcntl(descriptor, F_DUPFD_CLOEXEC, lifelineDescriptor + 1);
}

void addDescriptors(posix_spawn_file_actions_t *actions, const Inherited &inherited)
{
    ::posix_spawn_file_actions_adddup2(actions, inherited.control, controlDescriptor);
    if (inherited.output >= 0)
        ::posix_spawn_file_actions_adddup2(actions, inherited.output, OutputMemory::descriptor);
    if (inherited.lifeline >= 0)
        ::posix_spawn_file_actions_adddup2(actions, inherited.lifeline, lifelineDescriptor);
    ::posix_spawn_file_actions_addopen(actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    // Standard output may be that of a report.
    ::posix_spawn_file_actions_adddup2(actions, STDERR_FILENO, STDOUT_FILENO);
}

// In a session of its own at once: the end of the group of this process must not end the watcher.
// Returns the process; negative, with errno set, on failure.
pid_t spawn(QList<QByteArray> command, QList<QByteArray> environment, const Inherited &inherited)
{
    posix_spawn_file_actions_t actions;
    posix_spawnattr_t attributes;
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawnattr_init(&attributes);
    addDescriptors(&actions, inherited);
    sigset_t signals;
    ::sigemptyset(&signals);
    ::posix_spawnattr_setsigmask(&attributes, &signals);
    ::sigfillset(&signals);
    ::posix_spawnattr_setsigdefault(&attributes, &signals);
    ::posix_spawnattr_setflags(&attributes,
                               POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSID);
    pid_t process = -1;
    errno = ::posix_spawn(&process, command.constFirst().constData(), &actions, &attributes,
                          pointersTo(command).data(), pointersTo(environment).data());
    ::posix_spawn_file_actions_destroy(&actions);
    ::posix_spawnattr_destroy(&attributes);
    return errno == 0 ? process : -1;
}

// The signal that has ended the command of a shell, which adds a number to it; 0 for none.
int signalOfShell(int status)
{
    const int shellStatus = 128;
    const int signal = status - shellStatus;
    return signal > 0 && signal < SIGRTMIN ? signal : 0;
}

QString statusText(int status)
{
    const QString text = QStringLiteral("ended with status %1").arg(status);
    const int signal = signalOfShell(status);
    return signal > 0 ? text + QStringLiteral(", as a shell does after signal %1 (%2)")
                                   .arg(QString::number(signal),
                                        QString::fromLocal8Bit(::strsignal(signal)))
                      : text;
}

// The signals by which one process ends another.
bool isByOthers(int signal)
{
    return signal == SIGTERM || signal == SIGKILL || signal == SIGINT || signal == SIGHUP;
}

bool isCrashOfCommand(const QByteArray &how, int status)
{
    const int signal = how == "exit" ? signalOfShell(status) : 0;
    return signal > 0 && !isByOthers(signal);
}

QString endText(const QByteArray &how, int number)
{
    if (how == "exit")
        return statusText(number);
    return (isByOthers(number) ? QStringLiteral("ended by signal %1 (%2)")
                               : QStringLiteral("crashed by signal %1 (%2)"))
        .arg(QString::number(number), QString::fromLocal8Bit(::strsignal(number)));
}

QByteArray lastBytes(const OutputRing &ring)
{
    const quint64 capacity = OutputRing::capacity;
    const quint64 end = ring.written;
    const quint64 begin = end - qMin(end, capacity);
    QByteArray bytes(static_cast<int>(end - begin), Qt::Uninitialized);
    for (quint64 i = begin; i < end; ++i)
        bytes[static_cast<int>(i - begin)] = ring.bytes[i % capacity];
    // What was overwritten meanwhile.
    const quint64 reserved = ring.reserved;
    const quint64 lost = reserved - qMin(reserved, capacity);
    return lost > begin ? bytes.mid(static_cast<int>(qMin(lost - begin, end - begin))) : bytes;
}

} // namespace

WatchedProcess::WatchedProcess(const Options &options)
    : m_command(options.command.value(0))
    , m_directory(options.directory)
{
    int ends[2];
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0) {
        m_error = errorText(errno);
        return;
    }
    makeOutputMemory();
    const Inherited inherited{outOfTheWay(ends[1]), outOfTheWay(m_outputDescriptor),
                              outOfTheWay(options.lifeline)};
    m_watcher =
        spawn(encoded(QStringList{options.watcher, options.directory, options.workingDirectory} +
                      options.command),
              encoded(options.environment.toStringList()), inherited);
    if (m_watcher < 0)
        m_error = QStringLiteral("cannot start '%1': %2").arg(options.watcher, errorText(errno));
    for (const int descriptor :
         {ends[1], m_outputDescriptor, inherited.control, inherited.output, inherited.lifeline}) {
        if (descriptor >= 0)
            ::close(descriptor);
    }
    m_control = ends[0];
    if (m_watcher > 0)
        waitUntilReady();
}

// Without it what the program writes can't be read by the script.
void WatchedProcess::makeOutputMemory()
{
    m_outputDescriptor = ::memfd_create("morvex-output", MFD_CLOEXEC);
    if (m_outputDescriptor < 0 || ::ftruncate(m_outputDescriptor, sizeof(OutputMemory)) != 0)
        return;
    void *memory = ::mmap(nullptr, sizeof(OutputMemory), PROT_READ | PROT_WRITE, MAP_SHARED,
                          m_outputDescriptor, 0);
    m_output = memory == MAP_FAILED ? nullptr : static_cast<OutputMemory *>(memory);
}

void WatchedProcess::waitUntilReady()
{
    QElapsedTimer timer;
    timer.start();
    while (!m_isReady && m_error.isEmpty() && !m_hasEnded && timer.elapsed() < readyTimeoutMs)
        update(static_cast<int>(readyTimeoutMs - timer.elapsed()));
    if (!m_isReady && m_error.isEmpty())
        m_error = QStringLiteral("the watcher of '%1' doesn't run").arg(m_command);
}

void WatchedProcess::allowStart()
{
    const char consent = '\n';
    if (m_control >= 0)
        ::send(m_control, &consent, 1, MSG_NOSIGNAL);
}

WatchedProcess::~WatchedProcess()
{
    end();
    if (m_output)
        ::munmap(m_output, sizeof(OutputMemory));
}

// The watcher takes what there is when it comes to that.
void WatchedProcess::catchUp()
{
    QElapsedTimer timer;
    timer.start();
    m_isDrained = false;
    const char question = '\n';
    if (m_control < 0 || ::send(m_control, &question, 1, MSG_NOSIGNAL | MSG_DONTWAIT) != 1)
        return;
    while (!m_isDrained && !m_isLost && timer.elapsed() < drainTimeoutMs)
        update(drainTimeoutMs);
}

QByteArray WatchedProcess::standardOutput()
{
    catchUp();
    return m_output ? lastBytes(m_output->standardOutput) : QByteArray();
}

QByteArray WatchedProcess::standardError()
{
    catchUp();
    return m_output ? lastBytes(m_output->standardError) : QByteArray();
}

bool WatchedProcess::end()
{
    if (m_control >= 0)
        ::close(m_control);
    m_control = -1;
    const bool isWhole = m_watcher <= 0 || endWatcher();
    m_watcher = -1;
    return isWhole;
}

// It ends by itself, once all others have. False when it was killed.
bool WatchedProcess::endWatcher()
{
    QElapsedTimer timer;
    timer.start();
    int status = 0;
    while (::waitpid(m_watcher, &status, WNOHANG) == 0) {
        if (timer.elapsed() > watcherEndTimeoutMs) {
            ::kill(m_watcher, SIGKILL);
            ::waitpid(m_watcher, nullptr, 0);
            return false;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return WIFEXITED(status);
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
            m_isLost = m_hasEnded = true;
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

// Lines: "ready", "drained", "started PID", "failed ERRNO directory|program", "ended PID
// exit|signal|core NUMBER", "empty", all with more words.
void WatchedProcess::take(const QByteArray &line)
{
    const QList<QByteArray> words = line.split(' ');
    const int number = words.value(1).toInt();
    if (words.value(0) == "ready") {
        m_isReady = true;
    } else if (words.value(0) == "drained") {
        m_isDrained = true;
    } else if (words.value(0) == "started") {
        m_program = number;
        keepEndOf(m_program);
    } else if (words.value(0) == "failed") {
        m_error = words.value(2) == "directory"
                      ? QStringLiteral("the directory '%1' can't be made: %2")
                            .arg(m_directory, errorText(number))
                      : QStringLiteral("cannot start '%1': %2").arg(m_command, errorText(number));
    } else if (words.value(0) == "ended") {
        const QByteArray how = words.value(2);
        const int status = words.value(3).toInt();
        addEnd(number, {endText(how, status), how == "core", isCrashOfCommand(how, status)});
    } else if (words.value(0) == "empty") {
        m_hasEnded = true;
    }
}

void WatchedProcess::addEnd(qint64 process, const End &end)
{
    if (!m_ends.contains(process))
        m_order.enqueue(process);
    m_ends.insert(process, end);
    if (m_order.size() <= maxEnds)
        return;
    const qint64 oldest = m_order.dequeue();
    if (!m_kept.contains(oldest))
        m_ends.remove(oldest);
}

} // namespace Morvex
