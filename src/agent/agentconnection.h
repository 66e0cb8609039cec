#pragma once

#include "remote/protocol/messagechannel.h"

#include <QEvent>

#include <atomic>
#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
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
/// What can't be written at once is left to another thread, so that a runner that takes nothing
/// does not keep the application waiting.
class AgentConnection
{
public:
    /// Takes the descriptor. @p receiver gets a MessageEvent for each message and has to live
    /// longer. @p whenLost is called in the thread when a runner that had said welcome has left.
    AgentConnection(int descriptor, const Message &hello, QObject *receiver,
                    const std::function<void()> &whenLost);
    ~AgentConnection();

    AgentConnection(const AgentConnection &) = delete;
    AgentConnection &operator=(const AgentConnection &) = delete;

    /// From any thread; comes back at once. A runner that doesn't take it in time, or asks for more
    /// and more without taking it, is given up. An answer that is too large becomes a failure that
    /// says so.
    void send(const Message &message);

    /// Whether this is the copy of it in a child that the application has forked.
    bool isForked() const;

private:
    struct Outbox
    {
        std::mutex mutex;
        std::condition_variable hasChanged;
        std::deque<QByteArray> messages;
        qint64 size = 0;
        bool isBeingWritten = false;
        bool isEnding = false;
    };

    void start(std::unique_ptr<std::thread> *thread, void (AgentConnection::*work)());
    void endWriting();
    void read();
    void write();
    bool isWelcome();
    bool handle(const Message &message);

    const pid_t m_process;
    std::unique_ptr<MessageChannel> m_channel;
    QObject *m_receiver;
    std::function<void()> m_whenLost;
    std::atomic<bool> m_isEnding{false};
    // On the heap, as a forked child has to leave it alone.
    std::unique_ptr<Outbox> m_outbox;
    std::unique_ptr<std::thread> m_reader;
    // Null until something has to wait.
    std::unique_ptr<std::thread> m_writer;
};

/// Ends this process, by force if it does not follow.
void endThisProcess();

} // namespace Morvex
