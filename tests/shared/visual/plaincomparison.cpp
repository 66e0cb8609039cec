#include "shared/visual/plaincomparison.h"

#include "shared/imagecomparison.h"
#include "shared/visual/assignment.h"

#include <QImage>
#include <QRegExp>

using namespace Morvex;

namespace MorvexTest {
namespace {

using Id = BrowserElement::Id;
using Checks = QMap<QString, TitanPropertyCheck>;
using Properties = QMap<QString, QString>;

struct Pair
{
    QMap<Id, TitanCompare> entries;
    int failed = 48;
    int returned = 48;
    int score = 4000;
};

struct Plain
{
    const TitanPropertyChecksOfElements &identifying;
    const TitanPropertyChecksOfElements &content;
    const TitanPropertyChecksOfElements &geometry;
    const QMap<Id, VisualScreenshotCheck> &screenshots;
    const QList<Id> &excluded;

    static QStringList failures(const Properties &expected, const Properties &actual,
                                const Checks &checks)
    {
        QStringList names;
        for (const QString &name : expected.keys()) {
            if (!checks.contains(name))
                continue;
            const TitanPropertyCheck check = checks[name];
            const auto syntax = check.mode == 1 ? QRegExp::Wildcard : QRegExp::RegExp2;
            const bool hasPattern = check.mode == 1 || check.mode == 3;
            if (!actual.contains(name) ||
                !(hasPattern
                      ? QRegExp(check.value, Qt::CaseSensitive, syntax).exactMatch(actual[name])
                      : expected[name] == actual[name]))
                names += name;
        }
        return names;
    }

    static QRect place(const BrowserElement *element)
    {
        const QRect rect = element->geometry().rect();
        const BrowserElement *parent = element->parent();
        const bool hasBase = parent && parent->parent() && parent->geometry().rect().isValid();
        return hasBase && !element->geometry().isRelative()
                   ? rect.translated(-parent->geometry().rect().topLeft())
                   : rect;
    }

    int compareGeometry(BrowserElement *expected, BrowserElement *actual, TitanCompare *entry) const
    {
        int returned = 0;
        const QRect a = place(expected);
        const QRect b = place(actual);
        const QMap<QString, int> distances{{QStringLiteral("x"), b.x() - a.x()},
                                           {QStringLiteral("y"), b.y() - a.y()},
                                           {QStringLiteral("width"), b.width() - a.width()},
                                           {QStringLiteral("height"), b.height() - a.height()}};
        const Checks checks = geometry[expected->id()];
        for (const QString &name : checks.keys()) {
            const bool isNowhere = !a.isValid() || !b.isValid();
            const int delta = checks[name].mode == 2 ? checks[name].delta : 0;
            if (!isNowhere && qAbs(distances.value(name)) <= delta)
                continue;
            entry->geometryFailures += name;
            entry->failed |= 2;
            returned |= isNowhere ? 0 : 2;
        }
        return returned;
    }

    Pair pairOf(BrowserElement *expected, BrowserElement *actual) const
    {
        Pair pair;
        const bool agree = expected->simplifiedType().isEmpty()
                               ? expected->className() == actual->className()
                               : expected->simplifiedType() == actual->simplifiedType();
        if (!agree)
            return pair;
        pair.returned = compare(expected, actual, &pair.entries);
        const TitanCompare own = pair.entries.value(expected->id());
        pair.failed = own.failed;
        const int f = pair.returned;
        pair.score = (f & 1 ? 20 : 0) + (f & 2 ? 50 : 0) +
                     (f & 4 ? 100 * (own.contentFailures.count() + 1) : 0) +
                     (f & 8 ? 600 * (own.identifyingFailures.count() + 1) : 0) + (f & 16 ? 200 : 0);
        return pair;
    }

    QList<Pair> select(BrowserElement *expected, BrowserElement *actual) const
    {
        const int rows = expected->children().count();
        const int columns = actual->children().count();
        QList<Pair> selected;
        int sum = 0;
        for (int i = qMin(rows, columns) - 1; i >= 0; --i) {
            selected += pairOf(expected->children()[i], actual->children()[i]);
            sum += selected.last().score;
        }
        if (sum == 0 || rows >= 100)
            return selected;
        selected.clear();
        QList<Pair> all;
        ScoreMatrix matrix{rows, columns, {}};
        for (int i = 0; i < rows * columns; ++i) {
            all += pairOf(expected->children()[i / columns], actual->children()[i % columns]);
            matrix.scores.push_back(all.last().score);
        }
        const std::vector<int> best = cheapestAssignment(matrix);
        for (int row = 0; row < rows; ++row) {
            if (best[size_t(row)] >= 0)
                selected += all[row * columns + best[size_t(row)]];
        }
        return selected;
    }

    bool hasPicture(BrowserElement *expected, BrowserElement *actual,
                    const QMap<Id, TitanCompare> &entries) const
    {
        for (BrowserElement *child : expected->children()) {
            if (entries.value(child->id()).failed & 2)
                return false;
        }
        const VisualScreenshotCheck check = screenshots[expected->id()];
        QImage a;
        QImage b;
        if (!visualMaskImages(expected, actual, &a, &b, check.algorithm != 0))
            return false;
        if (check.mask.count() > 0) {
            check.mask.drawToImage(&a);
            check.mask.drawToImage(&b);
        }
        return check.algorithm == 0
                   ? a == b
                   : ImageComparison::normalizedCorrelation(a, b) - check.threshold > -1e-06;
    }

    int compare(BrowserElement *expected, BrowserElement *actual,
                QMap<Id, TitanCompare> *result) const
    {
        TitanCompare &entry = (*result)[expected->id()];
        entry.expected = expected;
        entry.actual = actual;
        int returned = 0;
        if (expected == actual)
            return returned;
        if (identifying.contains(expected->id())) {
            entry.checked |= 8;
            entry.identifyingFailures =
                failures(expected->identifyingProperties(), actual->identifyingProperties(),
                         identifying[expected->id()]);
            if (!entry.identifyingFailures.isEmpty())
                return entry.failed = 8;
        }
        if (content.contains(expected->id())) {
            entry.checked |= 4;
            entry.contentFailures =
                failures(expected->properties(), actual->properties(), content[expected->id()]);
            if (!entry.contentFailures.isEmpty())
                returned |= entry.failed |= 4;
        }
        if (geometry.contains(expected->id())) {
            returned |= compareGeometry(expected, actual, &entry);
            entry.checked |= 2;
        }
        if (!excluded.contains(expected->id())) {
            entry.checked |= 16;
            if (expected->children().count() != actual->children().count()) {
                entry.failed |= 16;
                returned |= 16;
            }
            for (const Pair &pair : select(expected, actual)) {
                for (const Id &id : pair.entries.keys())
                    result->insert(id, pair.entries[id]);
                returned |= pair.returned;
                entry.failed |= pair.failed & 32 ? 16 : 0;
            }
        }
        if (entry.failed < 4 && screenshots.contains(expected->id())) {
            entry.checked |= 1;
            if (!hasPicture(expected, actual, *result)) {
                entry.failed |= 1;
                returned |= 1;
            }
        }
        return returned;
    }
};

} // namespace

int plainCompare(BrowserElement *expected, BrowserElement *actual,
                 const TitanPropertyChecksOfElements &identifying,
                 const TitanPropertyChecksOfElements &content,
                 const TitanPropertyChecksOfElements &geometry,
                 const QMap<Id, VisualScreenshotCheck> &screenshots,
                 const QList<Id> &subtreeExcluded, QMap<Id, TitanCompare> *result)
{
    return Plain{identifying, content, geometry, screenshots, subtreeExcluded}.compare(
        expected, actual, result);
}

} // namespace MorvexTest
