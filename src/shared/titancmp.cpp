#include "shared/titancmp.h"

#include "shared/visual/elementpictures.h"
#include "shared/visual/outcomes.h"
#include "shared/visual/scoreboard.h"

#include <algorithm>

namespace Morvex {
namespace {

// From this number of children on, they are compared by their order alone.
const int positionalCount = 100;

bool hasMovedChild(const CmpResult &result)
{
    return std::any_of(
        result.selected.begin(), result.selected.end(),
        [](const SelectedPair &pair) { return pair.result.failed & TitanCompare::GeometryCheck; });
}

class Comparison
{
public:
    Comparison(BrowserElement *expected, const VisualChecks &checks)
        : m_tree(expected, checks)
    {
    }

    CmpResult _titanCompare(int index, BrowserElement *actual);
    const ExpectedTree &tree() const { return m_tree; }
    ElementMatcher &matcher() { return m_matcher; }

private:
    CmpResult _compareResult(int index, BrowserElement *actual);
    CmpResult compareSameType(int index, BrowserElement *actual);
    void compareValues(const ExpectedElement &expected, const BrowserElement &actual,
                       CmpResult *result);
    void compareChildren(const ExpectedElement &expected, const BrowserElement &actual,
                         CmpResult *result);
    qint64 compareByPosition(const ExpectedElement &expected, const BrowserElement &actual,
                             CmpResult *result);
    void compareAll(const ExpectedElement &expected, const BrowserElement &actual,
                    CmpResult *result);
    ExpectedTree m_tree;
    ElementMatcher m_matcher;
    ElementPictures m_pictures;
};

CmpResult Comparison::_titanCompare(int index, BrowserElement *actual)
{
    const ExpectedElement &expected = m_tree.element(index);
    if (expected.element == actual)
        return cleanResult();
    const ElementChecks &checks = m_tree.checks(expected);
    CmpResult result;
    compareValues(expected, *actual, &result);
    if (result.failed & TitanCompare::IdentifyingCheck)
        return result;
    if (checks.isSubtreeExcluded)
        result.areChildrenClean = true;
    else
        compareChildren(expected, *actual, &result);
    if (checks.isScreenshotChecked(result.failed) &&
        (hasMovedChild(result) || !m_pictures.match(expected.element, actual, *checks.screenshot)))
        fail(TitanCompare::ScreenshotCheck, &result);
    return result;
}

CmpResult Comparison::_compareResult(int index, BrowserElement *actual)
{
    return haveSameType(*m_tree.element(index).element, *actual) ? compareSameType(index, actual)
                                                                 : mismatchResult();
}

CmpResult Comparison::compareSameType(int index, BrowserElement *actual)
{
    CmpResult result = _titanCompare(index, actual);
    result.score = scoreOf(result);
    return result;
}

void Comparison::compareValues(const ExpectedElement &expected, const BrowserElement &actual,
                               CmpResult *result)
{
    const ElementChecks &checks = m_tree.checks(expected);
    if (checks.identifying) {
        result->identifyingFailures =
            m_matcher.findFailures(expected.element->identifyingProperties(),
                                   actual.identifyingProperties(), checks.identifyingChecks());
        if (result->identifyingFailures.count > 0) {
            fail(TitanCompare::IdentifyingCheck, result);
            return;
        }
    }
    if (checks.content) {
        result->contentFailures = m_matcher.findFailures(
            expected.element->properties(), actual.properties(), checks.contentChecks());
        if (result->contentFailures.count > 0)
            fail(TitanCompare::ContentCheck, result);
    }
    if (checks.geometry) {
        const QRect rect = expected.geometry.rect();
        const QRect other = _geometryRelativeToParent(&actual).rect();
        if (!geometryFailures(rect, other, *checks.geometry).isEmpty())
            result->failed |= TitanCompare::GeometryCheck;
        // What is nowhere is marked, but no reason to fail.
        if (rect.isValid() && other.isValid())
            result->returned |= result->failed & TitanCompare::GeometryCheck;
    }
}

void Comparison::compareChildren(const ExpectedElement &expected, const BrowserElement &actual,
                                 CmpResult *result)
{
    const int count = expected.element->children().count();
    if (count != actual.children().count())
        fail(TitanCompare::HierarchyCheck, result);
    if (compareByPosition(expected, actual, result) != 0 && count < positionalCount)
        compareAll(expected, actual, result);
    for (const SelectedPair &pair : result->selected) {
        result->returned |= pair.result.returned;
        if (pair.result.failed & TitanCompare::ClassMismatch)
            result->failed |= TitanCompare::HierarchyCheck;
    }
}

// Returns the sum of scores. Clean pairs are put into the list when another one needs it. The pairs
// are compared from the first to the last, which is their order in memory, and listed the other way
// round.
qint64 Comparison::compareByPosition(const ExpectedElement &expected, const BrowserElement &actual,
                                     CmpResult *result)
{
    const QList<BrowserElement *> &children = actual.children();
    const int count = std::min(expected.element->children().count(), children.count());
    result->areChildrenClean = expected.element->children().count() == children.count();
    std::vector<SelectedPair> &pairs = result->selected;
    const auto addClean = [&](int end) {
        for (int i = 0; i < end; ++i)
            pairs.push_back({expected.firstChild + i, children[i], cleanResult()});
    };
    qint64 sum = 0;
    for (int i = 0; i < count; ++i) {
        CmpResult pair = _compareResult(expected.firstChild + i, children[i]);
        sum += pair.score;
        if (pair.isClean() && result->areChildrenClean)
            continue;
        if (pairs.empty())
            addClean(i);
        result->areChildrenClean = false;
        pairs.push_back({expected.firstChild + i, children[i], std::move(pair)});
    }
    std::reverse(pairs.begin(), pairs.end());
    return sum;
}

// The pairs of equal positions are there already.
void Comparison::compareAll(const ExpectedElement &expected, const BrowserElement &actual,
                            CmpResult *result)
{
    const int rows = expected.element->children().count();
    const QList<BrowserElement *> &children = actual.children();
    ScoreBoard board(expected.firstChild, rows, children);
    for (SelectedPair &pair : result->selected) {
        const int position = pair.expected - expected.firstChild;
        if (!(pair.result.failed & TitanCompare::ClassMismatch))
            board.set(position, position, std::move(pair.result));
    }
    for (int row = rows - 1; row >= 0; --row) {
        const BrowserElement &child = *expected.element->children()[row];
        for (int column = children.count() - 1; column >= 0; --column) {
            if (row != column && haveSameType(child, *children[column]))
                board.set(row, column,
                          compareSameType(expected.firstChild + row, children[column]));
        }
    }
    result->selected = board.takeBest();
}

} // namespace

bool titanCompare(BrowserElement *expected, BrowserElement *actual,
                  const TitanPropertyChecksOfElements &identifying,
                  const TitanPropertyChecksOfElements &content,
                  const TitanPropertyChecksOfElements &geometry,
                  const QMap<BrowserElement::Id, VisualScreenshotCheck> &screenshots,
                  const QList<BrowserElement::Id> &subtreeExcluded,
                  QMap<BrowserElement::Id, TitanCompare> *result)
{
    Comparison comparison(expected, {identifying, content, geometry, screenshots, subtreeExcluded});
    const CmpResult outcome = comparison._titanCompare(0, actual);
    if (result) {
        *result = Outcomes(&comparison.tree(), &comparison.matcher()).entries(actual, outcome);
    }
    return outcome.returned == 0;
}

bool visualMaskImages(const BrowserElement *expected, const BrowserElement *actual,
                      QImage *expectedImage, QImage *actualImage, bool sameSize)
{
    return ElementPictures()._maskImages(expected, actual, expectedImage, actualImage, sameSize);
}

} // namespace Morvex
