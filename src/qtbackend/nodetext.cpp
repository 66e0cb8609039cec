#include "qtbackend/nodetext.h"

namespace Morvex {

NodeText nodeTextOf(const QAbstractItemModel &model, int row, const QModelIndex &parent)
{
    // Further ones are no names of anything.
    const int maxColumns = 20;
    const int columns = qMin(model.columnCount(parent), maxColumns);
    for (int column = 0; column < columns; ++column) {
        const QString text = model.index(row, column, parent).data().toString();
        if (!text.isEmpty())
            return {text, column};
    }
    return {};
}

} // namespace Morvex
