#pragma once

#include <QDeadlineTimer>

namespace Morvex {

/// How long to wait, in milliseconds, instead of @p wanted, so that a wait in vain can be
/// reported before the deadline, with a stack and a picture. The wait comes after one of @p before;
/// when not even that ends before the deadline, it is not cut.
inline qint64 waitWithin(const QDeadlineTimer &deadline, qint64 wanted, qint64 before = 0)
{
    const qint64 maxReserveMs = 12000;
    const qint64 left = deadline.remainingTime() - before;
    return deadline.isForever() || left <= 0 ? wanted
                                             : qMin(wanted, left - qMin(maxReserveMs, left / 4));
}

} // namespace Morvex
