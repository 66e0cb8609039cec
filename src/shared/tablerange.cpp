#include "shared/tablerange.h"

#include <cstdio>
#include <tinyxml.h>

namespace Morvex {
namespace {

const char noColorText[] = "#00000000";

void appendTextElement(TiXmlElement &parent, const char *name, const std::string &text)
{
    TiXmlElement element(name);
    element.InsertEndChild(TiXmlText(text));
    parent.InsertEndChild(element);
}

bool readHexPair(const std::string &text, std::size_t position, quint8 &value)
{
    unsigned int number = 0;
    int length = 0;
    if (std::sscanf(text.c_str() + position, "%2x%n", &number, &length) != 1 || length != 2)
        return false;
    value = static_cast<quint8>(number);
    return true;
}

} // namespace

TableRange::TableRange(int firstRow, int endRow, int firstColumn, int endColumn)
    : m_firstRow(firstRow)
    , m_endRow(endRow)
    , m_firstColumn(firstColumn)
    , m_endColumn(endColumn)
{
}

TableRange::~TableRange() = default;

void TableRange::setRange(int firstRow, int endRow, int firstColumn, int endColumn)
{
    m_firstRow = firstRow;
    m_endRow = endRow;
    m_firstColumn = firstColumn;
    m_endColumn = endColumn;
}

int TableRange::rowCount() const
{
    return m_firstRow < 0 || m_endRow < 0 ? tableRowCount() : m_endRow - m_firstRow;
}

int TableRange::columnCount() const
{
    return m_firstColumn < 0 || m_endColumn < 0 ? tableColumnCount() : m_endColumn - m_firstColumn;
}

std::string TableRange::text(int row, int column) const
{
    return tableText(row + qMax(m_firstRow, 0), column + qMax(m_firstColumn, 0));
}

TableRange::Color TableRange::backgroundColor(int row, int column) const
{
    return tableBackgroundColor(row + qMax(m_firstRow, 0), column + qMax(m_firstColumn, 0));
}

std::string TableRange::contentAsXml(int flags) const
{
    if (flags == 0)
        return {};
    TiXmlDocument document;
    document.InsertEndChild(TiXmlDeclaration("1.0", "utf-8", ""));
    contentAsXml(&document, flags);
    TiXmlPrinter printer;
    printer.SetIndent("    ");
    printer.SetLineBreak("\n");
    document.Accept(&printer);
    return printer.Str();
}

void TableRange::contentAsXml(TiXmlNode *node, int flags) const
{
    if (node && flags != 0)
        contentAsXmlImpl(node, flags);
}

void TableRange::contentAsXmlImpl(TiXmlNode *node, int flags) const
{
    TiXmlNode *table = node->InsertEndChild(TiXmlElement("table"));
    if (flags & TextContent)
        table->ToElement()->SetAttribute("hasText", "1");
    if (flags & BackgroundColorContent)
        table->ToElement()->SetAttribute("hasBackgroundColor", "1");
    const int columns = columnCount();
    for (int row = 0, rows = rowCount(); row < rows; ++row) {
        TiXmlNode *rowElement = table->InsertEndChild(TiXmlElement("row"));
        for (int column = 0; column < columns; ++column) {
            TiXmlElement cell("cell");
            if (flags & TextContent)
                appendTextElement(cell, "text", text(row, column));
            const std::string color = colorToString(
                flags & BackgroundColorContent ? backgroundColor(row, column) : Color{});
            if (color != noColorText)
                appendTextElement(cell, "backgroundColor", color);
            rowElement->InsertEndChild(cell);
        }
    }
}

std::string TableRange::colorToString(const Color &color)
{
    char text[sizeof noColorText];
    std::snprintf(text, sizeof text, "#%02X%02X%02X%02X", color[0], color[1], color[2], color[3]);
    return text;
}

TableRange::Color TableRange::colorFromString(const std::string &text)
{
    const bool hasAlpha = text.size() == 9;
    if ((!hasAlpha && text.size() != 7) || text[0] != '#')
        return {};
    Color color{255, 0, 0, 0};
    std::size_t position = 1;
    for (std::size_t byte = hasAlpha ? 0 : 1; byte < color.size(); ++byte, position += 2) {
        if (!readHexPair(text, position, color[byte]))
            return {};
    }
    return color;
}

} // namespace Morvex
