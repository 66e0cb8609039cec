#include "shared/visual/assignment.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <queue>
#include <random>

using namespace Morvex;

namespace {

int sizeOf(const ScoreMatrix &matrix)
{
    return std::max(matrix.rows, matrix.columns);
}

long long scoreAt(const ScoreMatrix &matrix, int row, int column)
{
    return row < matrix.rows && column < matrix.columns
               ? matrix.scores[size_t(row * matrix.columns + column)]
               : unmatchedScore;
}

long long bestSum(const ScoreMatrix &matrix)
{
    std::vector<int> order(size_t(sizeOf(matrix)));
    std::iota(order.begin(), order.end(), 0);
    long long best = -1;
    bool hasBest = false;
    do {
        long long sum = 0;
        for (int row = 0; row < sizeOf(matrix); ++row)
            sum += scoreAt(matrix, row, order[size_t(row)]);
        best = hasBest ? std::min(best, sum) : sum;
        hasBest = true;
    } while (std::next_permutation(order.begin(), order.end()));
    return best;
}

// The same method with nothing done for speed, on labels and slack as they are.
struct PlainMatching
{
    explicit PlainMatching(const ScoreMatrix &scores)
        : matrix(scores)
        , n(sizeOf(scores))
        , rowLabel(size_t(n), -unmatchedScore)
        , columnLabel(size_t(n), 0)
        , columnOf(size_t(n), -1)
        , rowOf(size_t(n), -1)
    {
        for (int row = 0; row < matrix.rows; ++row) {
            rowLabel[size_t(row)] = -scoreAt(matrix, row, 0);
            for (int column = 1; column < matrix.columns; ++column)
                rowLabel[size_t(row)] =
                    std::max(rowLabel[size_t(row)], -scoreAt(matrix, row, column));
        }
        for (int row = 0; row < n; ++row)
            search(row);
    }

    long long slackOf(int row, int column) const
    {
        return rowLabel[size_t(row)] + columnLabel[size_t(column)] + scoreAt(matrix, row, column);
    }

    void join(int row, int from)
    {
        previous[size_t(row)] = from;
        inRows[size_t(row)] = true;
        rows.push(row);
        for (int column = 0; column < n; ++column) {
            if (slackOf(row, column) < slack[size_t(column)]) {
                slack[size_t(column)] = slackOf(row, column);
                slackRow[size_t(column)] = row;
            }
        }
    }

    // Whether the search ends at the column.
    bool reach(int row, int column)
    {
        if (rowOf[size_t(column)] >= 0) {
            inColumns[size_t(column)] = true;
            join(rowOf[size_t(column)], row);
            return false;
        }
        while (row >= 0) {
            const int next = columnOf[size_t(row)];
            rowOf[size_t(column)] = row;
            columnOf[size_t(row)] = column;
            column = next;
            row = previous[size_t(row)];
        }
        return true;
    }

    void search(int root)
    {
        inRows.assign(size_t(n), false);
        inColumns.assign(size_t(n), false);
        slack.assign(size_t(n), 1LL << 60);
        slackRow.assign(size_t(n), root);
        previous.assign(size_t(n), -1);
        rows = {};
        join(root, -1);
        for (;;) {
            while (!rows.empty()) {
                const int row = rows.front();
                rows.pop();
                for (int column = 0; column < n; ++column) {
                    if (!inColumns[size_t(column)] && slackOf(row, column) == 0 &&
                        reach(row, column))
                        return;
                }
            }
            long long delta = 1LL << 60;
            for (int column = 0; column < n; ++column) {
                if (!inColumns[size_t(column)])
                    delta = std::min(delta, slack[size_t(column)]);
            }
            for (int i = 0; i < n; ++i) {
                rowLabel[size_t(i)] -= inRows[size_t(i)] ? delta : 0;
                (inColumns[size_t(i)] ? columnLabel[size_t(i)] : slack[size_t(i)]) +=
                    inColumns[size_t(i)] ? delta : -delta;
            }
            for (int column = 0; column < n; ++column) {
                if (!inColumns[size_t(column)] && slack[size_t(column)] == 0 &&
                    reach(slackRow[size_t(column)], column))
                    return;
            }
        }
    }

    const ScoreMatrix &matrix;
    int n;
    std::vector<long long> rowLabel, columnLabel, slack;
    std::vector<int> columnOf, rowOf, slackRow, previous;
    std::vector<bool> inRows, inColumns;
    std::queue<int> rows;
};

ScoreMatrix randomMatrix(std::mt19937 &random, int largest, int lowest, int highest)
{
    std::uniform_int_distribution<int> size(1, largest);
    std::uniform_int_distribution<int> score(lowest, highest);
    ScoreMatrix matrix{size(random), size(random), {}};
    for (int i = 0; i < matrix.rows * matrix.columns; ++i)
        matrix.scores.push_back(score(random));
    return matrix;
}

} // namespace

TEST(Assignment, FindsTheLowestSumAndSettlesTiesByTheOrderOfItsSearch)
{
    const std::pair<int, int> ranges[] = {
        {-50, 50}, {0, 2}, {7, 7}, {0, 4000}, {-1000000000, 1000000000}, {65000, 66000}};
    std::mt19937 random(7);
    for (const auto &[lowest, highest] : ranges) {
        for (int round = 0; round < 300; ++round) {
            // Sums are tried one by one where that takes no time.
            const int largest = round % 3 == 0 ? 30 : 6;
            const ScoreMatrix matrix = randomMatrix(random, largest, lowest, highest);
            const std::vector<int> found = cheapestAssignment(matrix);
            PlainMatching plain(matrix);
            ASSERT_EQ(found.size(), size_t(matrix.rows));
            long long sum = unmatchedScore * (long long)(sizeOf(matrix) - matrix.rows);
            for (int row = 0; row < matrix.rows; ++row) {
                const int column = plain.columnOf[size_t(row)];
                ASSERT_EQ(found[size_t(row)], column < matrix.columns ? column : -1);
                sum += scoreAt(matrix, row, column);
            }
            // A row may only stay free at a price below that of all its columns.
            if (largest == 6 && highest < unmatchedScore) {
                ASSERT_EQ(sum, bestSum(matrix));
            }
        }
    }
}
