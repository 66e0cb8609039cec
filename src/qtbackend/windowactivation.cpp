#include "qtbackend/windowactivation.h"

#include "qtbackend/mouseevents.h"
#include "qtbackend/whyblocked.h"

#include <QElapsedTimer>
#include <QPointer>
#include <QWidget>
#include <QWindow>

#include <memory>

namespace Morvex {
namespace {

// It may be busy, or may only be starting.
const int maxActivationMs = 3000;
const int maxRefusalMs = 500;

bool hasRefused = false;

QWidget *screenWindowOf(const QWidget *widget)
{
    const MouseSpot spot = MouseSpot::of(widget, QPoint());
    QWidget *window = spot.isValid() ? QWidget::find(spot.window->winId()) : nullptr;
    return window ? window : widget->window();
}

// Whether input to the object has to wait until its window is active, for which it asks then. False
// for an object that can't be used, and for null.
bool activateForInput(QObject *object)
{
    auto *widget = qobject_cast<QWidget *>(object);
    if (!widget || !whyBlocked(widget).isEmpty())
        return false;
    QWidget *window = screenWindowOf(widget);
    if (widget->isActiveWindow() || window->isActiveWindow() ||
        window->windowFlags().testFlag(Qt::WindowDoesNotAcceptFocus))
        return false;
    window->activateWindow();
    return true;
}

} // namespace

void waitForActivation(const InputSequence::Condition &isActive, InputSequence &input)
{
    const auto waiting = std::make_shared<QElapsedTimer>();
    const auto isOver = [isActive, waiting] {
        if (!waiting->isValid())
            waiting->start();
        if (isActive())
            return true;
        const bool isRefused = waiting->elapsed() >= (hasRefused ? maxRefusalMs : maxActivationMs);
        hasRefused = hasRefused || isRefused;
        return isRefused;
    };
    input.waitUntil(isOver, 2 * maxActivationMs);
}

void waitForActiveWindow(QObject *object, InputSequence &input)
{
    const QPointer<QObject> alive = object;
    if (activateForInput(object))
        waitForActivation([alive] { return !activateForInput(alive); }, input);
}

} // namespace Morvex
