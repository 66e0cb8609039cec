#pragma once

#include "qtbackend/inputsequence.h"
#include "remote/protocol/message.h"

#include <QElapsedTimer>
#include <QObject>

#include <functional>

namespace Morvex {

class AgentCalls;

/// A request that makes the application do something. It is answered when the event loop turns
/// after that: an application that runs a loop of its own there, for a dialog, say, is as ready for
/// the next request as one that has come back. Deletes itself after the answer.
class PendingAction : public QObject
{
    Q_OBJECT

public:
    /// Takes the answer.
    using Sender = std::function<void(const Message &)>;

    /// @p parent owns it.
    PendingAction(AgentCalls &calls, const Message &request, const Sender &sender, QObject *parent);

    /// Does what is asked for, a picture when its delay is over.
    void begin();

protected:
    void timerEvent(QTimerEvent *event) override;

private:
    bool hasToWait() const;
    void perform();
    void report();
    void finishInput();

    AgentCalls &m_calls;
    const Sender m_send;
    Message m_request;
    Message m_answer;
    InputSequence m_input;
    QElapsedTimer m_elapsed;
    enum { Waiting, Running, Done } m_state = Waiting;
    bool m_isReported = false;
    bool m_isInput = false;
};

} // namespace Morvex
