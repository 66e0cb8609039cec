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

    /// A connected socket of this user's runner, which no child process inherits; negative when
    /// there is none.
    int connectToRunner() const;

    Message hello() const;

private:
    QByteArray m_socket;
    QByteArray m_token;
};

} // namespace Morvex
