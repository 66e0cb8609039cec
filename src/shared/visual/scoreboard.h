#pragma once

#include "shared/visual/assignment.h"
#include "shared/visual/cmpresult.h"

namespace Morvex {

/// The results of all pairs of the children of two elements. The types of a pair without one
/// differ.
class ScoreBoard
{
public:
    /// @p firstChild is the index of the first row in the expected tree. @p actual has to live as
    /// long as the board.
    ScoreBoard(int firstChild, int rows, const QList<BrowserElement *> &actual);

    void set(int row, int column, CmpResult result);
    /// The pairs with the lowest sum of scores, in the order of rows. To be called once.
    std::vector<SelectedPair> takeBest();

private:
    size_t indexOf(int row, int column) const
    {
        return size_t(row) * size_t(m_scores.columns) + size_t(column);
    }
    CmpResult take(int row, int column);

    int m_firstChild;
    const QList<BrowserElement *> &m_actual;
    ScoreMatrix m_scores;
    // The places of the results in their list, -1 for none.
    std::vector<int> m_places;
    std::vector<CmpResult> m_results;
};

} // namespace Morvex
