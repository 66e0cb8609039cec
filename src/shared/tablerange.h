#pragma once

#include "morvex_export.h"

#include <QtGlobal>

#include <array>
#include <string>

class TiXmlNode;

namespace Morvex {

/// A rectangle of a table. An end is one past the last row or column; a negative value in a field
/// of rows (columns) stands for all rows (columns) of the table.
class MORVEX_EXPORT TableRange
{
public:
    /// Alpha, red, green, blue; all 0 for no colour.
    using Color = std::array<quint8, 4>;

    enum ContentFlag { TextContent = 1, BackgroundColorContent = 2 };

    TableRange(int firstRow, int endRow, int firstColumn, int endColumn);
    virtual ~TableRange();

    /// Appends a `table` element with what @p flags, of type ContentFlag, ask for. A null node and
    /// no flags do nothing.
    virtual void contentAsXml(TiXmlNode *node, int flags) const;
    /// A whole document; empty without flags.
    std::string contentAsXml(int flags) const;

    int rowCount() const;
    int columnCount() const;
    /// In UTF-8. Coordinates count from the first row and column of the range.
    std::string text(int row, int column) const;
    Color backgroundColor(int row, int column) const;

    /// "#AARRGGBB".
    static std::string colorToString(const Color &color);
    /// Also takes "#RRGGBB". No colour for a text of another form.
    static Color colorFromString(const std::string &text);

protected:
    virtual int tableRowCount() const = 0;
    virtual int tableColumnCount() const = 0;
    // Both take coordinates of the table.
    virtual Color tableBackgroundColor(int row, int column) const = 0;
    virtual std::string tableText(int row, int column) const = 0;

    void setRange(int firstRow, int endRow, int firstColumn, int endColumn);

private:
    void contentAsXmlImpl(TiXmlNode *node, int flags) const;

    int m_firstRow;
    int m_endRow;
    int m_firstColumn;
    int m_endColumn;
};

} // namespace Morvex
