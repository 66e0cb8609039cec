#include "objectmodel/qt/similartexts.h"

#include <algorithm>
#include <numeric>
#include <vector>

namespace Morvex {
namespace {

const int shortestPart = 3;
// Longer texts are no slips of the keyboard, and their distance takes time.
const int longestMeasured = 100;

QString essenceOf(QString text)
{
    return text.remove(QLatin1Char('&')).simplified().toCaseFolded();
}

// Letters to insert, remove or replace.
int distance(const QString &a, const QString &b)
{
    std::vector<int> row(static_cast<std::size_t>(b.size()) + 1);
    std::iota(row.begin(), row.end(), 0);
    for (int i = 0; i < a.size(); ++i) {
        int diagonal = row[0]++;
        for (int j = 0; j < b.size(); ++j) {
            int &above = row[static_cast<std::size_t>(j) + 1];
            const int replaced = diagonal + (a.at(i) == b.at(j) ? 0 : 1);
            diagonal = above;
            above = std::min({replaced, above + 1, row[static_cast<std::size_t>(j)] + 1});
        }
    }
    return row.back();
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

} // namespace Morvex
