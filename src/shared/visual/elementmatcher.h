#pragma once

#include "shared/titanchecks.h"

#include <QHash>
#include <QRegExp>

namespace Morvex {

/// Whether an actual element may stand for an expected one.
inline bool haveSameType(const BrowserElement &expected, const BrowserElement &actual)
{
    return expected.simplifiedType().isEmpty()
               ? expected.className() == actual.className()
               : expected.simplifiedType() == actual.simplifiedType();
}

/// Whether a check is one against its own text.
inline bool isPattern(const TitanPropertyCheck &check)
{
    return check.mode == TitanPropertyCheck::Wildcard ||
           check.mode == TitanPropertyCheck::RegularExpression;
}

/// The checks of some values of an element.
struct ValueChecks
{
    /// Not owned.
    const QMap<QString, TitanPropertyCheck> *checks;
    /// Whether a value that is the same fulfils all of them.
    bool areExact;
};

/// The expected properties that failed.
struct PropertyFailures
{
    static constexpr int knownPlaces = 64;

    int count = 0;
    /// A bit for each of the first properties, in their order.
    quint64 places = 0;
};

/// Compares the properties of elements. Keeps what patterns are compiled to.
class ElementMatcher
{
public:
    /// @p failures gets the names of the properties that fail, of which all are tested.
    bool _matchProperties(const QMap<QString, QString> &expected,
                          const QMap<QString, QString> &actual, const ValueChecks &checks,
                          QStringList *failures);

    /// The same without names, which most pairs that are compared are not asked for.
    PropertyFailures findFailures(const QMap<QString, QString> &expected,
                                  const QMap<QString, QString> &actual, const ValueChecks &checks);

    /// The names of what findFailures found with the same arguments.
    QStringList namesOf(const PropertyFailures &failures, const QMap<QString, QString> &expected,
                        const QMap<QString, QString> &actual, const ValueChecks &checks);

private:
    template <typename Found>
    void forEachFailure(const QMap<QString, QString> &expected,
                        const QMap<QString, QString> &actual, const ValueChecks &checks,
                        const Found &found);
    bool matches(const TitanPropertyCheck &check, const QString &expected, const QString &actual);
    bool matchesPattern(const TitanPropertyCheck &check, const QString &actual);

    QHash<const TitanPropertyCheck *, QRegExp> m_patterns;
};

/// The names of the values that fail. All of them do when a rectangle is invalid.
QStringList geometryFailures(const QRect &expected, const QRect &actual,
                             const QMap<QString, TitanPropertyCheck> &checks);

} // namespace Morvex
