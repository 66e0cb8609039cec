#pragma once

#include "morvex_export.h"

#include <vector>

namespace Morvex {

/// What a row or column costs that is matched with none.
const int unmatchedScore = 65536;

/// Costs of matching rows with columns, as many values as their product, row by row.
struct ScoreMatrix
{
    int rows;
    int columns;
    std::vector<int> scores;
};

/// Matches rows and columns one to one, with the lowest sum of scores. Returns the column of each
/// row, -1 for none. Of matchings with the same sum it is always the same one that is found.
MORVEX_EXPORT std::vector<int> cheapestAssignment(const ScoreMatrix &matrix);

} // namespace Morvex
