#include "shared/xmltablerange.h"

#include "shared/xml/xmlparser.h"

#include <cstdio>
#include <string_view>
#include <utility>

namespace Morvex {
namespace {

using Cell = XmlTableRange::Cell;

// Takes the cells out of table/row/cell, and of each cell the first text and the first colour.
class TableReader final : public XmlContentHandler
{
public:
    bool isTable() const { return m_isTable; }
    /// Whether all rows are as long as the first.
    bool isRegular() const { return m_isRegular; }
    int rows() const { return m_rows; }
    int columns() const { return m_columns; }
    std::vector<Cell> takeCells() { return std::move(m_cells); }

private:
    void startElement(const char *name, const char *const *) override
    {
        if (m_depth++ == m_depthInTable && enters(name))
            ++m_depthInTable;
    }

    bool enters(std::string_view name)
    {
        switch (m_depthInTable) {
        case 0:
            return m_isTable = name == "table";
        case 1:
            m_cellsInRow = 0;
            return name == "row";
        case 2:
            return name == "cell" && addCell();
        case 3:
            return (name == "text" && collect(&m_text)) ||
                   (name == "backgroundColor" && collect(&m_color));
        default:
            return false;
        }
    }

    bool addCell()
    {
        m_cells.emplace_back();
        ++m_cellsInRow;
        m_text.reset();
        m_color.reset();
        return true;
    }

    bool collect(std::optional<std::string> *part)
    {
        if (*part)
            return false;
        m_collected = &part->emplace();
        return true;
    }

    void text(std::string_view part) override
    {
        if (m_depthInTable == 4 && m_depth == 4)
            m_collected->append(part);
    }

    void endElement() override
    {
        if (m_depth-- != m_depthInTable)
            return;
        --m_depthInTable;
        if (m_depthInTable == 2)
            endCell();
        else if (m_depthInTable == 1)
            endRow();
    }

    void endCell()
    {
        if (m_text)
            m_cells.back().text = std::move(*m_text);
        if (m_color)
            m_cells.back().color = TableRange::colorFromString(*m_color);
    }

    void endRow()
    {
        if (m_rows++ == 0)
            m_columns = m_cellsInRow;
        m_isRegular = m_isRegular && m_cellsInRow == m_columns;
    }

    std::vector<Cell> m_cells;
    int m_rows = 0;
    int m_columns = 0;
    bool m_isTable = false;
    bool m_isRegular = true;
    int m_depth = 0;
    // How far the path from the root to here is that to a part of a cell.
    int m_depthInTable = 0;
    int m_cellsInRow = 0;
    std::optional<std::string> m_text;
    std::optional<std::string> m_color;
    std::string *m_collected = nullptr;
};

} // namespace

XmlTableRange::XmlTableRange()
    : TableRange(0, 0, 0, 0)
{
}

bool XmlTableRange::loadContentFromXml(const std::string &xml)
{
    TableReader reader;
    const XmlError error = parseXmlContent(xml, reader);
    if (!error.text.isEmpty()) {
        std::fprintf(stderr, "XML Parse Error at %d:%d:%s\n", error.line, error.column,
                     qUtf8Printable(error.text));
        return false;
    }
    if (!reader.isTable()) {
        std::fputs("Missing table element in XML input\n", stderr);
        return false;
    }
    if (!reader.isRegular()) {
        std::fputs("Malformed table XML, number of columns differ between rows\n", stderr);
        return false;
    }
    m_cells = reader.takeCells();
    m_rows = reader.rows();
    m_columns = reader.columns();
    setRange(0, m_rows, 0, m_columns);
    return true;
}

const XmlTableRange::Cell *XmlTableRange::cell(int row, int column) const
{
    if (row < 0 || row >= m_rows || column < 0 || column >= m_columns)
        return nullptr;
    return &m_cells[static_cast<std::size_t>(row) * static_cast<std::size_t>(m_columns) +
                    static_cast<std::size_t>(column)];
}

int XmlTableRange::tableRowCount() const
{
    return m_rows;
}

int XmlTableRange::tableColumnCount() const
{
    return m_columns;
}

TableRange::Color XmlTableRange::tableBackgroundColor(int row, int column) const
{
    const Cell *content = cell(row, column);
    return content ? content->color : Color{};
}

std::string XmlTableRange::tableText(int row, int column) const
{
    const Cell *content = cell(row, column);
    return content ? content->text : std::string();
}

} // namespace Morvex
