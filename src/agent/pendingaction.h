#pragma once

#include "remote/protocol/message.h"

#include <QElapsedTimer>
#include <QObject>

namespace Morvex {

class AgentReceiver;

/// A request that makes the application do something. It is answered when the event loop turns
/// after that: an application that runs a loop of its own there, for a dialog, say, is as ready for
/// the next request as one that has come back. Deletes itself after the answer.
class PendingAction : public QObject
{
    Q_OBJECT

public:
    /// @p receiver owns it.
    PendingAction(AgentReceiver *receiver, const Message &request);

    /// Does what is asked for as soon as the window that it is for is active.
    void begin();

protected:
    void timerEvent(QTimerEvent *event) override;

private:
    bool hasToWait();
    void perform();
    void report();

    AgentReceiver *m_receiver;
    Message m_request;
    Message m_answer;
    QElapsedTimer m_elapsed;
    enum { Waiting, Running, Done } m_state = Waiting;
    bool m_isReported = false;
};

} // namespace Morvex
