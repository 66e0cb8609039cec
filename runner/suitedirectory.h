#pragma once

#include <QString>
#include <QStringList>

namespace Morvex {

/// An error text when the suite's directory can't be listed, so that it would seem to have no test
/// cases.
[[nodiscard]] QString whyNotListed(const QString &suiteDirectory);

/// Writes a warning for each directory of a test case that isn't among those that were found, @p
/// known.
void warnOfTestCasesLeftOut(const QString &suiteDirectory, const QStringList &known);

} // namespace Morvex
