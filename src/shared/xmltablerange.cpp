#include "shared/xmltablerange.h"

#include "shared/xmlguard.h"

#include <cstdio>
#include <tinyxml.h>

namespace Morvex {
namespace {

// White space in cells is content. The parser knows this only as a setting of the whole process.
class KeepWhiteSpace
{
public:
    KeepWhiteSpace()
        : m_condensed(TiXmlBase::IsWhiteSpaceCondensed())
    {
        TiXmlBase::SetCondenseWhiteSpace(false);
    }
    ~KeepWhiteSpace() { TiXmlBase::SetCondenseWhiteSpace(m_condensed); }

    KeepWhiteSpace(const KeepWhiteSpace &) = delete;
    KeepWhiteSpace &operator=(const KeepWhiteSpace &) = delete;

private:
    bool m_condensed;
};

int countChildren(const TiXmlElement &parent, const char *name)
{
    int count = 0;
    for (auto *child = parent.FirstChildElement(name); child;
         child = child->NextSiblingElement(name))
        ++count;
    return count;
}

std::string childText(const TiXmlElement &cell, const char *name)
{
    const TiXmlElement *child = cell.FirstChildElement(name);
    const char *text = child ? child->GetText() : nullptr;
    return text ? text : std::string();
}

} // namespace

XmlTableRange::XmlTableRange()
    : TableRange(0, 0, 0, 0)
{
}

bool XmlTableRange::loadContentFromXml(const std::string &xml)
{
    TiXmlDocument document;
    const KeepWhiteSpace keepWhiteSpace;
    const QString error = parseXml(xml, &document);
    if (!error.isEmpty()) {
        std::fprintf(stderr, "XML Parse Error at %d:%d:%s\n", document.ErrorRow(),
                     document.ErrorCol(), qPrintable(error));
        return false;
    }
    const TiXmlElement *table = document.FirstChildElement("table");
    if (!table) {
        std::fputs("Missing table element in XML input\n", stderr);
        return false;
    }
    return loadTable(*table);
}

bool XmlTableRange::loadTable(const TiXmlElement &table)
{
    m_cells.clear();
    m_rows = 0;
    const TiXmlElement *firstRow = table.FirstChildElement("row");
    m_columns = firstRow ? countChildren(*firstRow, "cell") : 0;
    for (auto *row = firstRow; row; row = row->NextSiblingElement("row")) {
        if (countChildren(*row, "cell") != m_columns) {
            std::fputs("Malformed table XML, number of columns differ between rows\n", stderr);
            return false;
        }
        ++m_rows;
    }
    setRange(0, m_rows, 0, m_columns);
    m_cells.reserve(static_cast<std::size_t>(m_rows) * static_cast<std::size_t>(m_columns));
    for (auto *row = firstRow; row; row = row->NextSiblingElement("row")) {
        for (auto *cell = row->FirstChildElement("cell"); cell;
             cell = cell->NextSiblingElement("cell")) {
            Cell content;
            content.text = childText(*cell, "text");
            content.color = colorFromString(childText(*cell, "backgroundColor"));
            m_cells.push_back(std::move(content));
        }
    }
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
