#include "remote/protocol/messagechannel.h"

#include <QElapsedTimer>
#include <QtEndian>

#include <cerrno>
#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace Morvex {
namespace {

const int headerSize = 4;
const int readSize = 64 * 1024;

bool isTransient(int error)
{
    return error == EAGAIN || error == EWOULDBLOCK || error == EINTR;
}

// Whether the descriptor is ready for one of the events, or has an end to report.
bool waitFor(int descriptor, short events, int timeout)
{
    pollfd waited = {descriptor, events, 0};
    return ::poll(&waited, 1, timeout) > 0;
}

} // namespace

MessageChannel::MessageChannel(int descriptor)
    : m_descriptor(descriptor)
{
    ::fcntl(descriptor, F_SETFL, ::fcntl(descriptor, F_GETFL) | O_NONBLOCK);
}

MessageChannel::~MessageChannel()
{
    ::close(m_descriptor);
}

void MessageChannel::shutDown()
{
    ::shutdown(m_descriptor, SHUT_RDWR);
}

bool MessageChannel::send(const Message &message, int timeout)
{
    const QByteArray bytes = message.encoded();
    if (bytes.size() > maxSize)
        return false;
    uchar header[headerSize];
    qToLittleEndian(static_cast<quint32>(bytes.size()), header);
    const std::lock_guard<std::mutex> lock(m_sending);
    return write(reinterpret_cast<const char *>(header), headerSize, timeout) &&
           write(bytes.constData(), bytes.size(), timeout);
}

bool MessageChannel::write(const char *bytes, int size, int timeout)
{
    QElapsedTimer timer;
    timer.start();
    while (size > 0) {
        const ssize_t written =
            ::send(m_descriptor, bytes, static_cast<std::size_t>(size), MSG_NOSIGNAL);
        if (written > 0) {
            bytes += written;
            size -= static_cast<int>(written);
            continue;
        }
        const auto left = static_cast<int>(timeout - timer.elapsed());
        if (!isTransient(errno) || left <= 0)
            return false;
        waitFor(m_descriptor, POLLOUT, left);
    }
    return true;
}

MessageChannel::Outcome MessageChannel::receive(Message *message, int timeout)
{
    QElapsedTimer timer;
    timer.start();
    for (;;) {
        Outcome outcome = takeMessage(message);
        if (outcome != TimedOut)
            return outcome;
        const qint64 left = timeout - timer.elapsed();
        outcome = fill(static_cast<int>(qMax<qint64>(left, 0)));
        if (outcome != Received)
            return outcome;
        // Also when something comes all the time.
        if (left <= 0)
            return takeMessage(message);
    }
}

// TimedOut when more has to come.
MessageChannel::Outcome MessageChannel::takeMessage(Message *message)
{
    if (m_received.size() < headerSize)
        return TimedOut;
    const auto size = qFromLittleEndian<quint32>(m_received.constData());
    if (size > static_cast<quint32>(m_maxReceived))
        return Broken;
    const int end = headerSize + static_cast<int>(size);
    if (m_received.size() < end)
        return TimedOut;
    const bool isMessage = Message::decode(m_received.mid(headerSize, end - headerSize), message);
    m_received.remove(0, end);
    return isMessage ? Received : Broken;
}

// Received when there is more than before. What was promised takes no room until it comes.
MessageChannel::Outcome MessageChannel::fill(int timeout)
{
    if (!waitFor(m_descriptor, POLLIN, timeout))
        return TimedOut;
    const int before = m_received.size();
    m_received.resize(before + readSize);
    const ssize_t count = ::recv(m_descriptor, m_received.data() + before, readSize, 0);
    const int error = errno;
    m_received.resize(before + static_cast<int>(qMax<ssize_t>(count, 0)));
    if (count > 0)
        return Received;
    return count < 0 && isTransient(error) ? TimedOut : Closed;
}

} // namespace Morvex
