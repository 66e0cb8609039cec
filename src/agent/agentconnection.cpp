#include "agent/agentconnection.h"

#include <QCoreApplication>

#include <csignal>
#include <limits>
#include <linux/sockios.h>
#include <pthread.h>
#include <sys/ioctl.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <unistd.h>

namespace Morvex {
namespace {

const int sendTimeoutMs = 10000;
// At the end of an application, whose runner may take nothing.
const int lastSendTimeoutMs = 500;
const qint64 maxOutboxSize = 2ll * MessageChannel::maxSize;
// Less than the system keeps for any socket.
const int maxDirectSize = 32 * 1024;
const int bookkeepingSize = 4 * 1024;
const int forever = std::numeric_limits<int>::max();
const unsigned int graceSeconds = 2;

// A child that the application forks must not keep the connection open.
std::atomic<int> openDescriptor{-1};

void closeInChild()
{
    if (openDescriptor >= 0)
        ::close(openDescriptor);
    openDescriptor = -1;
}

// The runner, and the debugger that it starts, may look where this process hangs.
void allowLook(int descriptor)
{
    ucred peer = {};
    socklen_t size = sizeof peer;
    if (::getsockopt(descriptor, SOL_SOCKET, SO_PEERCRED, &peer, &size) == 0)
        ::prctl(PR_SET_PTRACER, static_cast<unsigned long>(peer.pid), 0, 0, 0);
}

// Whether the system takes this many bytes at once, however much the other end has still to read.
bool hasRoomFor(int descriptor, int size)
{
    int waiting = 0;
    int room = 0;
    socklen_t length = sizeof room;
    // Both count what the system needs to keep the bytes, too.
    return ::ioctl(descriptor, SIOCOUTQ, &waiting) == 0 &&
           ::getsockopt(descriptor, SOL_SOCKET, SO_SNDBUF, &room, &length) == 0 &&
           room - waiting >= 2 * size + bookkeepingSize;
}

} // namespace

QEvent::Type MessageEvent::eventType()
{
    static const auto type = static_cast<QEvent::Type>(QEvent::registerEventType());
    return type;
}

AgentConnection::AgentConnection(int descriptor, const Message &hello, QObject *receiver,
                                 const std::function<void()> &whenLost)
    : m_process(::getpid())
    , m_channel(std::make_unique<MessageChannel>(descriptor))
    , m_receiver(receiver)
    , m_whenLost(whenLost)
    , m_outbox(std::make_unique<Outbox>())
{
    static const int registered = ::pthread_atfork(nullptr, nullptr, closeInChild);
    Q_UNUSED(registered)
    openDescriptor = descriptor;
    // Before the application can end, however short its life is.
    m_channel->send(hello, sendTimeoutMs);
    start(&m_reader, &AgentConnection::read);
}

AgentConnection::~AgentConnection()
{
    if (isForked()) {
        // There is no such thread here, and the number may be that of another descriptor by now.
        static_cast<void>(m_reader.release());
        static_cast<void>(m_writer.release());
        static_cast<void>(m_outbox.release());
        static_cast<void>(m_channel.release());
        return;
    }
    m_isEnding = true;
    endWriting();
    m_channel->shutDown();
    m_reader->join();
    openDescriptor = -1;
}

bool AgentConnection::isForked() const
{
    return ::getpid() != m_process;
}

// Signals are for the threads of the application.
void AgentConnection::start(std::unique_ptr<std::thread> *thread, void (AgentConnection::*work)())
{
    sigset_t all;
    sigset_t before;
    ::sigfillset(&all);
    ::pthread_sigmask(SIG_SETMASK, &all, &before);
    *thread = std::make_unique<std::thread>([this, work] { (this->*work)(); });
    ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

void AgentConnection::send(const Message &message)
{
    if (isForked())
        return;
    QByteArray bytes = message.encoded();
    if (bytes.isNull()) {
        Message failure = message;
        failure.type = Message::Failure;
        failure.values = {QStringLiteral("the answer is too large to be sent")};
        bytes = failure.encoded();
    }
    const std::lock_guard<std::mutex> lock(m_outbox->mutex);
    const bool isWaiting = m_outbox->isBeingWritten || !m_outbox->messages.empty();
    // Written here, it arrives also when the application ends at once.
    if (!isWaiting && bytes.size() <= maxDirectSize &&
        hasRoomFor(m_channel->descriptor(), bytes.size())) {
        if (!m_channel->send(bytes, sendTimeoutMs))
            m_channel->shutDown();
        return;
    }
    if (m_outbox->size + bytes.size() > maxOutboxSize) {
        m_channel->shutDown();
        return;
    }
    m_outbox->size += bytes.size();
    m_outbox->messages.push_back(bytes);
    if (!m_writer)
        start(&m_writer, &AgentConnection::write);
    m_outbox->hasChanged.notify_one();
}

// What was said last is still written.
void AgentConnection::endWriting()
{
    {
        const std::lock_guard<std::mutex> lock(m_outbox->mutex);
        m_outbox->isEnding = true;
        m_outbox->hasChanged.notify_one();
    }
    if (m_writer)
        m_writer->join();
}

void AgentConnection::write()
{
    ::pthread_setname_np(::pthread_self(), "morvexagentout");
    std::unique_lock<std::mutex> lock(m_outbox->mutex);
    for (;;) {
        m_outbox->hasChanged.wait(
            lock, [this] { return m_outbox->isEnding || !m_outbox->messages.empty(); });
        if (m_outbox->messages.empty())
            return;
        const QByteArray bytes = m_outbox->messages.front();
        m_outbox->messages.pop_front();
        m_outbox->isBeingWritten = true;
        const int timeout = m_outbox->isEnding ? lastSendTimeoutMs : sendTimeoutMs;
        lock.unlock();
        if (!m_channel->send(bytes, timeout))
            m_channel->shutDown();
        lock.lock();
        m_outbox->isBeingWritten = false;
        m_outbox->size -= bytes.size();
    }
}

void AgentConnection::read()
{
    ::pthread_setname_np(::pthread_self(), "morvexagent");
    if (!isWelcome())
        return;
    m_channel->setMaxReceived(MessageChannel::maxSize);
    for (;;) {
        Message message;
        const MessageChannel::Outcome outcome = m_channel->receive(&message, forever);
        const bool isOver = outcome == MessageChannel::Received
                                ? !handle(message)
                                : outcome != MessageChannel::TimedOut;
        if (isOver)
            break;
    }
    if (!m_isEnding)
        m_whenLost();
}

// A runner that wants nothing of this process doesn't answer, or closes the connection: the
// application then runs as if there were no agent.
bool AgentConnection::isWelcome()
{
    Message message;
    MessageChannel::Outcome outcome = MessageChannel::TimedOut;
    while (outcome == MessageChannel::TimedOut)
        outcome = m_channel->receive(&message, forever);
    if (outcome != MessageChannel::Received || message.type != Message::Welcome)
        return false;
    allowLook(m_channel->descriptor());
    QCoreApplication::postEvent(m_receiver, new MessageEvent(message));
    return true;
}

// False for what a runner never says.
bool AgentConnection::handle(const Message &message)
{
    if (message.type == Message::Ping) {
        Message pong;
        pong.type = Message::Pong;
        pong.number = message.number;
        send(pong);
        return true;
    }
    if (message.type != Message::Request && message.type != Message::Release)
        return false;
    QCoreApplication::postEvent(m_receiver, new MessageEvent(message));
    return true;
}

void endThisProcess()
{
    ::kill(::getpid(), SIGTERM);
    ::sleep(graceSeconds);
    ::kill(::getpid(), SIGKILL);
}

} // namespace Morvex
