#include "remote/remotesession.h"

#include "remote/waitwithin.h"

#include <QElapsedTimer>

#include <limits>

namespace Morvex {
namespace {

// More than anybody does before it is taken.
const int maxRecorded = 20000;
const qint64 maxRecordedBytes = 64ll * 1024 * 1024;
const int sendTimeoutMs = 10000;
const qint64 pongTimeoutMs = 1000;
// More at once are sent with the next request.
const int releasesPerMessage = 100;
// The second one has the usage.
const int maxByes = 2;

bool isAnswer(const Message &message)
{
    return message.type == Message::Answer || message.type == Message::Failure ||
           message.type == Message::Unfinished;
}

// What makes an application do something, so that it may end by it.
bool isAction(Message::Operation operation)
{
    return operation == Message::SetProperty || operation == Message::InvokeMethod ||
           operation == Message::CallFunction || operation == Message::Quit;
}

bool givesReason(Message::Operation operation)
{
    return operation == Message::FindObject || operation == Message::SetProperty ||
           operation == Message::InvokeMethod || operation == Message::CallFunction;
}

} // namespace

RemoteSession::RemoteSession(std::unique_ptr<MessageChannel> channel,
                             const DescribeEnd &describeEnd, const DescribeSilence &describeSilence)
    : m_channel(std::move(channel))
    , m_describeEnd(describeEnd)
    , m_describeSilence(describeSilence)
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
    m_isTorn = m_isTorn || !m_channel->send(message, sendTimeoutMs);
}

void RemoteSession::close(const QString &reason)
{
    if (m_failure.isEmpty())
        m_failure = reason;
    m_isClosed = true;
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
    if (!m_failure.isEmpty()) {
        m_isEndMet = true;
        return {m_failure, {}};
    }
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
    const int bound = boundOf(duration);
    if (!send(bytes, qMin(bound, sendTimeoutMs)))
        return handleLoss(MessageChannel::Closed, operation);
    m_unanswered += message.number;
    return waitForAnswer(message, bound);
}

int RemoteSession::beforeDeadline(int duration) const
{
    const qint64 left = m_deadline.remainingTime();
    return m_deadline.isForever() || duration < left ? duration : static_cast<int>(left / 2);
}

int RemoteSession::boundOf(int duration) const
{
    const qint64 bound = duration + waitWithin(m_deadline, m_bound, duration);
    return static_cast<int>(qMin<qint64>(bound, std::numeric_limits<int>::max()));
}

// False when the connection is no longer of use. When it is not closed, the process takes
// nothing.
bool RemoteSession::send(const QByteArray &request, int timeout)
{
    m_isTorn = m_isTorn || !m_channel->send(request, timeout);
    if (!m_isTorn)
        return true;
    // What it has said before it went.
    update();
    if (m_failure.isEmpty()) {
        m_failure = silence(timeout, false) + QLatin1String("; the connection to it is closed");
        m_channel->shutDown();
    }
    return false;
}

RemoteSession::Reply RemoteSession::waitForAnswer(const Message &request, int timeout)
{
    Message answer;
    MessageChannel::Outcome outcome = waitForMessage(request.number, timeout, &answer);
    if (outcome == MessageChannel::TimedOut) {
        const bool isAgentThere = isPonged(request.number, &answer);
        outcome = isBehind() ? outcome : MessageChannel::Received;
        if (outcome == MessageChannel::TimedOut && m_failure.isEmpty())
            return {silence(timeout, isAgentThere), {}};
    }
    if (outcome != MessageChannel::Received)
        return handleLoss(outcome, request.operation);
    if (answer.type != Message::Failure)
        return {{}, answer.values};
    const QString reason = answer.values.value(0).toString();
    return {reason.isEmpty() ? QStringLiteral("the application gave no reason") : reason, {}, true};
}

QString RemoteSession::silence(int timeout, bool isAgentThere)
{
    const QString text =
        QStringLiteral("the application has not answered for %1 seconds").arg(timeout / 1000.0);
    return m_describeSilence ? text + m_describeSilence(isAgentThere) : text;
}

QString RemoteSession::record()
{
    m_isRecording = true;
    return request(Message::Record, {}).error;
}

QVariantList RemoteSession::takeRecorded()
{
    m_recordedBytes = 0;
    return std::exchange(m_recorded, {});
}

// The answer to the request of that number, or that to a ping, which is empty.
MessageChannel::Outcome RemoteSession::waitForMessage(quint32 number, int timeout, Message *answer)
{
    QElapsedTimer timer;
    timer.start();
    for (;;) {
        const qint64 left = timeout - timer.elapsed();
        Message message;
        const MessageChannel::Outcome outcome = receive(&message, left);
        if (outcome == MessageChannel::Closed || outcome == MessageChannel::Broken)
            return outcome;
        if (outcome == MessageChannel::Received) {
            if (!take(message))
                return MessageChannel::Broken;
            // That of a request which was given up may still come.
            if (isAnswer(message) && message.number == number) {
                *answer = message;
                return MessageChannel::Received;
            }
            if (message.type == Message::Pong && message.number == number)
                return MessageChannel::TimedOut;
        }
        if (left <= 0)
            return MessageChannel::TimedOut;
    }
}

// False for what an application never says here, or was not asked for.
bool RemoteSession::take(const Message &message)
{
    if (message.type == Message::Bye)
        return takeBye(message);
    if (message.type == Message::Pong) {
        m_hasPonged = true;
        return m_unansweredPings.remove(message.number);
    }
    if (message.type == Message::Recorded) {
        m_recorded += message.values;
        m_recordedBytes += message.encoded().size();
        return m_isRecording && !message.values.isEmpty() && m_recorded.size() <= maxRecorded &&
               m_recordedBytes <= maxRecordedBytes;
    }
    return isAnswer(message) && m_unanswered.remove(message.number);
}

bool RemoteSession::takeBye(const Message &message)
{
    m_lastUsage = message.values.value(0).toByteArray();
    return ++m_byes <= maxByes;
}

// Whether the agent's own thread answers. The answer to the request may come, too; a connection
// that is lost meanwhile is a failure after that.
bool RemoteSession::isPonged(quint32 number, Message *answer)
{
    Message ping;
    ping.type = Message::Ping;
    ping.number = number;
    m_hasPonged = false;
    const qint64 left = m_deadline.remainingTime();
    const auto timeout =
        static_cast<int>(m_deadline.isForever() ? pongTimeoutMs : qMin(pongTimeoutMs, left / 2));
    m_isTorn = m_isTorn || !m_channel->send(ping, timeout);
    if (m_isTorn) {
        update();
        return false;
    }
    m_unansweredPings += number;
    const MessageChannel::Outcome outcome = waitForMessage(number, timeout, answer);
    if (outcome == MessageChannel::Closed || outcome == MessageChannel::Broken)
        lose(outcome);
    return m_hasPonged;
}

bool RemoteSession::catchUp(int timeout)
{
    Message answer;
    if (m_failure.isEmpty() && isBehind()) {
        const MessageChannel::Outcome outcome = waitForMessage(m_lastNumber, timeout, &answer);
        if (outcome == MessageChannel::Closed || outcome == MessageChannel::Broken)
            lose(outcome);
    }
    return m_failure.isEmpty() && !isBehind();
}

void RemoteSession::update()
{
    Message message;
    while (m_failure.isEmpty()) {
        const MessageChannel::Outcome outcome = m_channel->receive(&message, 0);
        if (outcome == MessageChannel::TimedOut)
            return;
        if (outcome != MessageChannel::Received || !take(message))
            lose(outcome == MessageChannel::Received ? MessageChannel::Broken : outcome);
    }
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

void RemoteSession::lose(MessageChannel::Outcome outcome)
{
    if (!m_failure.isEmpty())
        return;
    m_failure = outcome == MessageChannel::Broken
                    ? QStringLiteral("the application has sent something that is not an answer; "
                                     "the connection to it is closed")
                    : m_describeEnd(hasSaidBye());
    m_channel->shutDown();
}

RemoteSession::Reply RemoteSession::handleLoss(MessageChannel::Outcome outcome,
                                               Message::Operation operation)
{
    lose(outcome);
    if (hasSaidBye() && isAction(operation))
        return {};
    m_isEndMet = true;
    return {m_failure, {}};
}

} // namespace Morvex
