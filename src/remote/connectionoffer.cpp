#include "remote/connectionoffer.h"

#include <QFile>
#include <QRandomGenerator>

#include <cerrno>
#include <cstring>
#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>
#include <vector>

namespace Morvex {
namespace {

const int backlog = 128;
// A caller says who it is at once, but may be stopped before.
const int maxSilenceMs = 30000;
const int maxSilent = 64;

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
    m_descriptor = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
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
    // This is asked for at each step of a script.
    if (!waitForNews(timeout) && m_silent.empty())
        return {};
    acceptAll();
    for (auto silent = m_silent.begin(); silent != m_silent.end();) {
        MessageChannel::Outcome outcome;
        Caller caller = takeHello(&*silent, &outcome);
        if (outcome == MessageChannel::TimedOut && silent->age.elapsed() < maxSilenceMs) {
            ++silent;
            continue;
        }
        silent = m_silent.erase(silent);
        if (caller.channel || !caller.error.isEmpty())
            return caller;
    }
    return {};
}

bool ConnectionOffer::waitForNews(int timeout) const
{
    std::vector<pollfd> waited{{m_descriptor, POLLIN, 0}};
    for (const Silent &silent : m_silent)
        waited.push_back({silent.channel->descriptor(), POLLIN, 0});
    return ::poll(waited.data(), waited.size(), timeout) > 0;
}

void ConnectionOffer::acceptAll()
{
    // More come with the next call.
    for (int count = 0; m_descriptor >= 0 && count < maxSilent; ++count) {
        const int descriptor = ::accept4(m_descriptor, nullptr, nullptr, SOCK_CLOEXEC);
        if (descriptor < 0)
            return;
        Silent silent;
        silent.channel = std::make_unique<MessageChannel>(descriptor);
        silent.processId = callerOf(descriptor);
        silent.age.start();
        if (silent.processId != 0)
            m_silent.push_back(std::move(silent));
        // The one that has been silent for longest.
        if (m_silent.size() > maxSilent)
            m_silent.pop_front();
    }
}

ConnectionOffer::Caller ConnectionOffer::takeHello(Silent *silent,
                                                   MessageChannel::Outcome *outcome) const
{
    Caller caller;
    Message hello;
    *outcome = silent->channel->receive(&hello, 0);
    if (*outcome != MessageChannel::Received || hello.type != Message::Hello ||
        hello.values.value(0).toByteArray() != m_token)
        return caller;
    if (hello.number != protocolVersion) {
        caller.error = QStringLiteral("the agent in '%1' is one of another version (%2, not %3)")
                           .arg(hello.values.value(3).toString(), QString::number(hello.number),
                                QString::number(protocolVersion));
        return caller;
    }
    caller.processId = silent->processId;
    caller.executable = hello.values.value(3).toString();
    caller.channel = std::move(silent->channel);
    return caller;
}

} // namespace Morvex
