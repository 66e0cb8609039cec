#include "qtbackend/similartexts.h"

#include <algorithm>
#include <vector>

namespace Morvex {
namespace {

const int shortestPart = 3;
// Longer texts are not slips of the keyboard, and their distance takes time.
const int longestMeasured = 100;

QString essenceOf(QString text)
{
    return text.remove(QLatin1Char('&')).simplified().toCaseFolded();
}

// Letters to insert, remove or replace, and neighbours to swap.
int distance(const QString &a, const QString &b)
{
    // Of the first i letters of the one from the first j of the other.
    std::vector<std::vector<int>> table(std::size_t(a.size()) + 1,
                                        std::vector<int>(std::size_t(b.size()) + 1));
    const auto at = [&table](int i, int j) -> int & {
        return table[static_cast<std::size_t>(i)][static_cast<std::size_t>(j)];
    };
    for (int i = 0; i <= a.size(); ++i) {
        for (int j = 0; j <= b.size(); ++j) {
            if (i == 0 || j == 0) {
                at(i, j) = i + j;
                continue;
            }
            const bool isSame = a.at(i - 1) == b.at(j - 1);
            at(i, j) =
                std::min({at(i - 1, j - 1) + (isSame ? 0 : 1), at(i - 1, j) + 1, at(i, j - 1) + 1});
            if (i > 1 && j > 1 && a.at(i - 1) == b.at(j - 2) && a.at(i - 2) == b.at(j - 1))
                at(i, j) = std::min(at(i, j), at(i - 2, j - 2) + 1);
        }
    }
    return at(a.size(), b.size());
}

} // namespace

bool areSimilar(const QString &a, const QString &b)
{
    QString shorter = essenceOf(a);
    QString longer = essenceOf(b);
    if (shorter.size() > longer.size())
        shorter.swap(longer);
    if (shorter.isEmpty())
        return false;
    if (shorter == longer || (shorter.size() >= shortestPart && longer.contains(shorter)))
        return true;
    return longer.size() >= shortestPart && longer.size() <= longestMeasured &&
           distance(shorter, longer) <= std::max(1, longer.size() / 4);
}

QString mostSimilar(const QString &text, const QStringList &candidates)
{
    QString best;
    int shortest = 0;
    for (const QString &candidate : candidates) {
        if (!areSimilar(text, candidate))
            continue;
        const int length = distance(essenceOf(text), essenceOf(candidate));
        if (best.isEmpty() || length < shortest) {
            best = candidate;
            shortest = length;
        }
    }
    return best;
}

} // namespace Morvex
