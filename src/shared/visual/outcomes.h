#pragma once

#include "shared/visual/cmpresult.h"
#include "shared/visual/expectedelement.h"

namespace Morvex {

/// Of elements with one id each has an entry.
using OutcomeEntries = QMultiMap<BrowserElement::Id, TitanCompare>;

/// Turns the pairs that a comparison selected into what its caller sees.
class Outcomes
{
public:
    /// Neither is owned.
    Outcomes(const ExpectedTree *tree, ElementMatcher *matcher)
        : m_tree(*tree)
        , m_matcher(*matcher)
    {
    }

    /// The entries of the roots, of which @p result is the result, and of all selected pairs below.
    /// An element without an id has none.
    OutcomeEntries entries(BrowserElement *actual, const CmpResult &result);

private:
    // A pair that was selected.
    struct Entry
    {
        const ExpectedElement *expected;
        BrowserElement *actual;
        const CmpResult *result;
    };

    void addEntries(int index, BrowserElement *actual, const CmpResult &result);
    void addEntriesBelow(const ExpectedElement &expected, BrowserElement *actual,
                         const CmpResult &result);
    std::vector<Entry> sortedEntries() const;
    TitanCompare outcomeOf(const Entry &entry);

    const ExpectedTree &m_tree;
    ElementMatcher &m_matcher;
    std::vector<Entry> m_entries;
};

} // namespace Morvex
