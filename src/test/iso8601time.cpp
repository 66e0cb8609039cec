#include "test/iso8601time.h"

#include "test/reportgeneratorshared.h"

namespace Morvex {
namespace {

const int msPerSecond = 1000;
const int lengthUpToSeconds = 19;

bool isPlainLocalTime(const QDateTime &time)
{
    return time.timeSpec() == Qt::LocalTime && time.isValid() && time.date().year() >= 1000 &&
           time.date().year() <= 9999;
}

} // namespace

QByteArray Iso8601Time::text(const QDateTime &time)
{
    if (!isPlainLocalTime(time))
        return formatAsISO8601(time).toLatin1();
    update(time);
    return m_text;
}

QByteArray Iso8601Time::textWithMs(const QDateTime &time)
{
    if (!isPlainLocalTime(time))
        return formatAsISO8601WithMs(time).toLatin1();
    update(time);
    const int ms = time.time().msec();
    const char fraction[] = {'.', static_cast<char>('0' + ms / 100),
                             static_cast<char>('0' + ms / 10 % 10),
                             static_cast<char>('0' + ms % 10)};
    QByteArray text = m_text;
    return text.insert(lengthUpToSeconds, QByteArray::fromRawData(fraction, sizeof fraction));
}

// The hour at the end of daylight saving time comes twice.
bool Iso8601Time::isKnown(const QDateTime &time) const
{
    return time.time().msecsSinceStartOfDay() / msPerSecond == m_secondOfDay &&
           time.date() == m_date && time.isDaylightTime() == m_isDaylightTime;
}

void Iso8601Time::update(const QDateTime &time)
{
    if (isKnown(time))
        return;
    m_date = time.date();
    m_secondOfDay = time.time().msecsSinceStartOfDay() / msPerSecond;
    m_isDaylightTime = time.isDaylightTime();
    m_text = formatAsISO8601(time).toLatin1();
}

} // namespace Morvex
