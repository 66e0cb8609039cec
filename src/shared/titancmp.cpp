#include "shared/titancmp.h"

#include "shared/visual/assignment.h"
#include "shared/visual/elementmatcher.h"
#include "shared/visual/elementpictures.h"
#include "shared/visual/expectedelement.h"

#include <algorithm>
#include <limits>
#include <numeric>

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
    // Nothing failed in or below the children, each of which goes with the one at its place. They
    // are not in the list of pairs then.
    bool areChildrenClean = false;
    std::vector<SelectedPair> selected;

    bool isClean() const { return failed == 0 && returned == 0 && areChildrenClean; }
};

struct SelectedPair
{
    // The index in the expected tree.
    int expected;
    BrowserElement *actual;
    CmpResult result;
};

CmpResult cleanResult()
{
    CmpResult result;
    result.areChildrenClean = true;
    return result;
}

// The results of all pairs of the children of two elements.
class ScoreBoard
{
public:
    ScoreBoard(int firstChild, int rows, const QList<BrowserElement *> &actual)
        : m_firstChild(firstChild)
        , m_rows(rows)
        , m_actual(actual)
        , m_results(size_t(rows) * size_t(actual.count()))
    {
    }

    void set(int row, int column, CmpResult result)
    {
        m_results[index(row, column)] = std::move(result);
    }

    std::vector<SelectedPair> takeBest()
    {
        ScoreMatrix matrix{m_rows, m_actual.count(), {}};
        matrix.scores.reserve(m_results.size());
        for (const CmpResult &result : m_results)
            matrix.scores.push_back(result.score);
        std::vector<SelectedPair> selected;
        const std::vector<int> columns = cheapestAssignment(matrix);
        for (int row = 0; row < m_rows; ++row) {
            const int column = columns[size_t(row)];
            if (column >= 0)
                selected.push_back({m_firstChild + row, m_actual[column],
                                    std::move(m_results[index(row, column)])});
        }
        return selected;
    }

private:
    size_t index(int row, int column) const
    {
        return size_t(row) * size_t(m_actual.count()) + size_t(column);
    }

    int m_firstChild;
    int m_rows;
    const QList<BrowserElement *> &m_actual;
    std::vector<CmpResult> m_results;
};

void fail(int checks, CmpResult *result)
{
    result->failed |= checks;
    result->returned |= checks;
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
bool isScreenshotChecked(const ElementChecks &checks, int failed)
{
    return checks.screenshot &&
           (failed & ~TitanCompare::ScreenshotCheck) < TitanCompare::ContentCheck;
}

int checkedFlags(const ElementChecks &checks, int failed)
{
    if (failed & TitanCompare::IdentifyingCheck)
        return TitanCompare::IdentifyingCheck;
    return (checks.identifying ? TitanCompare::IdentifyingCheck : 0) |
           (checks.content ? TitanCompare::ContentCheck : 0) |
           (checks.geometry ? TitanCompare::GeometryCheck : 0) |
           (checks.isSubtreeExcluded ? 0 : TitanCompare::HierarchyCheck) |
           (isScreenshotChecked(checks, failed) ? TitanCompare::ScreenshotCheck : 0);
}

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
    /// The entries of the roots and of all pairs that were selected.
    Entries entries(BrowserElement *actual, const CmpResult &result);

private:
    // A pair that was selected.
    struct Entry
    {
        const ExpectedElement *expected;
        BrowserElement *actual;
        const CmpResult *result;
    };

    CmpResult _compareResult(int index, BrowserElement *actual);
    int countFailures(const QMap<QString, QString> &expected, const QMap<QString, QString> &actual,
                      const QMap<QString, TitanPropertyCheck> &checks, bool isExact);
    void compareValues(const ExpectedElement &expected, const BrowserElement &actual,
                       CmpResult *result);
    void compareChildren(const ExpectedElement &expected, const BrowserElement &actual,
                         CmpResult *result);
    qint64 compareByPosition(const ExpectedElement &expected, const BrowserElement &actual,
                             CmpResult *result);
    void compareAll(const ExpectedElement &expected, const BrowserElement &actual,
                    CmpResult *result);
    void addEntries(int index, BrowserElement *actual, const CmpResult &result,
                    std::vector<Entry> *entries) const;
    std::vector<Entry> sortedEntries(const std::vector<Entry> &list) const;
    TitanCompare outcomeOf(const Entry &entry);

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
    if (isScreenshotChecked(checks, result.failed) &&
        (hasMovedChild(result) || !m_pictures.match(expected.element, actual, *checks.screenshot)))
        fail(TitanCompare::ScreenshotCheck, &result);
    return result;
}

CmpResult Comparison::_compareResult(int index, BrowserElement *actual)
{
    CmpResult result;
    if (haveSameType(*m_tree.element(index).element, *actual)) {
        result = _titanCompare(index, actual);
        result.score = scoreOf(result);
    } else {
        fail(TitanCompare::ClassMismatch | TitanCompare::HierarchyCheck, &result);
        result.score = mismatchScore;
    }
    return result;
}

int Comparison::countFailures(const QMap<QString, QString> &expected,
                              const QMap<QString, QString> &actual,
                              const QMap<QString, TitanPropertyCheck> &checks, bool isExact)
{
    return isExact && expected == actual ? 0 : m_matcher.countFailures(expected, actual, checks);
}

void Comparison::compareValues(const ExpectedElement &expected, const BrowserElement &actual,
                               CmpResult *result)
{
    const ElementChecks &checks = m_tree.checks(expected);
    if (checks.identifying) {
        result->identifyingFailures =
            countFailures(expected.element->identifyingProperties(), actual.identifyingProperties(),
                          *checks.identifying, checks.isExact);
        if (result->identifyingFailures > 0) {
            fail(TitanCompare::IdentifyingCheck, result);
            return;
        }
    }
    if (checks.content) {
        result->contentFailures = countFailures(expected.element->properties(), actual.properties(),
                                                *checks.content, checks.isExact);
        if (result->contentFailures > 0)
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

// Returns the sum of scores. Clean pairs are put into the list when another one needs it.
qint64 Comparison::compareByPosition(const ExpectedElement &expected, const BrowserElement &actual,
                                     CmpResult *result)
{
    const QList<BrowserElement *> &children = actual.children();
    const int count = std::min(expected.element->children().count(), children.count());
    result->areChildrenClean = expected.element->children().count() == children.count();
    std::vector<SelectedPair> &pairs = result->selected;
    const auto addClean = [&](int from, int to) {
        for (int i = from; i > to; --i)
            pairs.push_back({expected.firstChild + i, children[i], cleanResult()});
    };
    qint64 sum = 0;
    for (int i = count - 1; i >= 0; --i) {
        CmpResult pair = _compareResult(expected.firstChild + i, children[i]);
        sum += pair.score;
        if (pair.isClean() && result->areChildrenClean)
            continue;
        if (pairs.empty())
            addClean(count - 1, i);
        result->areChildrenClean = false;
        pairs.push_back({expected.firstChild + i, children[i], std::move(pair)});
    }
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
        board.set(position, position, std::move(pair.result));
    }
    for (int row = rows - 1; row >= 0; --row) {
        for (int column = children.count() - 1; column >= 0; --column) {
            if (row != column)
                board.set(row, column, _compareResult(expected.firstChild + row, children[column]));
        }
    }
    result->selected = board.takeBest();
}

Entries Comparison::entries(BrowserElement *actual, const CmpResult &result)
{
    std::vector<Entry> list;
    addEntries(0, actual, result, &list);
    Entries entries;
    for (const Entry &entry : sortedEntries(list)) {
        // At the front there is nothing to search for, and the last one of an id comes first.
        const bool isSorted = entry.expected->checks >= 0;
        entries.insert(isSorted ? entries.constBegin() : entries.constEnd(),
                       entry.expected->element->id(), outcomeOf(entry));
    }
    return entries;
}

// By falling ids, and those without checks at the end.
std::vector<Comparison::Entry> Comparison::sortedEntries(const std::vector<Entry> &list) const
{
    const auto rankOf = [&](const Entry &entry) {
        const int checks = entry.expected->checks;
        return size_t(checks < 0 ? m_tree.checksCount() : m_tree.checksCount() - 1 - checks);
    };
    std::vector<size_t> next(size_t(m_tree.checksCount()) + 2);
    for (const Entry &entry : list)
        ++next[rankOf(entry) + 1];
    std::partial_sum(next.begin(), next.end(), next.begin());
    std::vector<Entry> sorted(list.size());
    for (const Entry &entry : list)
        sorted[next[rankOf(entry)]++] = entry;
    return sorted;
}

void Comparison::addEntries(int index, BrowserElement *actual, const CmpResult &result,
                            std::vector<Entry> *entries) const
{
    static const CmpResult clean = cleanResult();
    // A pair of unlike types is not looked into.
    if (result.failed & TitanCompare::ClassMismatch)
        return;
    const ExpectedElement &expected = m_tree.element(index);
    entries->push_back({&expected, actual, &result});
    for (const SelectedPair &pair : result.selected)
        addEntries(pair.expected, pair.actual, pair.result, entries);
    if (!result.areChildrenClean || expected.element == actual ||
        m_tree.checks(expected).isSubtreeExcluded)
        return;
    for (int i = expected.element->children().count() - 1; i >= 0; --i)
        addEntries(expected.firstChild + i, actual->children()[i], clean, entries);
}

TitanCompare Comparison::outcomeOf(const Entry &entry)
{
    BrowserElement *expected = entry.expected->element;
    const ElementChecks &checks = m_tree.checks(*entry.expected);
    TitanCompare outcome;
    outcome.expected = expected;
    outcome.actual = entry.actual;
    outcome.failed = entry.result->failed;
    outcome.checked = expected == entry.actual ? 0 : checkedFlags(checks, outcome.failed);
    if (outcome.failed & TitanCompare::IdentifyingCheck)
        m_matcher._matchProperties(expected->identifyingProperties(),
                                   entry.actual->identifyingProperties(), *checks.identifying,
                                   &outcome.identifyingFailures);
    if (outcome.failed & TitanCompare::ContentCheck)
        m_matcher._matchProperties(expected->properties(), entry.actual->properties(),
                                   *checks.content, &outcome.contentFailures);
    if (outcome.failed & TitanCompare::GeometryCheck)
        outcome.geometryFailures =
            geometryFailures(entry.expected->geometry.rect(),
                             _geometryRelativeToParent(entry.actual).rect(), *checks.geometry);
    return outcome;
}

void removeEntry(const BrowserElement *root, Entries *entries)
{
    for (auto entry = entries->begin(); entry != entries->end() && entry.key().isEmpty(); ++entry) {
        if (entry->expected == root) {
            entries->erase(entry);
            return;
        }
    }
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
        Entries entries = comparison.entries(actual, outcome);
        removeEntry(expected, &entries);
        *result = entries;
    }
    return outcome.returned == 0;
}

} // namespace Morvex
