#include "remote/remotesession.h"

#include <QElapsedTimer>

#include <limits>

namespace Morvex {
namespace {

const int sendTimeoutMs = 10000;
// More at once are sent with the next request.
const int releasesPerMessage = 100;

bool isAnswer(const Message &message)
{
    return message.type == Message::Answer || message.type == Message::Failure ||
           message.type == Message::Unfinished;
}

bool givesReason(Message::Operation operation)
{
    return operation == Message::FindObject || operation == Message::SetProperty ||
           operation == Message::InvokeMethod || operation == Message::CallFunction;
}

} // namespace

RemoteSession::RemoteSession(std::unique_ptr<MessageChannel> channel,
                             const std::function<QString(bool)> &describeEnd)
    : m_channel(std::move(channel))
    , m_describeEnd(describeEnd)
{
    m_channel->setMaxReceived(MessageChannel::maxSize);
}

RemoteSession::~RemoteSession() = default;

void RemoteSession::release(quint32 handle)
{
    m_releases += handle;
    if (m_releases.size() >= releasesPerMessage)
        sendReleases();
}

void RemoteSession::sendReleases()
{
    if (m_releases.isEmpty() || !m_failure.isEmpty())
        return;
    Message message;
    message.type = Message::Release;
    message.values.swap(m_releases);
    // A part of a message makes all that follows unreadable.
    if (!m_channel->send(message, sendTimeoutMs))
        m_channel->shutDown();
}

void RemoteSession::close(const QString &reason)
{
    if (m_failure.isEmpty())
        m_failure = reason;
    m_channel->shutDown();
}

RemoteSession::Reply RemoteSession::request(Message::Operation operation,
                                            const QVariantList &values, int duration)
{
    const Reply reply = exchange(operation, values, duration);
    m_lastError = reply.isRefused && givesReason(operation) ? QString() : reply.error;
    return reply;
}

RemoteSession::Reply RemoteSession::exchange(Message::Operation operation,
                                             const QVariantList &values, int duration)
{
    if (!m_failure.isEmpty())
        return {m_failure, {}};
    sendReleases();
    Message message;
    message.type = Message::Request;
    message.operation = operation;
    message.number = ++m_lastNumber;
    message.values = values;
    const QByteArray bytes = message.encoded();
    if (bytes.isNull())
        return {QStringLiteral("what the application is asked for is too large to be sent to it"),
                {}};
    if (!m_channel->send(bytes, sendTimeoutMs))
        return handleLoss(MessageChannel::Closed);
    const int bound = m_bound > std::numeric_limits<int>::max() - duration
                          ? std::numeric_limits<int>::max()
                          : m_bound + duration;
    return waitForAnswer(message.number, bound);
}

RemoteSession::Reply RemoteSession::waitForAnswer(quint32 number, int timeout)
{
    QElapsedTimer timer;
    timer.start();
    Message message;
    for (;;) {
        const qint64 left = timeout - timer.elapsed();
        const MessageChannel::Outcome outcome = receive(&message, left);
        if (outcome == MessageChannel::Closed || outcome == MessageChannel::Broken)
            return handleLoss(outcome);
        if (outcome == MessageChannel::Received) {
            if (message.type == Message::Bye)
                m_hasSaidBye = true;
            else if (!isAnswer(message))
                return handleLoss(MessageChannel::Broken);
            // That of a request which was given up may still come.
            else if (message.number == number)
                break;
        }
        // Also of one that sends without end what was not asked for.
        if (left <= 0)
            return {QStringLiteral("the application has not answered for %1 seconds")
                        .arg(timeout / 1000.0),
                    {}};
    }
    if (message.type == Message::Failure) {
        const QString reason = message.values.value(0).toString();
        return {
            reason.isEmpty() ? QStringLiteral("the application gave no reason") : reason, {}, true};
    }
    return {{}, message.values};
}

// Waits for a part of the time at most when there is something else to do.
MessageChannel::Outcome RemoteSession::receive(Message *message, qint64 timeout)
{
    const qint64 step = m_idle ? qMin<qint64>(timeout, m_idleStep) : timeout;
    const MessageChannel::Outcome outcome =
        m_channel->receive(message, static_cast<int>(qMax<qint64>(step, 0)));
    if (outcome == MessageChannel::TimedOut && m_idle)
        m_idle();
    return outcome;
}

RemoteSession::Reply RemoteSession::handleLoss(MessageChannel::Outcome outcome)
{
    if (m_failure.isEmpty())
        close(outcome == MessageChannel::Broken
                  ? QStringLiteral("the application has sent what is no answer; the connection to "
                                   "it is closed")
                  : m_describeEnd(m_hasSaidBye));
    return {m_failure, {}};
}

} // namespace Morvex
