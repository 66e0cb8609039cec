#include "agent/callingcard.h"

#include "remote/protocol/environmentnames.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

#include <algorithm>
#include <cstring>
#include <fcntl.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace Morvex {
namespace {

QByteArray peerOf(int descriptor)
{
    sockaddr_un address = {};
    socklen_t size = sizeof address;
    const bool isLocal =
        ::getpeername(descriptor, reinterpret_cast<sockaddr *>(&address), &size) == 0 &&
        address.sun_family == AF_UNIX;
    return isLocal
               ? QByteArray(address.sun_path,
                            static_cast<int>(::strnlen(address.sun_path, sizeof address.sun_path)))
               : QByteArray();
}

bool isOfThisUser(int descriptor)
{
    ucred peer = {};
    socklen_t size = sizeof peer;
    return ::getsockopt(descriptor, SOL_SOCKET, SO_PEERCRED, &peer, &size) == 0 &&
           peer.uid == ::geteuid();
}

// In a program without standard output the first free number is that of it.
int newSocket()
{
    const int descriptor = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (descriptor < 0 || descriptor > STDERR_FILENO)
        return descriptor;
    const int moved = ::fcntl(descriptor, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    ::close(descriptor);
    return moved;
}

} // namespace

CallingCard CallingCard::fromEnvironment()
{
    CallingCard card;
    card.m_socket = qgetenv(socketVariable);
    card.m_token = qgetenv(tokenVariable);
    card.m_directory = qgetenv(directoryVariable);
    return card;
}

bool CallingCard::isPresented() const
{
    const QStringList descriptors =
        QDir(QStringLiteral("/proc/self/fd")).entryList(QDir::AllEntries | QDir::System);
    return std::any_of(descriptors.begin(), descriptors.end(), [this](const QString &descriptor) {
        bool isNumber = false;
        const int number = descriptor.toInt(&isNumber);
        return isNumber && peerOf(number) == m_socket;
    });
}

int CallingCard::connectToRunner() const
{
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    if (m_socket.size() >= static_cast<int>(sizeof address.sun_path))
        return -1;
    std::memcpy(address.sun_path, m_socket.constData(), static_cast<std::size_t>(m_socket.size()));
    const int descriptor = newSocket();
    if (descriptor < 0)
        return -1;
    const bool isConnected =
        ::connect(descriptor, reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0;
    if (isConnected && isOfThisUser(descriptor))
        return descriptor;
    ::close(descriptor);
    return -1;
}

Message CallingCard::hello() const
{
    Message hello;
    hello.type = Message::Hello;
    hello.number = protocolVersion;
    hello.values = {m_token, static_cast<qint64>(::getpid()), static_cast<qint64>(::getppid()),
                    QFileInfo(QStringLiteral("/proc/self/exe")).symLinkTarget(),
                    QString::fromLatin1(qVersion())};
    return hello;
}

} // namespace Morvex
