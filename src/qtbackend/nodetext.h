#pragma once

#include <QAbstractItemModel>

namespace Morvex {

/// What a node of a tree is called by: the first text of its columns, of which the first may have
/// none but an icon. -1 when there is no text.
int textColumnOf(const QAbstractItemModel &model, int row, const QModelIndex &parent);

/// That text; empty when there is none.
QString nodeTextOf(const QAbstractItemModel &model, int row, const QModelIndex &parent);

} // namespace Morvex
