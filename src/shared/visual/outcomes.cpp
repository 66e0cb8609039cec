#include "shared/visual/outcomes.h"

#include <numeric>

namespace Morvex {
namespace {

int checkedFlags(const ElementChecks &checks, int failed)
{
    if (failed & TitanCompare::IdentifyingCheck)
        return TitanCompare::IdentifyingCheck;
    return (checks.identifying ? TitanCompare::IdentifyingCheck : 0) |
           (checks.content ? TitanCompare::ContentCheck : 0) |
           (checks.geometry ? TitanCompare::GeometryCheck : 0) |
           (checks.isSubtreeExcluded ? 0 : TitanCompare::HierarchyCheck) |
           (checks.isScreenshotChecked(failed) ? TitanCompare::ScreenshotCheck : 0);
}

} // namespace

OutcomeEntries Outcomes::entries(BrowserElement *actual, const CmpResult &result)
{
    m_entries.clear();
    m_entries.reserve(size_t(m_tree.checksCount()));
    const ExpectedElement &root = m_tree.element(0);
    m_entries.push_back({&root, actual, &result});
    addEntriesBelow(root, actual, result);
    OutcomeEntries entries;
    for (const Entry &entry : sortedEntries()) {
        if (entry.expected->element->id().isEmpty())
            continue;
        // At the front there is nothing to search for, and the last one of an id comes first.
        const bool isSorted = entry.expected->checks >= 0;
        entries.insert(isSorted ? entries.constBegin() : entries.constEnd(),
                       entry.expected->element->id(), outcomeOf(entry));
    }
    return entries;
}

void Outcomes::addEntries(int index, BrowserElement *actual, const CmpResult &result)
{
    // A pair of unlike types is not looked into.
    if (result.failed & TitanCompare::ClassMismatch)
        return;
    const ExpectedElement &expected = m_tree.element(index);
    m_entries.push_back({&expected, actual, &result});
    addEntriesBelow(expected, actual, result);
}

void Outcomes::addEntriesBelow(const ExpectedElement &expected, BrowserElement *actual,
                               const CmpResult &result)
{
    static const CmpResult clean = cleanResult();
    for (const SelectedPair &pair : result.selected)
        addEntries(pair.expected, pair.actual, pair.result);
    if (!result.areChildrenClean || expected.element == actual ||
        m_tree.checks(expected).isSubtreeExcluded)
        return;
    for (int i = expected.element->children().count() - 1; i >= 0; --i)
        addEntries(expected.firstChild + i, actual->children()[i], clean);
}

// By falling ids, and those without checks at the end.
std::vector<Outcomes::Entry> Outcomes::sortedEntries() const
{
    const auto rankOf = [&](const Entry &entry) {
        const int checks = entry.expected->checks;
        return size_t(checks < 0 ? m_tree.checksCount() : m_tree.checksCount() - 1 - checks);
    };
    std::vector<size_t> next(size_t(m_tree.checksCount()) + 2);
    for (const Entry &entry : m_entries)
        ++next[rankOf(entry) + 1];
    std::partial_sum(next.begin(), next.end(), next.begin());
    std::vector<Entry> sorted(m_entries.size());
    for (const Entry &entry : m_entries)
        sorted[next[rankOf(entry)]++] = entry;
    return sorted;
}

TitanCompare Outcomes::outcomeOf(const Entry &entry)
{
    BrowserElement *expected = entry.expected->element;
    const ElementChecks &checks = m_tree.checks(*entry.expected);
    TitanCompare outcome;
    outcome.expected = expected;
    outcome.actual = entry.actual;
    outcome.failed = entry.result->failed;
    outcome.checked = expected == entry.actual ? 0 : checkedFlags(checks, outcome.failed);
    if (outcome.failed & TitanCompare::IdentifyingCheck)
        outcome.identifyingFailures =
            m_matcher.namesOf(entry.result->identifyingFailures, expected->identifyingProperties(),
                              entry.actual->identifyingProperties(), checks.identifyingChecks());
    if (outcome.failed & TitanCompare::ContentCheck)
        outcome.contentFailures =
            m_matcher.namesOf(entry.result->contentFailures, expected->properties(),
                              entry.actual->properties(), checks.contentChecks());
    if (outcome.failed & TitanCompare::GeometryCheck)
        outcome.geometryFailures =
            geometryFailures(entry.expected->geometry.rect(),
                             _geometryRelativeToParent(entry.actual).rect(), *checks.geometry);
    return outcome;
}

} // namespace Morvex
