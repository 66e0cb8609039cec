#include "support/processes.h"

#include "support/files.h"

#include <QList>

namespace MorvexTest {
namespace {

// What the system says of a process after its name; empty when there is none.
QList<QByteArray> statusOf(pid_t process)
{
    const QByteArray status = readFile(QString("/proc/%1/stat").arg(process));
    return status.isEmpty() ? QList<QByteArray>()
                            : status.mid(status.lastIndexOf(')') + 2).split(' ');
}

} // namespace

bool isRunning(pid_t process)
{
    const QByteArray state = statusOf(process).value(0);
    return !state.isEmpty() && state != "Z" && state != "X";
}

pid_t parentOf(pid_t process)
{
    return statusOf(process).value(1).toInt();
}

} // namespace MorvexTest
