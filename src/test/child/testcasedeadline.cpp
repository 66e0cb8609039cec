#include "test/child/testcasedeadline.h"

#include <QProcessEnvironment>

namespace Morvex {
namespace {

// Milliseconds of the system's clock since its start, which is the same in all processes.
const char variable[] = "MORVEX_DEADLINE";

} // namespace

QDeadlineTimer testCaseDeadline()
{
    bool isNumber = false;
    const qint64 deadline = qgetenv(variable).toLongLong(&isNumber);
    if (!isNumber)
        return QDeadlineTimer(QDeadlineTimer::Forever);
    QDeadlineTimer timer;
    timer.setDeadline(deadline);
    return timer;
}

void addTestCaseDeadline(QProcessEnvironment *environment, const QDeadlineTimer &deadline)
{
    // That of a run around this one is none of it.
    if (deadline.isForever())
        environment->remove(QLatin1String(variable));
    else
        environment->insert(QLatin1String(variable), QString::number(deadline.deadline()));
}

} // namespace Morvex
