#pragma once

#include "morvex_export.h"
#include "test/output/xmlelement.h"
#include "test/testresult.h"

#include <QDateTime>
#include <QHash>
#include <QMap>
#include <QSet>
#include <QString>

namespace Morvex {

// What the two JUnit reports share: the forms that the readers of this dialect accept.

// This dialect distinguishes a check that failed from an error on the way.
MORVEX_EXPORT bool isJUnitFailure(TestResult::ResultType type);
MORVEX_EXPORT bool isJUnitError(TestResult::ResultType type);

/// Never empty.
MORVEX_EXPORT QString junitHostName();

/// Without fraction and zone, as readers want it. They take such a time as UTC, so it is. The time
/// of now for an invalid one.
MORVEX_EXPORT QString junitTimestamp(const QDateTime &time);

/// Seconds with three decimals. 0 for less: a clock may have been set back.
MORVEX_EXPORT QString junitSeconds(qint64 milliseconds);

/// What is known of the run. Has the key "summary" in any case, since some readers refuse an empty
/// list.
MORVEX_EXPORT QMap<QString, QString> junitProperties(const TestResult::Entry &start);
MORVEX_EXPORT XmlElement junitPropertiesElement(const QMap<QString, QString> &properties);

/// Readers drop all but the first of several test cases of one name.
class MORVEX_EXPORT JUnitNames
{
public:
    /// @p name; "_2", "_3" and so on after it when it was given out before in this class.
    QString unique(const QString &className, const QString &name);
    /// @p base with the next number after it.
    QString numbered(const QString &className, const QString &base);

private:
    QString numberedFrom(int first, const QString &className, const QString &base);

    QSet<QString> m_given;
    // The last number that was given out, by what comes before it.
    QHash<QString, int> m_numbers;
};

} // namespace Morvex
