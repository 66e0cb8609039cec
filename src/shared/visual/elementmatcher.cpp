#include "shared/visual/elementmatcher.h"

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

} // namespace

bool haveSameType(const BrowserElement &expected, const BrowserElement &actual)
{
    return expected.simplifiedType().isEmpty()
               ? expected.className() == actual.className()
               : expected.simplifiedType() == actual.simplifiedType();
}

bool isPattern(const TitanPropertyCheck &check)
{
    return check.mode == TitanPropertyCheck::Wildcard ||
           check.mode == TitanPropertyCheck::RegularExpression;
}

// All three are sorted by name and walked side by side.
template <typename Found>
void ElementMatcher::findFailures(const Properties &expected, const Properties &actual,
                                  const PropertyChecks &checks, const Found &found)
{
    auto check = checks.constBegin();
    auto other = actual.constBegin();
    for (auto property = expected.constBegin(); property != expected.constEnd(); ++property) {
        while (check != checks.constEnd() && check.key() < property.key())
            ++check;
        if (check == checks.constEnd())
            return;
        if (check.key() != property.key())
            continue;
        while (other != actual.constEnd() && other.key() < property.key())
            ++other;
        if (other == actual.constEnd() || other.key() != property.key() ||
            !matches(*check, *property, *other))
            found(property.key());
    }
}

bool ElementMatcher::_matchProperties(const Properties &expected, const Properties &actual,
                                      const PropertyChecks &checks, QStringList *failures)
{
    const int before = failures->count();
    findFailures(expected, actual, checks, [&](const QString &name) { *failures += name; });
    return failures->count() == before;
}

int ElementMatcher::countFailures(const Properties &expected, const Properties &actual,
                                  const PropertyChecks &checks)
{
    int count = 0;
    findFailures(expected, actual, checks, [&](const QString &) { ++count; });
    return count;
}

bool ElementMatcher::matches(const TitanPropertyCheck &check, const QString &expected,
                             const QString &actual)
{
    return isPattern(check) ? matchesPattern(check, actual) : expected == actual;
}

bool ElementMatcher::matchesPattern(const TitanPropertyCheck &check, const QString &actual)
{
    auto pattern = m_patterns.find(&check);
    if (pattern == m_patterns.end())
        pattern = m_patterns.insert(&check, QRegExp(check.value, Qt::CaseSensitive,
                                                    check.mode == TitanPropertyCheck::Wildcard
                                                        ? QRegExp::Wildcard
                                                        : QRegExp::RegExp2));
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
