#include "shared/workbook/biffsheet.h"

#include "shared/workbook/biffrecord.h"
#include "shared/workbook/bifftext.h"

#include <algorithm>
#include <cstring>
#include <iterator>

namespace Morvex {
namespace {

quint32 placeOf(unsigned row, unsigned column)
{
    return row << 16 | column;
}

quint32 placeOf(const BiffRecord &record)
{
    return placeOf(record.row(), record.column());
}

XlsCell numberCell(XlsCell::Type type, double number)
{
    return {type, QString(), number};
}

XlsCell booleanOrError(quint8 value, bool isError)
{
    return numberCell(isError ? XlsCell::Error : XlsCell::Boolean, value);
}

// A number in 30 bits: a whole one or the upper part of a real one, perhaps times 100.
XlsCell decodeRk(quint32 rk)
{
    const bool isHundredfold = rk & 1;
    const bool isWhole = rk & 2;
    double value = 0;
    if (isWhole) {
        value = static_cast<qint32>(rk) >> 2;
    } else {
        const quint64 bits = quint64(rk & ~3u) << 32;
        std::memcpy(&value, &bits, sizeof value);
    }
    if (isHundredfold)
        value /= 100;
    return numberCell(isWhole && !isHundredfold ? XlsCell::Integer : XlsCell::Float, value);
}

} // namespace

class BiffSheet::Reader
{
public:
    Reader(BiffSheet *sheet, const BiffForm &form)
        : m_cells(sheet->m_cells)
        , m_form(form)
    {
    }

    // False for a record that can't be right.
    bool take(const BiffRecord &record)
    {
        if (record.type() == BiffRecord::Continue) {
            // Other records have continuations, too.
            if (m_isInText)
                m_text.append(record.from(0));
            return true;
        }
        finishText();
        switch (record.type()) {
        case BiffRecord::Label2:
        case BiffRecord::Label3:
            takeText(record, XlsCell::String);
            return true;
        case BiffRecord::RichString:
            takeText(record, XlsCell::RichText);
            return true;
        case BiffRecord::SharedLabel:
            return takeSharedText(record);
        case BiffRecord::Formula:
        case BiffRecord::Formula3:
        case BiffRecord::Formula4:
            takeFormula(record);
            return true;
        case BiffRecord::String2:
            takeResult(record.byte(0), record.from(1));
            return true;
        case BiffRecord::String3:
            takeResult(record.word(0), record.from(2));
            return true;
        default:
            takeNumber(record);
            return true;
        }
    }

    void finish()
    {
        finishText();
        sortCells();
    }

private:
    void add(quint32 place, const XlsCell &cell)
    {
        m_cells.push_back({place, cell});
        m_isResultDue = false;
    }
    void add(const BiffRecord &record, const XlsCell &cell) { add(placeOf(record), cell); }

    void takeNumber(const BiffRecord &record)
    {
        const int offset = m_form.valueOffset;
        switch (record.type()) {
        case BiffRecord::Integer2:
            add(record, numberCell(XlsCell::Integer, record.word(offset)));
            break;
        case BiffRecord::Number2:
        case BiffRecord::Number3:
            add(record, numberCell(XlsCell::Float, record.real(offset)));
            break;
        case BiffRecord::Rk:
            add(record, decodeRk(record.doubleWord(offset)));
            break;
        case BiffRecord::MultipleRk:
            takeMultiple(record);
            break;
        case BiffRecord::BooleanOrError2:
        case BiffRecord::BooleanOrError3:
            add(record, booleanOrError(record.byte(offset), record.byte(offset + 1) != 0));
            break;
        default:
            break;
        }
    }

    void takeMultiple(const BiffRecord &record)
    {
        const int firstOffset = 4;
        const int pairSize = 6;
        const int lastColumnSize = 2;
        unsigned column = record.column();
        for (int offset = firstOffset;
             offset + pairSize + lastColumnSize <= record.size() && column <= maxColumn;
             offset += pairSize)
            add(placeOf(record.row(), column++), decodeRk(record.doubleWord(offset + 2)));
    }

    void takeText(const BiffRecord &record, XlsCell::Type type)
    {
        const bool hasShortLength = record.type() == BiffRecord::Label2;
        const int offset = m_form.valueOffset;
        const int length = hasShortLength ? record.byte(offset) : record.word(offset);
        add(record, {type, QString(), 0});
        beginText(length, record.from(offset + (hasShortLength ? 1 : 2)));
    }

    bool takeSharedText(const BiffRecord &record)
    {
        const quint32 index = record.doubleWord(m_form.valueOffset);
        if (index >= static_cast<quint32>(m_form.sharedStrings.size()))
            return false;
        add(record, {XlsCell::String, m_form.sharedStrings.at(static_cast<int>(index)), 0});
        return true;
    }

    // The result is a number, or its last two bytes say that it is none.
    void takeFormula(const BiffRecord &record)
    {
        const int offset = m_form.valueOffset;
        const quint16 noNumber = 0xffff;
        const quint8 textFollows = 0;
        const quint8 boolean = 1;
        const quint8 error = 2;
        const quint8 kind = record.byte(offset);
        if (record.word(offset + 6) != noNumber) {
            add(record, numberCell(XlsCell::Float, record.real(offset)));
        } else if (kind == boolean || kind == error) {
            add(record, booleanOrError(record.byte(offset + 2), kind == error));
        } else {
            add(record, {XlsCell::String, QLatin1String(""), 0});
            m_isResultDue = kind == textFollows;
        }
    }

    // A text follows the formula whose result it is, which has added the last cell.
    void takeResult(int length, std::string_view piece)
    {
        if (m_isResultDue)
            beginText(length, piece);
        m_isResultDue = false;
    }

    void beginText(int length, std::string_view piece)
    {
        m_text = BiffText(m_form.codec, length, piece);
        m_isInText = true;
    }

    void finishText()
    {
        if (m_isInText)
            m_cells.back().cell.text = m_text.text();
        m_isInText = false;
    }

    void sortCells()
    {
        const auto isBefore = [](const PlacedCell &a, const PlacedCell &b) {
            return a.place < b.place;
        };
        if (!std::is_sorted(m_cells.begin(), m_cells.end(), isBefore))
            std::stable_sort(m_cells.begin(), m_cells.end(), isBefore);
        // From the back, so that the later one of two stays.
        const auto first =
            std::unique(m_cells.rbegin(), m_cells.rend(),
                        [](const PlacedCell &a, const PlacedCell &b) { return a.place == b.place; })
                .base();
        m_cells.erase(m_cells.begin(), first);
    }

    std::vector<PlacedCell> &m_cells;
    const BiffForm &m_form;
    BiffText m_text;
    bool m_isInText = false;
    bool m_isResultDue = false;
};

std::optional<BiffSheet> BiffSheet::read(std::string_view stream, quint32 offset,
                                         const BiffForm &form)
{
    BiffSheet sheet;
    Reader reader(&sheet, form);
    BiffRecordWalk walk(stream, offset);
    BiffRecord record;
    while (walk.next(&record)) {
        if (!reader.take(record))
            return std::nullopt;
    }
    if (!walk.isComplete())
        return std::nullopt;
    reader.finish();
    return sheet;
}

bool BiffSheet::hasBlank(std::string_view stream, quint32 offset, unsigned column, unsigned row)
{
    const quint32 wanted = placeOf(row, column);
    BiffRecordWalk walk(stream, offset);
    BiffRecord record;
    while (walk.next(&record)) {
        const bool isOne =
            record.type() == BiffRecord::Blank2 || record.type() == BiffRecord::Blank3;
        const bool isRange = record.type() == BiffRecord::MultipleBlank;
        const quint32 last =
            isRange ? placeOf(record.row(), record.word(record.size() - 2)) : placeOf(record);
        if ((isOne || isRange) && placeOf(record) <= wanted && wanted <= last)
            return true;
    }
    return false;
}

std::optional<XlsCell> BiffSheet::cell(unsigned column, unsigned row) const
{
    if (row > maxRow || column > maxColumn)
        return std::nullopt;
    const quint32 place = placeOf(row, column);
    const auto found = std::lower_bound(
        m_cells.begin(), m_cells.end(), place,
        [](const PlacedCell &cell, quint32 wanted) { return cell.place < wanted; });
    if (found == m_cells.end() || found->place != place)
        return std::nullopt;
    return found->cell;
}

} // namespace Morvex
