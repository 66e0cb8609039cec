#pragma once

#include "shared/workbook/xlscell.h"

#include <QVector>

#include <optional>
#include <string_view>
#include <vector>

class QTextCodec;

namespace Morvex {

/// How the records of a workbook are to be read.
struct BiffForm
{
    /// Of texts; null when they need none.
    QTextCodec *codec = nullptr;
    /// From the start of a cell's record.
    int valueOffset = 6;
    QVector<QString> sharedStrings;
};

/// The cells of a sheet of an .xls workbook.
class BiffSheet
{
public:
    static const unsigned maxRow = 0xffff;
    static const unsigned maxColumn = 0xff;

    /// Nothing when no sheet begins at @p offset of the stream, or it is damaged.
    static std::optional<BiffSheet> read(std::string_view stream, quint32 offset,
                                         const BiffForm &form);
    /// Whether the sheet there has a cell with a format and no content.
    static bool hasBlank(std::string_view stream, quint32 offset, unsigned column, unsigned row);

    /// Nothing for a cell without content. Of two cells at one place the later one counts.
    std::optional<XlsCell> cell(unsigned column, unsigned row) const;
    std::size_t cellCount() const { return m_cells.size(); }

private:
    class Reader;

    struct PlacedCell
    {
        quint32 place;
        XlsCell cell;
    };

    // In the order of places, one for each.
    std::vector<PlacedCell> m_cells;
};

} // namespace Morvex
