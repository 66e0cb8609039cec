#include "test/report/bufferedreport.h"

#include "test/output/reportfile.h"

namespace Morvex {
namespace {

const int pieceSize = 64 * 1024;

} // namespace

void BufferedReport::append(const QByteArray &text)
{
    append(m_hasGap ? m_textAfterGap : m_text, text);
}

void BufferedReport::fillGap(const QByteArray &text)
{
    append(m_text, text);
    for (const QByteArray &piece : m_textAfterGap)
        append(m_text, piece);
    m_textAfterGap.clear();
    m_hasGap = false;
}

void BufferedReport::writeTo(ReportFile &file) const
{
    for (const QByteArray &piece : m_text)
        file.write(piece);
}

void BufferedReport::append(Pieces &pieces, const QByteArray &text)
{
    const bool fits = !pieces.empty() && pieces.back().size() + text.size() <= pieceSize;
    if (fits) {
        pieces.back() += text;
        return;
    }
    if (!pieces.empty())
        pieces.back().squeeze();
    pieces.push_back(text);
}

} // namespace Morvex
