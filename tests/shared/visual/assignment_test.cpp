#include "shared/visual/assignment.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
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

ScoreMatrix randomMatrix(std::mt19937 &random, int largest, int lowest, int highest)
{
    const auto pick = [&random](long long from, long long to) {
        return int(from + random() % (to - from + 1));
    };
    const int rows = pick(1, largest);
    ScoreMatrix matrix{rows, pick(1, largest), {}};
    for (int i = 0; i < matrix.rows * matrix.columns; ++i)
        matrix.scores.push_back(pick(lowest, highest));
    return matrix;
}

} // namespace

TEST(Assignment, FindsTheLowestSumAndSettlesTiesByTheOrderOfItsSearch)
{
    const struct
    {
        int lowest;
        int highest;
        // Of the columns that the search finds with nothing done for its speed.
        quint32 checksum;
    } ranges[] = {{-50, 50, 1006666507u},
                  {0, 2, 3019923894u},
                  {7, 7, 3715585641u},
                  {0, 4000, 3228702674u},
                  {-1000000000, 1000000000, 1884491476u},
                  {65000, 66000, 3373800586u}};
    std::mt19937 random(7);
    for (const auto &range : ranges) {
        quint32 checksum = 0;
        for (int round = 0; round < 300; ++round) {
            // Sums are tried one by one where that takes no time.
            const int largest = round % 3 == 0 ? 30 : 6;
            const ScoreMatrix matrix = randomMatrix(random, largest, range.lowest, range.highest);
            const std::vector<int> found = cheapestAssignment(matrix);
            ASSERT_EQ(found.size(), size_t(matrix.rows));
            long long sum = unmatchedScore * (long long)(sizeOf(matrix) - matrix.rows);
            for (int row = 0; row < matrix.rows; ++row) {
                const int column = found[size_t(row)];
                ASSERT_LT(column, matrix.columns);
                checksum = checksum * 31 + quint32(column);
                sum += column < 0 ? unmatchedScore : scoreAt(matrix, row, column);
            }
            // A row may only stay free at a price below that of all its columns.
            if (largest == 6 && range.highest < unmatchedScore) {
                ASSERT_EQ(sum, bestSum(matrix));
            }
        }
        EXPECT_EQ(checksum, range.checksum) << range.lowest << " to " << range.highest;
    }
}
