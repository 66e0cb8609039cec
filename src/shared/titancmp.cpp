#include "shared/titancmp.h"

#include "shared/visual/assignment.h"
#include "shared/visual/comparedelement.h"
#include "shared/visual/elementpictures.h"

#include <algorithm>
#include <limits>

namespace Morvex {
namespace {

// From this number of children on, they are compared by their order alone.
const int positionalCount = 100;

const int mismatchScore = 4000;
const int screenshotScore = 20;
const int geometryScore = 50;
const int contentScore = 100;
const int identifyingScore = 600;
const int hierarchyScore = 200;

// Elements of one id each have an entry.
using Entries = QMultiMap<BrowserElement::Id, TitanCompare>;

struct SelectedPair;

// What comparing one pair of elements costs. Names of what failed, and entries for what is below,
// are only made for pairs that are selected in the end.
struct CmpResult
{
    // Of the pair itself.
    int failed = 0;
    // Of all that counts at the pair and below.
    int returned = 0;
    int contentFailures = 0;
    int identifyingFailures = 0;
    int score = 0;
    // The pairs of children; none when nothing failed in or below these.
    std::vector<SelectedPair> selected;
    // Each child then goes with the one at its place.
    bool areChildrenClean = false;

    bool isClean() const { return failed == 0 && returned == 0 && areChildrenClean; }
};

struct SelectedPair
{
    int expected;
    int actual;
    CmpResult result;
};

// The results of all pairs of the children of two elements.
class ScoreBoard
{
public:
    ScoreBoard(const ComparedElement &expected, const ComparedElement &actual)
        : m_expected(expected)
        , m_actual(actual)
        , m_results(size_t(expected.childCount) * size_t(actual.childCount))
    {
    }

    void set(int row, int column, CmpResult result)
    {
        m_results[index(row, column)] = std::move(result);
    }

    std::vector<SelectedPair> takeBest()
    {
        ScoreMatrix matrix{m_expected.childCount, m_actual.childCount, {}};
        matrix.scores.reserve(m_results.size());
        for (const CmpResult &result : m_results)
            matrix.scores.push_back(result.score);
        std::vector<SelectedPair> selected;
        const std::vector<int> columns = cheapestAssignment(matrix);
        for (int row = 0; row < matrix.rows; ++row) {
            const int column = columns[size_t(row)];
            if (column >= 0)
                selected.push_back({m_expected.firstChild + row, m_actual.firstChild + column,
                                    std::move(m_results[index(row, column)])});
        }
        return selected;
    }

private:
    size_t index(int row, int column) const
    {
        return size_t(row) * size_t(m_actual.childCount) + size_t(column);
    }

    const ComparedElement &m_expected;
    const ComparedElement &m_actual;
    std::vector<CmpResult> m_results;
};

class Comparison
{
public:
    Comparison(BrowserElement *expected, BrowserElement *actual, const VisualChecks &checks)
        : m_expected(comparedElements(expected, &checks))
        , m_actual(comparedElements(actual, nullptr))
    {
    }

    CmpResult _titanCompare(int expectedIndex, int actualIndex);
    void addEntries(int expectedIndex, int actualIndex, const CmpResult &result, Entries *entries);

private:
    CmpResult _compareResult(int expectedIndex, int actualIndex);
    void compareValues(const ComparedElement &expected, const ComparedElement &actual,
                       CmpResult *result);
    void compareChildren(const ComparedElement &expected, const ComparedElement &actual,
                         CmpResult *result);
    std::vector<SelectedPair> selectPairs(const ComparedElement &expected,
                                          const ComparedElement &actual);
    void compareAll(const ComparedElement &expected, const ComparedElement &actual,
                    ScoreBoard *board);
    void compareScreenshot(const ComparedElement &expected, const ComparedElement &actual,
                           CmpResult *result);
    void addNames(const ComparedElement &expected, const ComparedElement &actual,
                  TitanCompare *entry);

    std::vector<ComparedElement> m_expected;
    std::vector<ComparedElement> m_actual;
    ElementMatcher m_matcher;
    ElementPictures m_pictures;
};

void fail(TitanCompare::Check check, CmpResult *result)
{
    result->failed |= check;
    result->returned |= check;
}

int scoreOf(const CmpResult &result)
{
    qint64 score = 0;
    if (result.returned & TitanCompare::ScreenshotCheck)
        score += screenshotScore;
    if (result.returned & TitanCompare::GeometryCheck)
        score += geometryScore;
    if (result.returned & TitanCompare::ContentCheck)
        score += contentScore * (qint64(result.contentFailures) + 1);
    if (result.returned & TitanCompare::IdentifyingCheck)
        score += identifyingScore * (qint64(result.identifyingFailures) + 1);
    if (result.returned & TitanCompare::HierarchyCheck)
        score += hierarchyScore;
    return int(std::min<qint64>(score, std::numeric_limits<int>::max()));
}

// A picture only counts where all but the place is as expected.
bool isScreenshotChecked(const ComparedElement &expected, int failed)
{
    return expected.screenshotCheck &&
           (failed & ~TitanCompare::ScreenshotCheck) < TitanCompare::ContentCheck;
}

int checkedFlags(const ComparedElement &expected, int failed)
{
    if (failed & TitanCompare::IdentifyingCheck)
        return TitanCompare::IdentifyingCheck;
    return (expected.identifyingChecks ? TitanCompare::IdentifyingCheck : 0) |
           (expected.contentChecks ? TitanCompare::ContentCheck : 0) |
           (expected.geometryChecks ? TitanCompare::GeometryCheck : 0) |
           (expected.isSubtreeExcluded ? 0 : TitanCompare::HierarchyCheck) |
           (isScreenshotChecked(expected, failed) ? TitanCompare::ScreenshotCheck : 0);
}

bool hasMovedChild(const CmpResult &result)
{
    return std::any_of(
        result.selected.begin(), result.selected.end(),
        [](const SelectedPair &pair) { return pair.result.failed & TitanCompare::GeometryCheck; });
}

CmpResult Comparison::_titanCompare(int expectedIndex, int actualIndex)
{
    const ComparedElement &expected = m_expected[size_t(expectedIndex)];
    const ComparedElement &actual = m_actual[size_t(actualIndex)];
    CmpResult result;
    if (expected.element == actual.element)
        return result;
    compareValues(expected, actual, &result);
    if (result.failed & TitanCompare::IdentifyingCheck)
        return result;
    if (!expected.isSubtreeExcluded)
        compareChildren(expected, actual, &result);
    if (isScreenshotChecked(expected, result.failed))
        compareScreenshot(expected, actual, &result);
    return result;
}

CmpResult Comparison::_compareResult(int expectedIndex, int actualIndex)
{
    CmpResult result;
    if (haveSameType(m_expected[size_t(expectedIndex)], m_actual[size_t(actualIndex)])) {
        result = _titanCompare(expectedIndex, actualIndex);
        result.score = scoreOf(result);
    } else {
        fail(TitanCompare::ClassMismatch, &result);
        fail(TitanCompare::HierarchyCheck, &result);
        result.score = mismatchScore;
    }
    return result;
}

void Comparison::compareValues(const ComparedElement &expected, const ComparedElement &actual,
                               CmpResult *result)
{
    if (expected.identifyingChecks) {
        result->identifyingFailures =
            m_matcher.countFailures(expected.identifyingProperties, actual.identifyingProperties,
                                    *expected.identifyingChecks);
        if (result->identifyingFailures > 0) {
            fail(TitanCompare::IdentifyingCheck, result);
            return;
        }
    }
    if (expected.contentChecks) {
        result->contentFailures = m_matcher.countFailures(expected.properties, actual.properties,
                                                          *expected.contentChecks);
        if (result->contentFailures > 0)
            fail(TitanCompare::ContentCheck, result);
    }
    if (expected.geometryChecks && !geometryFailures(expected, actual).isEmpty()) {
        result->failed |= TitanCompare::GeometryCheck;
        // What is nowhere is marked, but no reason to fail.
        if (haveGeometry(expected, actual))
            result->returned |= TitanCompare::GeometryCheck;
    }
}

void Comparison::compareChildren(const ComparedElement &expected, const ComparedElement &actual,
                                 CmpResult *result)
{
    if (expected.childCount != actual.childCount)
        fail(TitanCompare::HierarchyCheck, result);
    result->areChildrenClean = expected.childCount == actual.childCount;
    result->selected = selectPairs(expected, actual);
    for (const SelectedPair &pair : result->selected) {
        result->returned |= pair.result.returned;
        if (pair.result.failed & TitanCompare::ClassMismatch)
            result->failed |= TitanCompare::HierarchyCheck;
        if (!pair.result.isClean() ||
            pair.expected - expected.firstChild != pair.actual - actual.firstChild)
            result->areChildrenClean = false;
    }
    if (result->areChildrenClean)
        result->selected = {};
}

std::vector<SelectedPair> Comparison::selectPairs(const ComparedElement &expected,
                                                  const ComparedElement &actual)
{
    std::vector<SelectedPair> pairs;
    const int count = std::min(expected.childCount, actual.childCount);
    pairs.reserve(size_t(count));
    qint64 sum = 0;
    for (int i = count - 1; i >= 0; --i) {
        const int expectedIndex = expected.firstChild + i;
        const int actualIndex = actual.firstChild + i;
        pairs.push_back({expectedIndex, actualIndex, _compareResult(expectedIndex, actualIndex)});
        sum += pairs.back().result.score;
    }
    if (sum == 0 || expected.childCount >= positionalCount)
        return pairs;
    ScoreBoard board(expected, actual);
    for (SelectedPair &pair : pairs)
        board.set(pair.expected - expected.firstChild, pair.actual - actual.firstChild,
                  std::move(pair.result));
    compareAll(expected, actual, &board);
    return board.takeBest();
}

// The pairs of equal positions are there already.
void Comparison::compareAll(const ComparedElement &expected, const ComparedElement &actual,
                            ScoreBoard *board)
{
    for (int row = expected.childCount - 1; row >= 0; --row) {
        for (int column = actual.childCount - 1; column >= 0; --column) {
            if (row != column)
                board->set(row, column,
                           _compareResult(expected.firstChild + row, actual.firstChild + column));
        }
    }
}

void Comparison::compareScreenshot(const ComparedElement &expected, const ComparedElement &actual,
                                   CmpResult *result)
{
    if (hasMovedChild(*result) ||
        !m_pictures.match(expected.element, actual.element, *expected.screenshotCheck))
        fail(TitanCompare::ScreenshotCheck, result);
}

void Comparison::addNames(const ComparedElement &expected, const ComparedElement &actual,
                          TitanCompare *entry)
{
    if (entry->failed & TitanCompare::IdentifyingCheck)
        m_matcher._matchProperties(expected.identifyingProperties, actual.identifyingProperties,
                                   *expected.identifyingChecks, &entry->identifyingFailures);
    if (entry->failed & TitanCompare::ContentCheck)
        m_matcher._matchProperties(expected.properties, actual.properties, *expected.contentChecks,
                                   &entry->contentFailures);
    if (entry->failed & TitanCompare::GeometryCheck)
        entry->geometryFailures = geometryFailures(expected, actual);
}

void Comparison::addEntries(int expectedIndex, int actualIndex, const CmpResult &result,
                            Entries *entries)
{
    // A pair of unlike types is not looked into.
    if (result.failed & TitanCompare::ClassMismatch)
        return;
    const ComparedElement &expected = m_expected[size_t(expectedIndex)];
    const ComparedElement &actual = m_actual[size_t(actualIndex)];
    const bool areSame = expected.element == actual.element;
    TitanCompare entry;
    entry.expected = expected.element;
    entry.actual = actual.element;
    entry.failed = result.failed;
    entry.checked = areSame ? 0 : checkedFlags(expected, result.failed);
    addNames(expected, actual, &entry);
    entries->insert(expected.element->id(), entry);
    for (const SelectedPair &pair : result.selected)
        addEntries(pair.expected, pair.actual, pair.result, entries);
    if (!areSame && !expected.isSubtreeExcluded && result.areChildrenClean) {
        CmpResult clean;
        clean.areChildrenClean = true;
        for (int i = expected.childCount - 1; i >= 0; --i)
            addEntries(expected.firstChild + i, actual.firstChild + i, clean, entries);
    }
}

void removeEntry(const BrowserElement *root, Entries *entries)
{
    const auto isOfRoot = [&](const TitanCompare &entry) { return entry.expected == root; };
    const auto found = std::find_if(entries->begin(), entries->end(), isOfRoot);
    if (found != entries->end() && found.key().isEmpty())
        entries->erase(found);
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
    Comparison comparison(expected, actual,
                          {identifying, content, geometry, screenshots, subtreeExcluded});
    const CmpResult outcome = comparison._titanCompare(0, 0);
    if (result) {
        Entries entries;
        comparison.addEntries(0, 0, outcome, &entries);
        removeEntry(expected, &entries);
        *result = entries;
    }
    return outcome.returned == 0;
}

} // namespace Morvex
