#pragma once

#include "remote/protocol/message.h"

#include <QElapsedTimer>
#include <QObject>

#include <functional>

namespace Morvex {

class AgentCalls;

/// A request that is answered later, when the event loop has turned. Subclasses delete themselves
/// after the answer.
class PendingRequest : public QObject
{
    Q_OBJECT

public:
    /// Takes the answer.
    using Sender = std::function<void(const Message &)>;

    /// @p parent owns it.
    PendingRequest(AgentCalls &calls, const Message &request, const Sender &sender,
                   QObject *parent);

protected:
    static constexpr int waitStepMs = 10;

    AgentCalls &calls() { return m_calls; }
    const Message &request() const { return m_request; }
    void send(const Message &answer) { m_sender(answer); }
    /// Since the request came.
    qint64 elapsedMs() const { return m_elapsed.elapsed(); }

private:
    AgentCalls &m_calls;
    const Message m_request;
    const Sender m_sender;
    QElapsedTimer m_elapsed;
};

} // namespace Morvex
