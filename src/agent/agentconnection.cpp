#include "agent/agentconnection.h"

#include <QCoreApplication>

#include <csignal>
#include <limits>
#include <pthread.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <unistd.h>

namespace Morvex {
namespace {

const int sendTimeoutMs = 10000;
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
    , m_hello(hello)
    , m_receiver(receiver)
    , m_whenLost(whenLost)
{
    static const int registered = ::pthread_atfork(nullptr, nullptr, closeInChild);
    Q_UNUSED(registered)
    openDescriptor = descriptor;
    start();
}

AgentConnection::~AgentConnection()
{
    if (isForked()) {
        // There is no such thread here, and the number may be that of another descriptor by now.
        static_cast<void>(m_thread.release());
        static_cast<void>(m_channel.release());
        return;
    }
    m_isEnding = true;
    m_channel->shutDown();
    m_thread->join();
    openDescriptor = -1;
}

bool AgentConnection::isForked() const
{
    return ::getpid() != m_process;
}

// Signals are for the threads of the application.
void AgentConnection::start()
{
    sigset_t all;
    sigset_t before;
    ::sigfillset(&all);
    ::pthread_sigmask(SIG_SETMASK, &all, &before);
    m_thread = std::make_unique<std::thread>([this] { read(); });
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
    if (!m_channel->send(bytes, sendTimeoutMs))
        m_channel->shutDown();
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
    if (!m_channel->send(m_hello, sendTimeoutMs))
        return false;
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
