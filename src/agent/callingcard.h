#pragma once

#include "remote/protocol/message.h"

#include <QByteArray>

namespace Morvex {

/// Where the runner that started this application waits for it, and what it has to know.
class CallingCard
{
public:
    static CallingCard fromEnvironment();

    bool isValid() const { return !m_socket.isEmpty() && !m_token.isEmpty(); }

    /// Whether this process is connected to the runner already. A program that links the agent may
    /// have got the plugin, too.
    bool isPresented() const;

    /// A connected socket of this user's runner, which no child process inherits; negative when
    /// there is none.
    int connectToRunner() const;

    Message hello() const;

    /// That of the installed agent, with its libraries.
    QByteArray directory() const { return m_directory; }

private:
    QByteArray m_socket;
    QByteArray m_token;
    QByteArray m_directory;
};

} // namespace Morvex
