#include "test/report/iso8601time.h"

#include "support/test.h"
#include "test/reportgeneratorshared.h"

#include <QTimeZone>

#include <time.h>

using namespace Morvex;
using namespace MorvexTest;

TEST(Iso8601TimeTest, ATimeThatWasSeenBeforeDoesNotLeakIntoTheNext)
{
    const EnvironmentGuard zone("TZ", "Europe/Berlin");
    ::tzset();
    const qint64 endOfDaylightTime = 1729990800000; // 2024-10-27T01:00:00Z, 02:00 comes again.
    const QDateTime local = QDateTime::fromMSecsSinceEpoch(endOfDaylightTime - 1800000);
    const QDateTime times[] = {local,
                               local,
                               QDateTime::fromMSecsSinceEpoch(endOfDaylightTime + 1800000),
                               local.addMSecs(7),
                               local.addSecs(1),
                               local.addDays(1),
                               local.toUTC(),
                               local.toOffsetFromUtc(5400),
                               local.toTimeZone(QTimeZone("America/New_York")),
                               QDateTime(),
                               local.addMSecs(-1),
                               QDateTime(QDate(812, 1, 1), QTime(1, 2, 3)),
                               QDateTime(QDate(-5, 1, 1), QTime(0, 0))};
    Iso8601Time time;
    for (const QDateTime &dateTime : times) {
        EXPECT_EQ(time.text(dateTime), formatAsISO8601(dateTime).toLatin1());
        EXPECT_EQ(time.textWithMs(dateTime), formatAsISO8601WithMs(dateTime).toLatin1());
        EXPECT_EQ(time.isoDate(dateTime), dateTime.toString(Qt::ISODate));
    }
    ::tzset();
}
