#pragma once

#include "remote/protocol/message.h"

#include <QElapsedTimer>
#include <QObject>

#include <functional>

namespace Morvex {

class AgentCalls;

/// A request for an object of a name, looked for again and again until it is there or its time is
/// over. Deletes itself after the answer.
class PendingSearch : public QObject
{
    Q_OBJECT

public:
    /// Takes the answer.
    using Sender = std::function<void(const Message &)>;

    /// @p parent owns it.
    PendingSearch(AgentCalls &calls, const Message &request, const Sender &sender, QObject *parent);

    void look();

protected:
    void timerEvent(QTimerEvent *event) override;

private:
    AgentCalls &m_calls;
    const Sender m_send;
    const Message m_request;
    QElapsedTimer m_elapsed;
};

} // namespace Morvex
