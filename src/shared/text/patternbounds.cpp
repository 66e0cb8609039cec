#include "shared/text/patternbounds.h"

#include <QString>

#include <algorithm>
#include <vector>

namespace Morvex {
namespace {

// What the engine makes of a part of a pattern. Doubles, since a product may be of any size.
struct Cost
{
    double atoms = 0;
    // Parts that may be left out; its work grows faster than their square.
    double optionals = 0;

    void operator+=(const Cost &other)
    {
        atoms += other.atoms;
        optionals += other.optionals;
    }
};

struct Quantifier
{
    int fewest = 1;
    int most = 1;
    // The place after it.
    int end = 0;
};

int readNumber(const QString &pattern, int *i)
{
    int number = 0;
    for (; *i < pattern.size() && pattern[*i].isDigit(); ++*i)
        number = std::min(10 * number + pattern[*i].digitValue(), 1'000'000);
    return number;
}

// At an opening brace.
Quantifier readBraces(const QString &pattern, int i)
{
    Quantifier found;
    ++i;
    found.fewest = readNumber(pattern, &i);
    found.most = found.fewest;
    if (i < pattern.size() && pattern[i] == QLatin1Char(',')) {
        ++i;
        found.most = std::max(found.fewest, readNumber(pattern, &i));
    }
    found.end = i < pattern.size() && pattern[i] == QLatin1Char('}') ? i + 1 : i;
    return found;
}

Quantifier readQuantifier(const QString &pattern, int i)
{
    const QChar c = i < pattern.size() ? pattern[i] : QChar();
    if (c == QLatin1Char('{'))
        return readBraces(pattern, i);
    if (c == QLatin1Char('?') || c == QLatin1Char('*'))
        return {0, 1, i + 1};
    return {1, 1, c == QLatin1Char('+') ? i + 1 : i};
}

// The place after the set of characters that begins at @p i.
int endOfSet(const QString &pattern, int i)
{
    ++i;
    if (i < pattern.size() && pattern[i] == QLatin1Char('^'))
        ++i;
    // A bracket at the start is one of the set.
    for (++i; i < pattern.size() && pattern[i] != QLatin1Char(']'); ++i) {
        if (pattern[i] == QLatin1Char('\\'))
            ++i;
    }
    return i + 1;
}

// The place after the character, the escape or the set at @p i.
int endOfAtom(const QString &pattern, int i)
{
    if (pattern[i] == QLatin1Char('\\'))
        return i + 2;
    return pattern[i] == QLatin1Char('[') ? endOfSet(pattern, i) : i + 1;
}

Cost repeated(Cost cost, const Quantifier &quantifier)
{
    const int copies = std::max(1, quantifier.most);
    cost.atoms *= copies;
    cost.optionals = cost.optionals * copies + copies - std::min(copies, quantifier.fewest);
    return cost;
}

} // namespace

bool isBoundedPattern(const QString &pattern)
{
    const std::size_t maxDepth = 200;
    const double maxCost = 100'000;
    const double costOfOptional = 100;
    std::vector<Cost> levels(1);
    for (int i = 0; i < pattern.size();) {
        if (pattern[i] == QLatin1Char('(')) {
            if (levels.size() > maxDepth)
                return false;
            levels.emplace_back();
            // No quantifier: it says what kind of group this is.
            i += i + 1 < pattern.size() && pattern[i + 1] == QLatin1Char('?') ? 3 : 1;
            continue;
        }
        Cost last = {1, 0};
        if (pattern[i] == QLatin1Char(')') && levels.size() > 1) {
            last = levels.back();
            levels.pop_back();
            ++i;
        } else {
            i = endOfAtom(pattern, i);
        }
        const Quantifier quantifier = readQuantifier(pattern, i);
        i = std::max(i, quantifier.end);
        levels.back() += repeated(last, quantifier);
        if (levels.back().optionals * costOfOptional > maxCost ||
            levels.back().atoms > maxCost + pattern.size())
            return false;
    }
    return true;
}

} // namespace Morvex
