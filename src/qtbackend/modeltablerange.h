#pragma once

#include <QPointer>
#include <QVariant>

#include <vector>

class QAbstractItemView;
class QColor;
class QXmlStreamWriter;

namespace Morvex {

/// A rectangle of what a view shows: which rows and columns are hidden is settled when the range is
/// made, the cells are read at each call. Rows and columns come in the order of the model; of a
/// tree there is the top level.
class ModelTableRange
{
public:
    /// What the XML may hold, as in TableRange.
    enum ContentFlag { TextContent = 1, BackgroundColorContent = 2 };

    /// An end is one past the last row or column; one beyond the table is that of the table. A
    /// negative number among those of rows (columns) stands for all of them.
    ModelTableRange(QAbstractItemView *view, int firstRow, int endRow, int firstColumn,
                    int endColumn);

    /// Whether the widget shows rows and columns.
    static bool isTable(const QObject *object);

    /// A document with a `table` element, as TableRange gives it; empty without flags.
    QString contentAsXml(int flags) const;

private:
    void writeCell(QXmlStreamWriter &writer, int row, int column, int flags) const;
    QVariant data(int row, int column, int role) const;
    QColor backgroundColor(int row, int column) const;

    QPointer<QAbstractItemView> m_view;
    // Those of the model that are in the range.
    std::vector<int> m_rows;
    std::vector<int> m_columns;
};

} // namespace Morvex
