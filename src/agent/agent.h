#pragma once

#include "agent/agentconnection.h"
#include "agent/agentreceiver.h"

#include <QObject>

namespace Morvex {

/// Serves the objects of this process to the runner at the other end of a connection. Made and
/// deleted in the main thread, within the life of the application object.
class Agent : public QObject
{
    Q_OBJECT

public:
    /// Takes the descriptor of a connected socket. @p whenLost is called, in another thread, when
    /// the connection to a runner that wanted this application has ended.
    Agent(int descriptor, const Message &hello,
          const std::function<void()> &whenLost = endThisProcess);
    ~Agent() override;

private:
    AgentReceiver m_receiver;
    AgentConnection m_connection;
};

} // namespace Morvex
