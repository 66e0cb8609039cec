#include "runner/promises.h"

#include <QCoreApplication>
#include <QEvent>
#include <QObject>

namespace Morvex {
namespace {

// Counts the steps of promises, which come as events. What else is pending says nothing: an
// application with windows may always have something.
class StepCounter : public QObject
{
public:
    int steps() const { return m_steps; }

    bool eventFilter(QObject *receiver, QEvent *) override
    {
        if (receiver->inherits("QV4::Promise::ReactionHandler"))
            ++m_steps;
        return false;
    }

private:
    int m_steps = 0;
};

} // namespace

void keepPromises()
{
    StepCounter counter;
    QCoreApplication::instance()->installEventFilter(&counter);
    int before = 0;
    do {
        before = counter.steps();
        QCoreApplication::sendPostedEvents();
    } while (counter.steps() != before);
}

} // namespace Morvex
