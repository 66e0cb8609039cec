#pragma once

#include "remote/protocol/messagechannel.h"

#include <QEvent>

#include <atomic>
#include <functional>
#include <memory>
#include <sys/types.h>
#include <thread>

class QObject;

namespace Morvex {

/// What came from the runner; of type Welcome when the connection is made.
class MessageEvent : public QEvent
{
public:
    explicit MessageEvent(const Message &message)
        : QEvent(eventType())
        , m_message(message)
    {
    }

    static QEvent::Type eventType();
    const Message &message() const { return m_message; }

private:
    Message m_message;
};

/// The agent's end of the connection. A thread of its own reads it, so that it can be seen from
/// outside when the main thread of the application hangs; it posts what has to be done there.
class AgentConnection
{
public:
    /// Takes the descriptor. @p receiver gets a MessageEvent for each message and has to live
    /// longer. @p whenLost is called in the thread when a runner that had said welcome has gone.
    AgentConnection(int descriptor, const Message &hello, QObject *receiver,
                    const std::function<void()> &whenLost);
    ~AgentConnection();

    AgentConnection(const AgentConnection &) = delete;
    AgentConnection &operator=(const AgentConnection &) = delete;

    /// From any thread. A runner that doesn't take it in time is given up. An answer that is too
    /// large becomes a failure that says so.
    void send(const Message &message);

    /// Whether this is the copy of it in a child that the application has forked.
    bool isForked() const;

private:
    void start();
    void read();
    bool isWelcome();
    bool handle(const Message &message);

    const pid_t m_process;
    std::unique_ptr<MessageChannel> m_channel;
    const Message m_hello;
    QObject *m_receiver;
    std::function<void()> m_whenLost;
    std::atomic<bool> m_isEnding{false};
    std::unique_ptr<std::thread> m_thread;
};

/// Ends this process, by force if it does not follow.
void endThisProcess();

} // namespace Morvex
