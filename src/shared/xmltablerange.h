#pragma once

#include "morvex_export.h"
#include "shared/tablerange.h"

#include <QRegExp>

#include <cstddef>
#include <iterator>
#include <optional>
#include <string>
#include <vector>

namespace Morvex {

/// A table read from its XML form.
class MORVEX_EXPORT XmlTableRange : public TableRange
{
public:
    struct Cell
    {
        std::string text;
        /// Filled by a comparison, in cells whose text serves as a pattern or matched one.
        mutable std::optional<QRegExp> pattern;
        Color color{};
    };

    /// The cells of one row.
    struct Row
    {
        std::vector<Cell>::const_iterator first;
        std::vector<Cell>::const_iterator last;

        auto begin() const { return first; }
        auto end() const { return last; }
        std::ptrdiff_t size() const { return last - first; }
    };

    /// Steps through the rows of a range, which must outlive it.
    class RowIterator
    {
    public:
        using iterator_category = std::random_access_iterator_tag;
        using value_type = Row;
        using difference_type = std::ptrdiff_t;
        using pointer = const Row *;
        using reference = Row;

        RowIterator(const XmlTableRange &range, difference_type row)
            : m_range(&range)
            , m_row(row)
        {
        }

        Row operator*() const { return m_range->row(m_row); }
        Row operator[](difference_type offset) const { return m_range->row(m_row + offset); }

        RowIterator &operator++() { return *this += 1; }
        RowIterator &operator--() { return *this += -1; }
        RowIterator &operator+=(difference_type rows)
        {
            m_row += rows;
            return *this;
        }

        friend RowIterator operator+(RowIterator a, difference_type rows) { return a += rows; }
        friend RowIterator operator-(RowIterator a, difference_type rows) { return a += -rows; }
        friend difference_type operator-(const RowIterator &a, const RowIterator &b)
        {
            return a.m_row - b.m_row;
        }
        friend bool operator==(const RowIterator &a, const RowIterator &b)
        {
            return a.m_row == b.m_row;
        }
        friend bool operator!=(const RowIterator &a, const RowIterator &b) { return !(a == b); }

    private:
        const XmlTableRange *m_range;
        difference_type m_row;
    };

    /// A table without rows.
    XmlTableRange();

    /// Replaces the content. False, with a message on standard error, for a document that can't be
    /// parsed or is not a table; the content stays as it was.
    bool loadContentFromXml(const std::string &xml);

    RowIterator rowsBegin() const { return RowIterator(*this, 0); }
    RowIterator rowsEnd() const { return RowIterator(*this, rowCount()); }

protected:
    int tableRowCount() const override;
    int tableColumnCount() const override;
    Color tableBackgroundColor(int row, int column) const override;
    std::string tableText(int row, int column) const override;

private:
    Row row(std::ptrdiff_t number) const
    {
        const auto first = m_cells.begin() + number * m_columns;
        return {first, first + m_columns};
    }

    const Cell *cell(int row, int column) const;

    // Row by row.
    std::vector<Cell> m_cells;
    int m_rows = 0;
    int m_columns = 0;
};

} // namespace Morvex
