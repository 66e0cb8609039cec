#include "shared/visual/elementmatcher.h"

#include "shared/text/patternbounds.h"

namespace Morvex {
namespace {

using Properties = QMap<QString, QString>;
using PropertyChecks = QMap<QString, TitanPropertyCheck>;

bool isWithin(const TitanPropertyCheck &check, qint64 expected, qint64 actual)
{
    return check.mode == TitanPropertyCheck::Range ? qAbs(expected - actual) <= check.delta
                                                   : expected == actual;
}

// A name that is none of a geometry's values has nothing to fail with.
bool holds(const QString &name, const TitanPropertyCheck &check, const QRect &expected,
           const QRect &actual)
{
    const auto width = [](const QRect &rect) { return qint64(rect.right()) - rect.left() + 1; };
    const auto height = [](const QRect &rect) { return qint64(rect.bottom()) - rect.top() + 1; };
    if (name == QLatin1String("x"))
        return isWithin(check, expected.left(), actual.left());
    if (name == QLatin1String("y"))
        return isWithin(check, expected.top(), actual.top());
    if (name == QLatin1String("width"))
        return isWithin(check, width(expected), width(actual));
    return name != QLatin1String("height") || isWithin(check, height(expected), height(actual));
}

// Goes on to a key, or to the next one above it. Most often the key is there, and equal ones are
// found faster than a smaller one.
template <typename Iterator>
bool goTo(const QString &key, Iterator end, Iterator *position)
{
    for (; *position != end; ++*position) {
        if (position->key() == key)
            return true;
        if (key < position->key())
            return false;
    }
    return false;
}

} // namespace

// Most values are the same, so that checks are only looked for where they are not.
template <typename Found>
void ElementMatcher::forEachFailure(const Properties &expected, const Properties &actual,
                                    const ValueChecks &checks, const Found &found)
{
    auto other = actual.constBegin();
    int place = 0;
    for (auto property = expected.constBegin(); property != expected.constEnd();
         ++property, ++place) {
        const bool isThere = goTo(property.key(), actual.constEnd(), &other);
        if (checks.areExact && isThere && *other == *property)
            continue;
        const auto check = checks.checks->constFind(property.key());
        if (check != checks.checks->constEnd() && !(isThere && matches(*check, *property, *other)))
            found(place, property.key());
    }
}

bool ElementMatcher::_matchProperties(const Properties &expected, const Properties &actual,
                                      const ValueChecks &checks, QStringList *failures)
{
    const int before = failures->count();
    forEachFailure(expected, actual, checks, [&](int, const QString &name) { *failures += name; });
    return failures->count() == before;
}

PropertyFailures ElementMatcher::findFailures(const Properties &expected, const Properties &actual,
                                              const ValueChecks &checks)
{
    PropertyFailures failures;
    forEachFailure(expected, actual, checks, [&](int place, const QString &) {
        ++failures.count;
        failures.places |= place < PropertyFailures::knownPlaces ? quint64(1) << place : 0;
    });
    return failures;
}

QStringList ElementMatcher::namesOf(const PropertyFailures &failures, const Properties &expected,
                                    const Properties &actual, const ValueChecks &checks)
{
    QStringList names;
    if (expected.count() > PropertyFailures::knownPlaces) {
        _matchProperties(expected, actual, checks, &names);
        return names;
    }
    auto property = expected.constBegin();
    for (quint64 places = failures.places; places != 0; places >>= 1, ++property) {
        if (places & 1)
            names += property.key();
    }
    return names;
}

bool ElementMatcher::matches(const TitanPropertyCheck &check, const QString &expected,
                             const QString &actual)
{
    return isPattern(check) ? matchesPattern(check, actual) : expected == actual;
}

bool ElementMatcher::matchesPattern(const TitanPropertyCheck &check, const QString &actual)
{
    auto pattern = m_patterns.find(&check);
    if (pattern == m_patterns.end()) {
        const bool isWildcard = check.mode == TitanPropertyCheck::Wildcard;
        if (!isWildcard && !isBoundedPattern(check.value))
            return false;
        pattern =
            m_patterns.insert(&check, QRegExp(check.value, Qt::CaseSensitive,
                                              isWildcard ? QRegExp::Wildcard : QRegExp::RegExp2));
    }
    return pattern->exactMatch(actual);
}

QStringList geometryFailures(const QRect &expected, const QRect &actual,
                             const PropertyChecks &checks)
{
    const bool areComparable = expected.isValid() && actual.isValid();
    if (areComparable && expected == actual)
        return {};
    QStringList failures;
    for (auto check = checks.constBegin(); check != checks.constEnd(); ++check) {
        if (!areComparable || !holds(check.key(), *check, expected, actual))
            failures += check.key();
    }
    return failures;
}

} // namespace Morvex
