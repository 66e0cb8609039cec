#include "qtbackend/longlist.h"

namespace Morvex {
namespace {

const int shownBytesOfSum = 8;

} // namespace

LongList::LongList(int shownLines, int summedLines)
    : m_shownLines(qMax(1, shownLines))
    , m_summedLines(summedLines)
{
}

void LongList::addToSum(const QString &line)
{
    m_sum.addData((line + QLatin1Char('\n')).toUtf8());
}

QString LongList::text() const
{
    const QString text = m_lines.join(QLatin1Char('\n'));
    if (m_count <= m_shownLines)
        return text;
    const QByteArray sum = m_sum.result().left(shownBytesOfSum).toHex();
    return QStringLiteral("%1\n(%2 more with the sum %3)")
        .arg(text, QString::number(m_count - m_shownLines), QString::fromLatin1(sum));
}

} // namespace Morvex
