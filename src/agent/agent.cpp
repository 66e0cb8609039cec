#include "agent/agent.h"

#include "qtbackend/turneventloop.h"

namespace Morvex {

Agent::Agent(int descriptor, const Message &hello, const std::function<void()> &whenLost)
    : m_connection(descriptor, hello, &m_receiver, whenLost)
{
    m_receiver.setSender([this](const Message &message) { m_connection.send(message); });
    setEventLoopHeld(true);
}

Agent::~Agent()
{
    if (!m_connection.isForked()) {
        Message bye;
        bye.type = Message::Bye;
        // First without the usage, so that a runner that reads too little of it in time knows
        // that this is an orderly end.
        m_connection.send(bye);
        bye.values = m_receiver.lastWords();
        if (!bye.values.isEmpty())
            m_connection.send(bye);
    }
    setEventLoopHeld(false);
}

} // namespace Morvex
