#pragma once

#include "shared/tablerange.h"

#include <QPointer>

#include <vector>

class QAbstractItemModel;
class QAbstractItemView;

namespace Morvex {

/// What a view shows: which rows and columns are hidden is settled when the range is made, the
/// cells are read at each call. Rows and columns come in the order of the model; of a tree there
/// is the top level.
class ModelTableRange : public TableRange
{
public:
    /// Ends beyond the table are those of the table.
    ModelTableRange(QAbstractItemView *view, int firstRow, int endRow, int firstColumn,
                    int endColumn);

    /// Whether the widget shows rows and columns.
    static bool isTable(const QObject *object);

protected:
    int tableRowCount() const override;
    int tableColumnCount() const override;
    Color tableBackgroundColor(int row, int column) const override;
    std::string tableText(int row, int column) const override;

private:
    QVariant data(int row, int column, int role) const;

    QPointer<QAbstractItemView> m_view;
    // Those of the model that are shown.
    std::vector<int> m_rows;
    std::vector<int> m_columns;
};

} // namespace Morvex
