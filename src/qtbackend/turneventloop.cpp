#include "qtbackend/turneventloop.h"

#include <QCoreApplication>
#include <QEvent>
#include <QEventLoop>
#include <QTimer>

namespace Morvex {
namespace {

void handleEvents(QEventLoop::ProcessEventsFlags flags)
{
    QCoreApplication::processEvents(flags);
    // Outside of a running event loop nobody else would delete them.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

bool isHeld = false;

} // namespace

void setEventLoopHeld(bool held)
{
    isHeld = held;
}

void turnEventLoop(int milliseconds)
{
    if (isHeld)
        return;
    QTimer alarm;
    alarm.setSingleShot(true);
    alarm.setTimerType(Qt::PreciseTimer);
    if (milliseconds > 0)
        alarm.start(milliseconds);
    // No loop of its own: once the application has called quit, no loop runs.
    while (alarm.isActive())
        handleEvents(QEventLoop::WaitForMoreEvents);
    handleEvents(QEventLoop::AllEvents);
}

} // namespace Morvex
