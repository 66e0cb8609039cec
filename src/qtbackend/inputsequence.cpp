#include "qtbackend/inputsequence.h"

#include <QPointer>
#include <QTimerEvent>

namespace Morvex {
namespace {

const int waitStepMs = 10;

} // namespace

void InputSequence::add(const Step &step)
{
    append({step, nullptr, 0});
}

void InputSequence::waitUntil(const Condition &condition, int milliseconds)
{
    append({nullptr, condition, milliseconds});
}

void InputSequence::append(const Entry &entry)
{
    m_steps.push_back(entry);
    schedule(0);
}

// A timer, as events posted meanwhile would be handled in the same turn, before the input that the
// window system has queued.
void InputSequence::schedule(int milliseconds)
{
    if (!m_isScheduled)
        startTimer(milliseconds);
    m_isScheduled = true;
}

bool InputSequence::hasToWait(const Entry &entry)
{
    if (!entry.condition || entry.condition())
        return false;
    if (!m_waiting.isValid())
        m_waiting.start();
    return m_waiting.elapsed() < entry.timeout;
}

void InputSequence::timerEvent(QTimerEvent *event)
{
    killTimer(event->timerId());
    m_isScheduled = false;
    if (m_steps.empty()) {
        m_isDone = true;
        if (m_whenDone)
            m_whenDone();
        return;
    }
    if (hasToWait(m_steps.front())) {
        schedule(waitStepMs);
        return;
    }
    m_waiting.invalidate();
    const Step step = m_steps.front().step;
    m_steps.pop_front();
    // Before the step, which may turn the loop.
    schedule(0);
    const QPointer<InputSequence> alive = this;
    const QString error = step ? step() : QString();
    if (!alive || error.isEmpty())
        return;
    m_steps.clear();
    m_error = error;
}

} // namespace Morvex
