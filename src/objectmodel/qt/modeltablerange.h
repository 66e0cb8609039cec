#pragma once

#include "shared/tablerange.h"

#include <QPointer>

class QAbstractItemModel;
class QAbstractItemView;

namespace Morvex {

/// What a view shows, read at each call.
class ModelTableRange : public TableRange
{
public:
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
    int firstColumn() const;

    QPointer<QAbstractItemView> m_view;
};

} // namespace Morvex
