#pragma once

#include "morvex_export.h"

#include <QByteArray>
#include <QDateTime>
#include <QString>

#include <chrono>

namespace Morvex {

/// Texts of times at the speed of a format that writes one for each entry as it comes: the offset
/// of a local time costs a look into the rules of its time zone.
class MORVEX_EXPORT Iso8601Time
{
public:
    /// As formatAsISO8601 and formatAsISO8601WithMs.
    QByteArray text(const QDateTime &time);
    QByteArray textWithMs(const QDateTime &time);
    /// As QDateTime::toString with Qt::ISODate: a local time has no offset.
    void appendIsoDate(QByteArray &out, const QDateTime &time);
    QString isoDate(const QDateTime &time);

private:
    bool isSameSecond(const QDateTime &time) const;
    void update(const QDateTime &time);

    // Most entries come within the second of the one before.
    QDate m_date;
    int m_secondOfDay = -1;
    bool m_isDaylightTime = false;
    std::chrono::steady_clock::time_point m_updated;
    QByteArray m_text;
};

} // namespace Morvex
