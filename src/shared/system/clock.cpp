#include "shared/system/clock.h"

namespace Morvex {

QDateTime currentLocalTime()
{
    thread_local qint64 cachedMilliseconds = -1;
    thread_local QDateTime cachedTime;
    const qint64 now = QDateTime::currentMSecsSinceEpoch();
    if (now != cachedMilliseconds) {
        cachedTime = QDateTime::fromMSecsSinceEpoch(now);
        cachedMilliseconds = now;
    }
    return cachedTime;
}

} // namespace Morvex
