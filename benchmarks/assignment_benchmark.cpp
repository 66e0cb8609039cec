// The assignment of n rows to n columns, against the shortest augmenting paths of the textbook.

#include "ratio.h"
#include "shared/visual/assignment.h"

#include <benchmark/benchmark.h>
#include <cstdlib>
#include <limits>
#include <random>
#include <vector>

using namespace Morvex;

namespace {

// Returns the lowest sum. Row and column 0 stand for none.
long long shortestAugmentingPaths(const ScoreMatrix &matrix)
{
    const int n = matrix.rows;
    const int largest = std::numeric_limits<int>::max();
    std::vector<int> u(size_t(n) + 1), v(size_t(n) + 1), p(size_t(n) + 1), way(size_t(n) + 1);
    for (int i = 1; i <= n; ++i) {
        p[0] = i;
        int j0 = 0;
        std::vector<int> minv(size_t(n) + 1, largest);
        std::vector<char> used(size_t(n) + 1, false);
        do {
            used[size_t(j0)] = true;
            const int i0 = p[size_t(j0)];
            const int *row = matrix.scores.data() + size_t(i0 - 1) * size_t(n);
            int delta = largest;
            int j1 = 0;
            for (int j = 1; j <= n; ++j) {
                if (used[size_t(j)])
                    continue;
                const int cur = row[j - 1] - u[size_t(i0)] - v[size_t(j)];
                if (cur < minv[size_t(j)]) {
                    minv[size_t(j)] = cur;
                    way[size_t(j)] = j0;
                }
                if (minv[size_t(j)] < delta) {
                    delta = minv[size_t(j)];
                    j1 = j;
                }
            }
            for (int j = 0; j <= n; ++j) {
                if (used[size_t(j)]) {
                    u[size_t(p[size_t(j)])] += delta;
                    v[size_t(j)] -= delta;
                } else {
                    minv[size_t(j)] -= delta;
                }
            }
            j0 = j1;
        } while (p[size_t(j0)] != 0);
        while (j0 != 0) {
            const int j1 = way[size_t(j0)];
            p[size_t(j0)] = p[size_t(j1)];
            j0 = j1;
        }
    }
    return -v[0];
}

long long sumOf(const ScoreMatrix &matrix, const std::vector<int> &columns)
{
    long long sum = 0;
    for (size_t row = 0; row < columns.size(); ++row)
        sum += matrix.scores[row * size_t(matrix.columns) + size_t(columns[row])];
    return sum;
}

// Scores of siblings: a few values that come again and again, or hardly two that are equal.
void assignment(benchmark::State &state)
{
    const int n = static_cast<int>(state.range(0));
    const int values = static_cast<int>(state.range(1));
    std::mt19937 random(42);
    std::uniform_int_distribution<int> score(0, values - 1);
    ScoreMatrix matrix{n, n, {}};
    for (int i = 0; i < n * n; ++i)
        matrix.scores.push_back(score(random) * (4000 / values));
    if (sumOf(matrix, cheapestAssignment(matrix)) != shortestAugmentingPaths(matrix))
        std::abort();
    MorvexBenchmark::Ratio ratio;
    for (auto _ : state) {
        state.SetIterationTime(
            ratio.measure([&] { benchmark::DoNotOptimize(cheapestAssignment(matrix)); },
                          [&] { benchmark::DoNotOptimize(shortestAugmentingPaths(matrix)); }));
    }
    state.counters["ratio_to_textbook"] = ratio.value();
}
BENCHMARK(assignment)
    ->ArgNames({"n", "values"})
    ->ArgsProduct({{100, 500}, {4, 40, 4000}})
    ->UseManualTime()
    ->Unit(benchmark::kMicrosecond);

} // namespace

BENCHMARK_MAIN();
