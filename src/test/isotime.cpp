#include "test/isotime.h"

namespace Morvex {

void IsoTime::append(QByteArray &out, const QDateTime &time)
{
    if (time.timeSpec() != Qt::LocalTime || !time.isValid()) {
        out += time.toString(Qt::ISODate).toLatin1();
        return;
    }
    const QDate date = time.date();
    const int secondOfDay = time.time().msecsSinceStartOfDay() / 1000;
    if (secondOfDay != m_secondOfDay || date != m_date) {
        m_date = date;
        m_secondOfDay = secondOfDay;
        m_text = time.toString(Qt::ISODate).toLatin1();
    }
    out += m_text;
}

QString IsoTime::text(const QDateTime &time)
{
    QByteArray text;
    append(text, time);
    return QString::fromLatin1(text);
}

} // namespace Morvex
