#include "agent/pendingaction.h"

#include "agent/agentreceiver.h"

#include <QPointer>
#include <QTimerEvent>

#include <algorithm>
#include <iterator>

namespace Morvex {
namespace {

const int waitStepMs = 10;
// A window manager may refuse.
const int maxActivationMs = 500;

bool isInput(const QString &function)
{
    static const char *const inputs[] = {"clickObject", "typeText", "useItem"};
    return std::any_of(std::begin(inputs), std::end(inputs),
                       [&function](const char *input) { return function == QLatin1String(input); });
}

} // namespace

PendingAction::PendingAction(AgentReceiver *receiver, const Message &request)
    : QObject(receiver)
    , m_receiver(receiver)
    , m_request(request)
{
    m_elapsed.start();
}

void PendingAction::begin()
{
    if (m_request.operation == Message::CallFunction && hasToWait())
        startTimer(waitStepMs);
    else
        perform();
}

bool PendingAction::hasToWait()
{
    const QString function = m_request.values.value(0).toString();
    const QVariantList arguments = m_request.values.value(1).toList();
    if (isInput(function))
        return m_elapsed.elapsed() < maxActivationMs &&
               m_receiver->calls().inspector().activateWindowOf(arguments.value(0).toInt());
    return function == QLatin1String("grabObjectScreenshot") &&
           m_elapsed.elapsed() < arguments.value(2).toInt();
}

void PendingAction::perform()
{
    const QPointer<PendingAction> alive = this;
    m_state = Running;
    startTimer(0);
    const Message answer = m_receiver->calls().answer(m_request);
    // The application may have ended meanwhile.
    if (!alive)
        return;
    m_answer = answer;
    m_state = Done;
    if (m_isReported)
        deleteLater();
}

void PendingAction::timerEvent(QTimerEvent *event)
{
    killTimer(event->timerId());
    if (m_state == Waiting)
        begin();
    else
        report();
}

void PendingAction::report()
{
    m_isReported = true;
    if (m_state == Done) {
        m_receiver->send(m_answer);
        deleteLater();
        return;
    }
    Message unfinished = m_request;
    unfinished.type = Message::Unfinished;
    unfinished.values.clear();
    m_receiver->send(unfinished);
}

} // namespace Morvex
