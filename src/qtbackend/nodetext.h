#pragma once

#include <QAbstractItemModel>

namespace Morvex {

/// What a node of a tree is called by: the first text of its columns, of which the first may have
/// none but an icon.
struct NodeText
{
    /// Empty when there is none.
    QString text;
    /// -1 then.
    int column = -1;
};

NodeText nodeTextOf(const QAbstractItemModel &model, int row, const QModelIndex &parent);

} // namespace Morvex
