#include "agent/pendingaction.h"

#include "agent/agentcalls.h"

#include <QPointer>
#include <QTimerEvent>

namespace Morvex {

void PendingAction::begin()
{
    if (request().operation == Message::CallFunction && hasToWait())
        startTimer(waitStepMs);
    else
        perform();
}

bool PendingAction::hasToWait() const
{
    return request().values.value(0).toString() == QLatin1String("grabObjectScreenshot") &&
           elapsedMs() < request().values.value(1).toList().value(2).toInt();
}

void PendingAction::perform()
{
    const QPointer<PendingAction> alive = this;
    m_state = Running;
    startTimer(0);
    const Message answer = calls().answer(request(), &m_input);
    // The application may have ended meanwhile.
    if (!alive)
        return;
    m_answer = answer;
    m_state = Done;
    if (m_isReported) {
        deleteLater();
        return;
    }
    m_isInput = answer.type == Message::Answer && !m_input.isEmpty();
    if (m_isInput)
        m_input.setWhenDone([this] { finishInput(); });
}

void PendingAction::timerEvent(QTimerEvent *event)
{
    killTimer(event->timerId());
    if (m_state == Waiting)
        begin();
    else if (!m_isInput)
        report();
}

// The event loop turns: with the last step begun, the application is ready for the next request.
void PendingAction::finishInput()
{
    if (!m_input.error().isEmpty())
        m_answer = AgentCalls::failure(request(), m_input.error());
    report();
}

void PendingAction::report()
{
    m_isReported = true;
    if (m_state == Done) {
        send(m_answer);
        deleteLater();
        return;
    }
    Message unfinished = request();
    unfinished.type = Message::Unfinished;
    unfinished.values.clear();
    send(unfinished);
}

} // namespace Morvex
