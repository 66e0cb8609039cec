#pragma once

#include "remote/protocol/message.h"

#include <QElapsedTimer>
#include <QObject>

namespace Morvex {

class AgentReceiver;

/// A request for an object of a name, looked for again and again until it is there or its time is
/// over. Deletes itself after the answer.
class PendingSearch : public QObject
{
    Q_OBJECT

public:
    /// @p receiver owns it.
    PendingSearch(AgentReceiver *receiver, const Message &request);

    void look();

protected:
    void timerEvent(QTimerEvent *event) override;

private:
    AgentReceiver *m_receiver;
    const Message m_request;
    QElapsedTimer m_elapsed;
};

} // namespace Morvex
