#include "shared/visual/scoreboard.h"

namespace Morvex {

ScoreBoard::ScoreBoard(int firstChild, int rows, const QList<BrowserElement *> &actual)
    : m_firstChild(firstChild)
    , m_actual(actual)
    , m_scores{rows, actual.count(), {}}
{
    const size_t size = size_t(rows) * size_t(actual.count());
    m_scores.scores.assign(size, mismatchResult().score);
    m_places.assign(size, -1);
    m_results.reserve(size_t(rows) * 2);
}

void ScoreBoard::set(int row, int column, CmpResult result)
{
    const size_t index = indexOf(row, column);
    m_scores.scores[index] = result.score;
    m_places[index] = int(m_results.size());
    m_results.push_back(std::move(result));
}

std::vector<SelectedPair> ScoreBoard::takeBest()
{
    const std::vector<int> columns = cheapestAssignment(m_scores);
    std::vector<SelectedPair> selected;
    selected.reserve(columns.size());
    for (int row = 0; row < m_scores.rows; ++row) {
        const int column = columns[size_t(row)];
        if (column >= 0)
            selected.push_back({m_firstChild + row, m_actual[column], take(row, column)});
    }
    return selected;
}

CmpResult ScoreBoard::take(int row, int column)
{
    const int place = m_places[indexOf(row, column)];
    return place < 0 ? mismatchResult() : std::move(m_results[size_t(place)]);
}

} // namespace Morvex
