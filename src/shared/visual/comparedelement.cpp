#include "shared/visual/comparedelement.h"

#include <QSet>

namespace Morvex {
namespace {

using Properties = QMap<QString, QString>;
using PropertyChecks = QMap<QString, TitanPropertyCheck>;
using Id = BrowserElement::Id;

template <typename Value>
const Value *findIn(const QMap<Id, Value> &checks, const Id &id)
{
    const auto found = checks.constFind(id);
    return found == checks.constEnd() ? nullptr : &found.value();
}

void addChecks(const VisualChecks &checks, const QSet<QString> &excluded, ComparedElement *compared)
{
    const Id id = compared->element->id();
    compared->identifyingChecks = findIn(checks.identifying, id);
    compared->contentChecks = findIn(checks.content, id);
    compared->geometryChecks = findIn(checks.geometry, id);
    compared->screenshotCheck = findIn(checks.screenshots, id);
    compared->isSubtreeExcluded = excluded.contains(id.toString());
}

ComparedElement comparedElement(BrowserElement *element)
{
    ComparedElement compared;
    compared.element = element;
    compared.className = element->className();
    compared.simplifiedType = element->simplifiedType();
    compared.properties = element->properties();
    compared.identifyingProperties = element->identifyingProperties();
    compared.geometry = _geometryRelativeToParent(element);
    return compared;
}

QSet<QString> texts(const QList<Id> &ids)
{
    QSet<QString> result;
    for (const Id &id : ids)
        result.insert(id.toString());
    return result;
}

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

UIAbstraction::ElementGeometry _geometryRelativeToParent(const BrowserElement *element)
{
    UIAbstraction::ElementGeometry geometry = element->geometry();
    const BrowserElement *parent = element->parent();
    if (parent && parent->parent() && parent->geometry().rect().isValid())
        return geometry.relativeTo(parent->geometry());
    geometry.setRelative(true);
    return geometry;
}

std::vector<ComparedElement> comparedElements(BrowserElement *root, const VisualChecks *checks)
{
    const QSet<QString> excluded = checks ? texts(checks->subtreeExcluded) : QSet<QString>();
    std::vector<ComparedElement> elements{comparedElement(root)};
    for (size_t i = 0; i < elements.size(); ++i) {
        if (checks)
            addChecks(*checks, excluded, &elements[i]);
        const QList<BrowserElement *> &children = elements[i].element->children();
        elements[i].firstChild = int(elements.size());
        elements[i].childCount = children.count();
        for (BrowserElement *child : children)
            elements.push_back(comparedElement(child));
    }
    return elements;
}

bool haveSameType(const ComparedElement &expected, const ComparedElement &actual)
{
    return expected.simplifiedType.isEmpty() ? expected.className == actual.className
                                             : expected.simplifiedType == actual.simplifiedType;
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
    return check.mode == TitanPropertyCheck::Wildcard ||
                   check.mode == TitanPropertyCheck::RegularExpression
               ? matchesPattern(check, actual)
               : expected == actual;
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

bool haveGeometry(const ComparedElement &expected, const ComparedElement &actual)
{
    return expected.geometry.rect().isValid() && actual.geometry.rect().isValid();
}

QStringList geometryFailures(const ComparedElement &expected, const ComparedElement &actual)
{
    const bool areComparable = haveGeometry(expected, actual);
    QStringList failures;
    const PropertyChecks &checks = *expected.geometryChecks;
    for (auto check = checks.constBegin(); check != checks.constEnd(); ++check) {
        if (!areComparable ||
            !holds(check.key(), *check, expected.geometry.rect(), actual.geometry.rect()))
            failures += check.key();
    }
    return failures;
}

} // namespace Morvex
