#include "agent/pendingrequest.h"

namespace Morvex {

PendingRequest::PendingRequest(AgentCalls &calls, const Message &request, const Sender &sender,
                               QObject *parent)
    : QObject(parent)
    , m_calls(calls)
    , m_request(request)
    , m_sender(sender)
{
    m_elapsed.start();
}

} // namespace Morvex
