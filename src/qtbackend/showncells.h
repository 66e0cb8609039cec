#pragma once

#include <QString>

#include <vector>

class QAbstractItemView;
class QHeaderView;

namespace Morvex {

// What a view shows of its model, whether or not it is scrolled there.

/// The rows of the top level that are not hidden.
std::vector<int> shownRows(const QAbstractItemView *view);
std::vector<int> shownColumns(const QAbstractItemView *view);

/// The texts of the cells as the user sees them: a line for each row, in a tree each row that is
/// expanded, tabs between the cells. Marks of checked, unchecked and partially checked cells are
/// "[x]", "[ ]" and "[-]". Rows beyond the first ten thousand cells are counted only.
QString shownCells(const QAbstractItemView *view);

/// The titles of the sections that are not hidden, as the user has ordered them, one a line.
QString shownSections(const QHeaderView *header);

} // namespace Morvex
