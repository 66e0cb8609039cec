#include "agent/pendingsearch.h"

#include "agent/agentcalls.h"

#include <QTimerEvent>

namespace Morvex {

void PendingSearch::look()
{
    const QString name = request().values.value(0).toString();
    const bool isLast = elapsedMs() >= request().values.value(1).toInt();
    QString error;
    // To find out what is wrong takes long.
    const SharedPtr<Object> object = calls().inspector().lookUp(name, isLast ? &error : nullptr);
    if (!object && !isLast) {
        startTimer(waitStepMs);
        return;
    }
    send(calls().found(request(), object, error));
    deleteLater();
}

void PendingSearch::timerEvent(QTimerEvent *event)
{
    killTimer(event->timerId());
    look();
}

} // namespace Morvex
