#pragma once

#include "morvex_export.h"

#include <QByteArray>
#include <QDateTime>
#include <QString>

namespace Morvex {

/// Writes times in ISO format ("2024-03-01T12:00:00"), as QDateTime::toString does, but at the
/// speed of a report that writes one for each entry.
class MORVEX_EXPORT IsoTime
{
public:
    void append(QByteArray &out, const QDateTime &time);
    QString text(const QDateTime &time);

private:
    // Most entries come within the second of the one before.
    QDate m_date;
    int m_secondOfDay = -1;
    QByteArray m_text;
};

} // namespace Morvex
