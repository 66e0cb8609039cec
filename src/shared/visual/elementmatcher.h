#pragma once

#include "shared/titancmp.h"

#include <QHash>
#include <QRegExp>

namespace Morvex {

/// Whether an actual element may stand for an expected one.
bool haveSameType(const BrowserElement &expected, const BrowserElement &actual);

/// Whether a check is one against its own text.
bool isPattern(const TitanPropertyCheck &check);

/// Compares the properties of elements. Keeps what patterns are compiled to.
class ElementMatcher
{
public:
    /// @p failures gets the names of the properties that fail, of which all are tested.
    bool _matchProperties(const QMap<QString, QString> &expected,
                          const QMap<QString, QString> &actual,
                          const QMap<QString, TitanPropertyCheck> &checks, QStringList *failures);

    /// How many properties fail.
    int countFailures(const QMap<QString, QString> &expected, const QMap<QString, QString> &actual,
                      const QMap<QString, TitanPropertyCheck> &checks);

private:
    template <typename Found>
    void findFailures(const QMap<QString, QString> &expected, const QMap<QString, QString> &actual,
                      const QMap<QString, TitanPropertyCheck> &checks, const Found &found);
    bool matches(const TitanPropertyCheck &check, const QString &expected, const QString &actual);
    bool matchesPattern(const TitanPropertyCheck &check, const QString &actual);

    QHash<const TitanPropertyCheck *, QRegExp> m_patterns;
};

/// The names of the values that fail. All of them do when a rectangle is invalid.
QStringList geometryFailures(const QRect &expected, const QRect &actual,
                             const QMap<QString, TitanPropertyCheck> &checks);

} // namespace Morvex
