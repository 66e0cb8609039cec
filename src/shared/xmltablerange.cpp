#include "shared/xmltablerange.h"

#include "shared/elementtext.h"
#include "shared/xmlguard.h"

#include <QRegularExpression>

#include <cstdio>
#include <tinyxml.h>
#include <utility>

namespace Morvex {
namespace {

int countChildren(const TiXmlElement &parent, const char *name)
{
    int count = 0;
    for (auto *child = parent.FirstChildElement(name); child;
         child = child->NextSiblingElement(name))
        ++count;
    return count;
}

// What references to blanks stand for.
QString unescapedBlanks(QString text)
{
    static const QRegularExpression reference(QStringLiteral("&#(x?)([0-9a-fA-F]+);"));
    for (QRegularExpressionMatch match = reference.match(text); match.hasMatch();
         match = reference.match(text)) {
        const int base = match.captured(1).isEmpty() ? 10 : 16;
        text.replace(match.capturedStart(), match.capturedLength(),
                     QChar(match.captured(2).toUShort(nullptr, base)));
    }
    return text;
}

std::string childText(const TiXmlElement &cell, const char *name)
{
    const TiXmlElement *child = cell.FirstChildElement(name);
    return child ? wholeText(*child) : std::string();
}

// The parser drops a text of nothing but blanks even when it is told to keep white space. In a
// CDATA section it does keep it.
std::string withBlankTextsKept(const std::string &xml)
{
    static const QRegularExpression blankText(
        QStringLiteral("<text>((?:[ \\t\\r\\n]|&#(?:x0?[9aAdD]|0?9|10|13|x20|32);)+)</text>"));
    const QString document = QString::fromUtf8(xml.data(), static_cast<int>(xml.size()));
    // Inside of these the replacement would be content.
    if (document.contains(QLatin1String("<![CDATA[")) || document.contains(QLatin1String("<!--")) ||
        !document.contains(blankText))
        return xml;
    QString kept;
    int copied = 0;
    for (auto matches = blankText.globalMatch(document); matches.hasNext();) {
        const QRegularExpressionMatch match = matches.next();
        kept += QStringView(document).mid(copied, match.capturedStart(1) - copied);
        kept +=
            QLatin1String("<![CDATA[") + unescapedBlanks(match.captured(1)) + QLatin1String("]]>");
        copied = match.capturedEnd(1);
    }
    kept += QStringView(document).mid(copied);
    return kept.toStdString();
}

} // namespace

XmlTableRange::XmlTableRange()
    : TableRange(0, 0, 0, 0)
{
}

bool XmlTableRange::loadContentFromXml(const std::string &xml)
{
    TiXmlDocument document;
    // White space in cells is content.
    const KeepWhiteSpace keepWhiteSpace;
    const QString error = parseXml(withBlankTextsKept(xml), &document);
    if (!error.isEmpty()) {
        // The parser gives 0 for a place that it does not know.
        std::fprintf(stderr, "XML Parse Error at %d:%d:%s\n", qMax(1, document.ErrorRow()),
                     qMax(1, document.ErrorCol()), qUtf8Printable(error));
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
    const TiXmlElement *firstRow = table.FirstChildElement("row");
    const int columns = firstRow ? countChildren(*firstRow, "cell") : 0;
    int rows = 0;
    std::vector<Cell> cells;
    for (auto *row = firstRow; row; row = row->NextSiblingElement("row"), ++rows) {
        if (countChildren(*row, "cell") != columns) {
            std::fputs("Malformed table XML, number of columns differ between rows\n", stderr);
            return false;
        }
        for (auto *cell = row->FirstChildElement("cell"); cell;
             cell = cell->NextSiblingElement("cell")) {
            Cell content;
            content.text = childText(*cell, "text");
            content.color = colorFromString(childText(*cell, "backgroundColor"));
            cells.push_back(std::move(content));
        }
    }
    m_cells = std::move(cells);
    m_rows = rows;
    m_columns = columns;
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
