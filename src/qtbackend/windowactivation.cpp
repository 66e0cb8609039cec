#include "qtbackend/windowactivation.h"

#include <QElapsedTimer>

#include <memory>

namespace Morvex {
namespace {

// It may be busy, or may only be starting.
const int maxActivationMs = 3000;
const int maxRefusalMs = 500;

bool hasRefused = false;

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

} // namespace Morvex
