#include "agent/pendingsearch.h"

#include "agent/agentreceiver.h"

#include <QTimerEvent>

namespace Morvex {
namespace {

const int waitStepMs = 10;

} // namespace

PendingSearch::PendingSearch(AgentReceiver *receiver, const Message &request)
    : QObject(receiver)
    , m_receiver(receiver)
    , m_request(request)
{
    m_elapsed.start();
}

void PendingSearch::look()
{
    const QString name = m_request.values.value(0).toString();
    const bool isLast = m_elapsed.elapsed() >= m_request.values.value(1).toInt();
    QString error;
    AgentCalls &calls = m_receiver->calls();
    // To find out what is wrong takes long.
    const SharedPtr<Object> object = calls.inspector().lookUp(name, isLast ? &error : nullptr);
    if (!object && !isLast) {
        startTimer(waitStepMs);
        return;
    }
    m_receiver->send(calls.found(m_request, object, error));
    deleteLater();
}

void PendingSearch::timerEvent(QTimerEvent *event)
{
    killTimer(event->timerId());
    look();
}

} // namespace Morvex
