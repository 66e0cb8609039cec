#pragma once

#include "agent/pendingrequest.h"
#include "qtbackend/inputsequence.h"

namespace Morvex {

/// A request that makes the application do something. It is answered when the event loop turns
/// after that: an application that runs a loop of its own there, for a dialog, say, is as ready for
/// the next request as one that has come back. Deletes itself after the answer.
class PendingAction : public PendingRequest
{
    Q_OBJECT

public:
    using PendingRequest::PendingRequest;

    /// Does what is asked for, a picture when its delay is over.
    void begin();

protected:
    void timerEvent(QTimerEvent *event) override;

private:
    bool hasToWait() const;
    void perform();
    void report();
    void finishInput();

    Message m_answer;
    InputSequence m_input;
    enum { Waiting, Running, Done } m_state = Waiting;
    bool m_isReported = false;
    bool m_isInput = false;
};

} // namespace Morvex
