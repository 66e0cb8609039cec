#include "shared/workbook/biffrecord.h"

#include <QtEndian>

#include <cstring>

namespace Morvex {

bool BiffRecord::isBof() const
{
    return m_type == Bof2 || m_type == Bof3 || m_type == Bof4 || m_type == Bof5;
}

template <typename Number>
Number BiffRecord::number(int offset) const
{
    if (offset < 0 || offset + int(sizeof(Number)) > size())
        return 0;
    return qFromLittleEndian<Number>(m_content.data() + offset);
}

quint8 BiffRecord::byte(int offset) const
{
    return number<quint8>(offset);
}

quint16 BiffRecord::word(int offset) const
{
    return number<quint16>(offset);
}

quint32 BiffRecord::doubleWord(int offset) const
{
    return number<quint32>(offset);
}

double BiffRecord::real(int offset) const
{
    const auto bits = number<quint64>(offset);
    double value = 0;
    std::memcpy(&value, &bits, sizeof value);
    return value;
}

std::string_view BiffRecord::from(int offset) const
{
    return m_content.substr(static_cast<std::size_t>(qBound(0, offset, size())));
}

bool BiffRecordWalk::next(BiffRecord *record)
{
    do {
        if (m_isComplete || !read(record))
            return false;
        if (record->isBof())
            ++m_depth;
        else if (m_depth == 0)
            return false;
        else if (record->type() == BiffRecord::Eof)
            --m_depth;
        m_isComplete = m_depth == 0;
    } while (m_depth > 1);
    return !m_isComplete;
}

bool BiffRecordWalk::read(BiffRecord *record)
{
    const std::size_t headerSize = 4;
    if (m_offset > m_stream.size() || m_stream.size() - m_offset < headerSize)
        return false;
    const char *header = m_stream.data() + m_offset;
    const auto size = qFromLittleEndian<quint16>(header + 2);
    if (m_stream.size() - m_offset - headerSize < size)
        return false;
    *record = BiffRecord(qFromLittleEndian<quint16>(header), {header + headerSize, size});
    m_offset += headerSize + size;
    return true;
}

} // namespace Morvex
