#include "shared/visual/assignment.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>

namespace Morvex {
namespace {

const int none = -1;

struct Edge
{
    int row;
    int column;
};

// The Hungarian method on weights, which are the negative scores. The order in which it looks at
// rows and columns settles ties.
class Matching
{
public:
    explicit Matching(const ScoreMatrix &matrix)
        : m_matrix(matrix)
        , m_size(std::max(matrix.rows, matrix.columns))
        , m_rows(size_t(m_size))
        , m_columns(size_t(m_size))
        , m_padding(size_t(m_size), unmatchedScore)
    {
        if (matrix.columns < m_size)
            padRows();
        for (int row = 0; row < m_size; ++row)
            m_rows[size_t(row)].label = largestWeight(row);
    }

    std::vector<int> solve()
    {
        for (int row = 0; row < m_size; ++row) {
            if (m_rows[size_t(row)].match == none)
                grow(row);
        }
        std::vector<int> result;
        for (int row = 0; row < m_matrix.rows; ++row) {
            const int column = m_rows[size_t(row)].match;
            result.push_back(column < m_matrix.columns ? column : none);
        }
        return result;
    }

private:
    struct Row
    {
        std::int64_t label = 0;
        int match = none;
        // The row above it in the tree.
        int previous = none;
    };

    struct Column
    {
        std::int64_t label = 0;
        // Counts from the start of the tree: the shift is not taken off.
        std::int64_t slack = 0;
        int slackRow = none;
        int match = none;
        bool isInTree = false;
        // The shift at which it joined the tree.
        std::int64_t joined = 0;
    };

    void padRows()
    {
        m_padded.reserve(size_t(m_matrix.rows) * size_t(m_size));
        for (int row = 0; row < m_matrix.rows; ++row) {
            const auto begin = m_matrix.scores.begin() + std::ptrdiff_t(row) * m_matrix.columns;
            m_padded.insert(m_padded.end(), begin, begin + m_matrix.columns);
            m_padded.resize(size_t(row + 1) * size_t(m_size), unmatchedScore);
        }
    }

    const int *scoresOf(int row) const
    {
        if (row >= m_matrix.rows)
            return m_padding.data();
        const std::vector<int> &scores = m_padded.empty() ? m_matrix.scores : m_padded;
        return scores.data() + size_t(row) * size_t(m_size);
    }

    std::int64_t largestWeight(int row) const
    {
        const int *scores = scoresOf(row);
        return -std::int64_t(
            *std::min_element(scores, scores + (row < m_matrix.rows ? m_matrix.columns : m_size)));
    }

    // Matches one more row.
    void grow(int root)
    {
        for (Column &column : m_columns) {
            column.slack = std::numeric_limits<std::int64_t>::max();
            column.isInTree = false;
        }
        m_tight.clear();
        m_treeRows.clear();
        m_shift = 0;
        addRow(root, none);
        Edge last{none, none};
        for (size_t next = 0; last.row == none;) {
            if (next < m_tight.size()) {
                last = follow(m_tight[next++]);
            } else {
                shiftLabels();
                last = followTightColumns();
            }
        }
        applyShift();
        augment(last);
    }

    // The edge when it leads to a free column, else none.
    Edge follow(const Edge &edge)
    {
        Column &column = m_columns[size_t(edge.column)];
        if (column.isInTree)
            return {none, none};
        if (column.match == none)
            return edge;
        column.isInTree = true;
        column.joined = m_shift;
        addRow(column.match, edge.row);
        return {none, none};
    }

    Edge followTightColumns()
    {
        for (int index = 0; index < m_size; ++index) {
            const Column &column = m_columns[size_t(index)];
            if (column.isInTree || column.slack != m_shift)
                continue;
            const Edge edge = follow({column.slackRow, index});
            if (edge.row != none)
                return edge;
        }
        return {none, none};
    }

    void addRow(int index, int previous)
    {
        Row &row = m_rows[size_t(index)];
        row.previous = previous;
        m_treeRows.push_back({index, m_shift});
        const int *scores = scoresOf(index);
        const std::int64_t base = row.label + m_shift;
        for (int i = 0; i < m_size; ++i) {
            Column &column = m_columns[size_t(i)];
            if (column.isInTree)
                continue;
            const std::int64_t slack = base + column.label + scores[i];
            if (slack == m_shift)
                m_tight.push_back({index, i});
            if (slack < column.slack) {
                column.slack = slack;
                column.slackRow = index;
            }
        }
    }

    // By as much as makes another column tight.
    void shiftLabels()
    {
        std::int64_t smallest = std::numeric_limits<std::int64_t>::max();
        for (const Column &column : m_columns) {
            if (!column.isInTree)
                smallest = std::min(smallest, column.slack);
        }
        m_shift = smallest;
    }

    void applyShift()
    {
        for (const TreeRow &treeRow : m_treeRows)
            m_rows[size_t(treeRow.row)].label -= m_shift - treeRow.joined;
        for (Column &column : m_columns) {
            if (column.isInTree)
                column.label += m_shift - column.joined;
        }
    }

    void augment(Edge edge)
    {
        while (edge.row != none) {
            Row &row = m_rows[size_t(edge.row)];
            m_columns[size_t(edge.column)].match = edge.row;
            std::swap(row.match, edge.column);
            edge.row = row.previous;
        }
    }

    struct TreeRow
    {
        int row;
        std::int64_t joined;
    };

    const ScoreMatrix &m_matrix;
    int m_size;
    std::vector<Row> m_rows;
    std::vector<Column> m_columns;
    std::vector<int> m_padding;
    // All scores when there are fewer columns than rows, else empty.
    std::vector<int> m_padded;
    // Edges from rows of the tree to columns, in the order in which they are followed.
    std::vector<Edge> m_tight;
    std::vector<TreeRow> m_treeRows;
    // What the labels of the tree have changed by since its start.
    std::int64_t m_shift = 0;
};

} // namespace

std::vector<int> cheapestAssignment(const ScoreMatrix &matrix)
{
    return matrix.rows == 0 || matrix.columns == 0 ? std::vector<int>(size_t(matrix.rows), none)
                                                   : Matching(matrix).solve();
}

} // namespace Morvex
