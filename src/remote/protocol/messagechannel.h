#pragma once

#include "morvex_export.h"
#include "remote/protocol/message.h"
#include "remote/protocol/wirekinds.h"

#include <QByteArray>

#include <mutex>

namespace Morvex {

/// One end of the connection between the runner and an application.
class MORVEX_EXPORT MessageChannel
{
public:
    enum Outcome {
        Received,
        /// Also when a signal came.
        TimedOut,
        /// The other end has closed the connection.
        Closed,
        /// What came is no message, or one that is too large. Nothing more can be read.
        Broken,
    };

    /// The most that a message may hold, in bytes.
    static const int maxHelloSize = 64 * 1024;
    static const int maxSize = maxMessageSize;

    /// Takes the descriptor of a connected socket, which it closes.
    explicit MessageChannel(int descriptor);
    ~MessageChannel();

    MessageChannel(const MessageChannel &) = delete;
    MessageChannel &operator=(const MessageChannel &) = delete;

    int descriptor() const { return m_descriptor; }

    /// The most that is taken from the other end from now on; maxHelloSize at first.
    void setMaxReceived(int bytes) { m_maxReceived = bytes; }

    /// From any thread. False when the message could not be written whole within @p timeout
    /// milliseconds; the connection is of no use then. One that is too large can't be sent.
    bool send(const Message &message, int timeout) { return send(message.encoded(), timeout); }
    bool send(const QByteArray &encoded, int timeout);

    /// One thread at a time.
    Outcome receive(Message *message, int timeout);

    /// From any thread: both ends find the connection closed.
    void shutDown();

private:
    bool write(const char *bytes, int size, int timeout);
    Outcome takeMessage(Message *message);
    Outcome fill(int timeout);

    const int m_descriptor;
    int m_maxReceived = maxHelloSize;
    std::mutex m_sending;
    QByteArray m_received;
};

} // namespace Morvex
