#include "test/report/iso8601time.h"

#include "test/reportgeneratorshared.h"

namespace Morvex {
namespace {

using Clock = std::chrono::steady_clock;

const int msPerSecond = 1000;
const int timeSeparator = 10;
const int lengthUpToSeconds = 19;

// The rules of a zone, and the zone of the process, may change.
const std::chrono::seconds longestMemory(10);

QByteArray withMs(QByteArray text, int ms)
{
    const char fraction[] = {'.', static_cast<char>('0' + ms / 100),
                             static_cast<char>('0' + ms / 10 % 10),
                             static_cast<char>('0' + ms % 10)};
    return text.insert(lengthUpToSeconds, QByteArray::fromRawData(fraction, sizeof fraction));
}

// Other years than those of four digits take more room.
bool hasUsualLength(const QByteArray &text)
{
    return text.size() > lengthUpToSeconds && text.at(timeSeparator) == 'T';
}

} // namespace

QByteArray Iso8601Time::text(const QDateTime &time)
{
    if (time.timeSpec() != Qt::LocalTime)
        return formatAsISO8601(time).toLatin1();
    update(time);
    return m_text;
}

QByteArray Iso8601Time::textWithMs(const QDateTime &time)
{
    if (time.timeSpec() == Qt::LocalTime) {
        update(time);
        if (hasUsualLength(m_text))
            return withMs(m_text, time.time().msec());
    }
    return formatAsISO8601WithMs(time).toLatin1();
}

void Iso8601Time::appendIsoDate(QByteArray &out, const QDateTime &time)
{
    if (time.timeSpec() == Qt::LocalTime) {
        // Without the offset the text of a second holds for ever.
        if (!isSameSecond(time))
            update(time);
        if (hasUsualLength(m_text)) {
            out.append(m_text.constData(), lengthUpToSeconds);
            return;
        }
    }
    out += time.toString(Qt::ISODate).toLatin1();
}

QString Iso8601Time::isoDate(const QDateTime &time)
{
    QByteArray text;
    appendIsoDate(text, time);
    return QString::fromLatin1(text);
}

bool Iso8601Time::isSameSecond(const QDateTime &time) const
{
    // The hour at the end of daylight saving time comes twice, with another offset.
    return time.isValid() && time.time().msecsSinceStartOfDay() / msPerSecond == m_secondOfDay &&
           time.date() == m_date && time.isDaylightTime() == m_isDaylightTime;
}

void Iso8601Time::update(const QDateTime &time)
{
    if (isSameSecond(time) && Clock::now() - m_updated < longestMemory)
        return;
    m_date = time.date();
    m_secondOfDay = time.time().msecsSinceStartOfDay() / msPerSecond;
    m_isDaylightTime = time.isDaylightTime();
    m_updated = Clock::now();
    m_text = formatAsISO8601(time).toLatin1();
}

} // namespace Morvex
