#include "agent/pendingsearch.h"

#include "agent/agentcalls.h"

#include <QTimerEvent>

namespace Morvex {
namespace {

const int waitStepMs = 10;

} // namespace

PendingSearch::PendingSearch(AgentCalls &calls, const Message &request, const Sender &sender,
                             QObject *parent)
    : QObject(parent)
    , m_calls(calls)
    , m_send(sender)
    , m_request(request)
{
    m_elapsed.start();
}

void PendingSearch::look()
{
    const QString name = m_request.values.value(0).toString();
    const bool isLast = m_elapsed.elapsed() >= m_request.values.value(1).toInt();
    QString error;
    // To find out what is wrong takes long.
    const SharedPtr<Object> object = m_calls.inspector().lookUp(name, isLast ? &error : nullptr);
    if (!object && !isLast) {
        startTimer(waitStepMs);
        return;
    }
    m_send(m_calls.found(m_request, object, error));
    deleteLater();
}

void PendingSearch::timerEvent(QTimerEvent *event)
{
    killTimer(event->timerId());
    look();
}

} // namespace Morvex
