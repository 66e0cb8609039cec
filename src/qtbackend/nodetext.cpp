#include "qtbackend/nodetext.h"

namespace Morvex {
namespace {

// Further ones are no names of anything.
const int maxColumns = 20;

QString textOf(const QAbstractItemModel &model, int row, int column, const QModelIndex &parent)
{
    return model.index(row, column, parent).data().toString();
}

} // namespace

int textColumnOf(const QAbstractItemModel &model, int row, const QModelIndex &parent)
{
    const int columns = qMin(model.columnCount(parent), maxColumns);
    for (int column = 0; column < columns; ++column) {
        if (!textOf(model, row, column, parent).isEmpty())
            return column;
    }
    return -1;
}

QString nodeTextOf(const QAbstractItemModel &model, int row, const QModelIndex &parent)
{
    const int column = textColumnOf(model, row, parent);
    return column < 0 ? QString() : textOf(model, row, column, parent);
}

} // namespace Morvex
