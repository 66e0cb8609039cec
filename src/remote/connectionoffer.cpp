#include "remote/connectionoffer.h"

#include <QElapsedTimer>
#include <QFile>
#include <QRandomGenerator>

#include <cerrno>
#include <cstring>
#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace Morvex {
namespace {

const int backlog = 128;
// A caller says who it is at once.
const int helloTimeoutMs = 3000;

QByteArray madeUpToken()
{
    quint32 words[8];
    QRandomGenerator::system()->fillRange(words);
    return QByteArray(reinterpret_cast<const char *>(words), sizeof words).toHex();
}

// The process at the other end; 0 for one of another user.
pid_t callerOf(int descriptor)
{
    ucred peer = {};
    socklen_t size = sizeof peer;
    const bool isKnown = ::getsockopt(descriptor, SOL_SOCKET, SO_PEERCRED, &peer, &size) == 0;
    return isKnown && peer.uid == ::geteuid() ? peer.pid : 0;
}

bool receiveHello(MessageChannel *channel, Message *hello)
{
    QElapsedTimer timer;
    timer.start();
    MessageChannel::Outcome outcome = MessageChannel::TimedOut;
    // A signal ends a wait early.
    for (qint64 left = helloTimeoutMs; outcome == MessageChannel::TimedOut && left > 0;
         left = helloTimeoutMs - timer.elapsed())
        outcome = channel->receive(hello, static_cast<int>(left));
    return outcome == MessageChannel::Received && hello->type == Message::Hello;
}

} // namespace

ConnectionOffer::ConnectionOffer(const QString &socketPath)
    : m_path(socketPath)
    , m_token(madeUpToken())
{
}

QString ConnectionOffer::listen()
{
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    const QByteArray path = QFile::encodeName(m_path);
    if (path.size() >= static_cast<int>(sizeof address.sun_path))
        return QStringLiteral("the path '%1' is too long for a socket").arg(m_path);
    std::memcpy(address.sun_path, path.constData(), static_cast<std::size_t>(path.size()));
    m_descriptor = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (m_descriptor < 0 ||
        ::bind(m_descriptor, reinterpret_cast<const sockaddr *>(&address), sizeof address) != 0 ||
        ::chmod(path.constData(), S_IRUSR | S_IWUSR) != 0 || ::listen(m_descriptor, backlog) != 0)
        return QStringLiteral("the socket '%1' can't be made: %2")
            .arg(m_path, QString::fromLocal8Bit(std::strerror(errno)));
    return {};
}

ConnectionOffer::~ConnectionOffer()
{
    if (m_descriptor >= 0)
        ::close(m_descriptor);
    QFile::remove(m_path);
}

ConnectionOffer::Caller ConnectionOffer::waitForCaller(int timeout)
{
    Caller caller;
    pollfd waited = {m_descriptor, POLLIN, 0};
    if (m_descriptor < 0 || ::poll(&waited, 1, timeout) <= 0)
        return caller;
    const int descriptor = ::accept4(m_descriptor, nullptr, nullptr, SOCK_CLOEXEC);
    if (descriptor < 0)
        return caller;
    auto channel = std::make_unique<MessageChannel>(descriptor);
    const pid_t process = callerOf(descriptor);
    Message hello;
    if (process == 0 || !receiveHello(channel.get(), &hello) ||
        hello.values.value(0).toByteArray() != m_token)
        return caller;
    if (hello.number != protocolVersion) {
        caller.error = QStringLiteral("the agent in '%1' is one of another version (%2, not %3)")
                           .arg(hello.values.value(3).toString(), QString::number(hello.number),
                                QString::number(protocolVersion));
        return caller;
    }
    caller.processId = process;
    caller.executable = hello.values.value(3).toString();
    caller.channel = std::move(channel);
    return caller;
}

} // namespace Morvex
