#pragma once

#include "shared/visual/elementmatcher.h"

#include <vector>

namespace Morvex {

struct SelectedPair;

/// What comparing one pair of elements costs. Names of what failed, and entries for what is below,
/// are only made for pairs that are selected in the end.
struct CmpResult
{
    /// Of the pair itself.
    int failed = 0;
    /// Of all that counts at the pair and below.
    int returned = 0;
    PropertyFailures contentFailures;
    PropertyFailures identifyingFailures;
    /// 0 for a perfect match.
    int score = 0;
    /// Nothing failed in or below the children, each of which goes with the one at its place. They
    /// are not in the list of pairs then.
    bool areChildrenClean = false;
    std::vector<SelectedPair> selected;

    bool isClean() const { return failed == 0 && returned == 0 && areChildrenClean; }
};

struct SelectedPair
{
    /// The index in the expected tree.
    int expected;
    BrowserElement *actual;
    CmpResult result;
};

/// Of two elements with nothing that differs.
CmpResult cleanResult();
/// Of two elements whose types differ.
CmpResult mismatchResult();

/// Adds @p checks to what failed at the pair.
void fail(int checks, CmpResult *result);

/// The score that follows from what failed.
int scoreOf(const CmpResult &result);

} // namespace Morvex
