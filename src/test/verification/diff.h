#pragma once

#include <iterator>
#include <utility>
#include <vector>

namespace Morvex {

/// The shortest edit script between two sequences, by bisection with linear memory. Its running
/// time is in proportion to the length times the number of differences.
namespace Diff {

enum Operation { INSERT, DELETE, EQUAL };

template <typename Iterator, typename Output, typename Equal>
void diff(Iterator aBegin, Iterator aEnd, Iterator bBegin, Iterator bEnd, Output &out, Equal equal);

template <typename Iterator, typename Output>
void emitAll(Operation operation, Iterator begin, Iterator end, Output &out)
{
    for (; begin != end; ++begin)
        *out++ = std::make_pair(operation, *begin);
}

template <typename Iterator, typename Output, typename Equal>
void bisect_split(Iterator aBegin, Iterator aEnd, Iterator bBegin, Iterator bEnd, std::ptrdiff_t x,
                  std::ptrdiff_t y, Output &out, Equal equal)
{
    diff(aBegin, aBegin + x, bBegin, bBegin + y, out, equal);
    diff(aBegin + x, aEnd, bBegin + y, bEnd, out, equal);
}

/// The furthest reaching paths in one direction, and the range of diagonals that is still open.
struct Frontier
{
    explicit Frontier(int size)
        : reach(static_cast<std::size_t>(2 * size), -1)
        , offset(size)
    {
        at(1) = 0;
    }

    int &at(int diagonal) { return reach[static_cast<std::size_t>(offset + diagonal)]; }

    /// Where the path on a diagonal starts in round d: below the one above it, or to the right of
    /// the one below it, whichever reaches further.
    int start(int diagonal, int d)
    {
        if (diagonal == -d || (diagonal != d && at(diagonal - 1) < at(diagonal + 1)))
            return at(diagonal + 1);
        return at(diagonal - 1) + 1;
    }

    std::vector<int> reach;
    int offset;
    int trimStart = 0;
    int trimEnd = 0;
};

/// Where two paths meet: so many items of a and of b are before it.
struct Meeting
{
    int x;
    int y;
};

/// Takes each open path of @p own in round @p d one difference further, then along all that is
/// equal. @p equalAfter(x, y) asks whether the items after x of a and y of b are equal, in the
/// direction of the frontier. True, and the round ends, at the first path for which
/// @p meets(diagonal, x).
template <typename EqualAfter, typename Meets>
bool advance(Frontier &own, int d, int n, int m, EqualAfter equalAfter, Meets meets)
{
    for (int k = -d + own.trimStart; k <= d - own.trimEnd; k += 2) {
        int x = own.start(k, d);
        int y = x - k;
        while (x < n && y < m && equalAfter(x, y)) {
            ++x;
            ++y;
        }
        own.at(k) = x;
        if (x > n)
            own.trimEnd += 2;
        else if (y > m)
            own.trimStart += 2;
        else if (meets(k, x))
            return true;
    }
    return false;
}

/// False when the sequences have nothing in common that a path of half the length finds.
template <typename Iterator, typename Equal>
bool findMeeting(Iterator a, int n, Iterator b, int m, Meeting &meeting, Equal equal)
{
    const int maxD = (n + m + 1) / 2;
    const int delta = n - m;
    const bool front = delta % 2 != 0;
    Frontier forward(maxD);
    Frontier reverse(maxD);
    // The other frontier's reach on the diagonal that meets this one; -1 where it has none.
    const auto reachOf = [maxD, delta](const Frontier &other, int diagonal) {
        const int index = maxD + delta - diagonal;
        return index >= 0 && index < 2 * maxD ? other.reach[static_cast<std::size_t>(index)] : -1;
    };
    const auto equalForward = [&](int x, int y) { return equal(a[x], b[y]); };
    const auto equalReverse = [&](int x, int y) { return equal(a[n - x - 1], b[m - y - 1]); };
    const auto meetsReverse = [&](int k, int x) {
        const int reached = reachOf(reverse, k);
        meeting = {x, x - k};
        return front && reached != -1 && x >= n - reached;
    };
    const auto meetsForward = [&](int k, int x) {
        const int reached = reachOf(forward, k);
        meeting = {reached, reached - (delta - k)};
        return !front && reached != -1 && reached >= n - x;
    };
    for (int d = 0; d < maxD; ++d) {
        if (advance(forward, d, n, m, equalForward, meetsReverse) ||
            advance(reverse, d, n, m, equalReverse, meetsForward))
            return true;
    }
    return false;
}

template <typename Iterator, typename Output, typename Equal>
void bisect(Iterator aBegin, Iterator aEnd, Iterator bBegin, Iterator bEnd, Output &out,
            Equal equal)
{
    const int n = static_cast<int>(aEnd - aBegin);
    const int m = static_cast<int>(bEnd - bBegin);
    Meeting at{};
    if (findMeeting(aBegin, n, bBegin, m, at, equal))
        return bisect_split(aBegin, aEnd, bBegin, bEnd, at.x, at.y, out, equal);
    emitAll(DELETE, aBegin, aEnd, out);
    emitAll(INSERT, bBegin, bEnd, out);
}

/// Writes pairs of operation and item to @p out; an equal item is that of a.
template <typename Iterator, typename Output, typename Equal>
void diff(Iterator aBegin, Iterator aEnd, Iterator bBegin, Iterator bEnd, Output &out, Equal equal)
{
    if (aBegin == aEnd)
        return emitAll(INSERT, bBegin, bEnd, out);
    if (bBegin == bEnd)
        return emitAll(DELETE, aBegin, aEnd, out);
    const Iterator prefixBegin = aBegin;
    while (aBegin != aEnd && bBegin != bEnd && equal(*aBegin, *bBegin)) {
        ++aBegin;
        ++bBegin;
    }
    const Iterator suffixEnd = aEnd;
    while (aBegin != aEnd && bBegin != bEnd && equal(*(aEnd - 1), *(bEnd - 1))) {
        --aEnd;
        --bEnd;
    }
    emitAll(EQUAL, prefixBegin, aBegin, out);
    const bool oneEach = aEnd - aBegin == 1 && bEnd - bBegin == 1;
    if (aBegin == aEnd || bBegin == bEnd || oneEach) {
        emitAll(DELETE, aBegin, aEnd, out);
        emitAll(INSERT, bBegin, bEnd, out);
    } else {
        bisect(aBegin, aEnd, bBegin, bEnd, out, equal);
    }
    emitAll(EQUAL, aEnd, suffixEnd, out);
}

/// Drops the items that a script holds.
template <typename Script>
void diff_cleanup(Script &script)
{
    script.clear();
}

} // namespace Diff

} // namespace Morvex
