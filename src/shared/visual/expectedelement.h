#pragma once

#include "shared/visual/elementmatcher.h"

#include <vector>

namespace Morvex {

/// The checks of a comparison, by element. Nothing is owned.
struct VisualChecks
{
    const TitanPropertyChecksOfElements &identifying;
    const TitanPropertyChecksOfElements &content;
    const TitanPropertyChecksOfElements &geometry;
    const QMap<BrowserElement::Id, VisualScreenshotCheck> &screenshots;
    const QList<BrowserElement::Id> &subtreeExcluded;
};

/// The checks of one element. Null for no check.
struct ElementChecks
{
    const QMap<QString, TitanPropertyCheck> *identifying = nullptr;
    const QMap<QString, TitanPropertyCheck> *content = nullptr;
    const QMap<QString, TitanPropertyCheck> *geometry = nullptr;
    const VisualScreenshotCheck *screenshot = nullptr;
    bool isSubtreeExcluded = false;
    /// Whether a value that is the same fulfils all of the identifying and content checks.
    bool isExact = true;

    ValueChecks identifyingChecks() const { return {identifying, isExact}; }
    ValueChecks contentChecks() const { return {content, isExact}; }

    /// A picture only counts where all but the place is as expected.
    bool isScreenshotChecked(int failed) const
    {
        return screenshot && (failed & ~TitanCompare::ScreenshotCheck) < TitanCompare::ContentCheck;
    }
};

/// An expected element with what is asked of it in each of its comparisons.
struct ExpectedElement
{
    BrowserElement *element;
    /// The index in the list of all checks, which is sorted by id; -1 for none.
    int checks;
    UIAbstraction::ElementGeometry geometry;
    /// The index in the list of all elements, of which the others follow.
    int firstChild;
};

/// An expected tree and its checks.
class ExpectedTree
{
public:
    ExpectedTree(BrowserElement *root, const VisualChecks &checks);

    /// The root has the index 0.
    const ExpectedElement &element(int index) const { return m_elements[size_t(index)]; }
    const ElementChecks &checks(const ExpectedElement &element) const
    {
        return element.checks < 0 ? m_noChecks : m_checks[size_t(element.checks)];
    }

    int checksCount() const { return int(m_checks.size()); }

private:
    template <typename FindChecks>
    void addElements(BrowserElement *root, const FindChecks &findChecks);

    std::vector<ExpectedElement> m_elements;
    std::vector<ElementChecks> m_checks;
    ElementChecks m_noChecks;
};

/// The geometry that is compared: relative to the parent, but that of a top element, and one whose
/// parent is nowhere, keeps its place.
UIAbstraction::ElementGeometry _geometryRelativeToParent(const BrowserElement *element);

} // namespace Morvex
