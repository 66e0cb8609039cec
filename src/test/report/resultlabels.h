#pragma once

#include "morvex_export.h"
#include "test/testresult.h"

#include <QLatin1String>
#include <QString>

namespace Morvex {

/// The colour in which a format shows a type, when it has colours.
enum class ResultColor { Red, Green, Magenta, Blue };

// One table for all formats. A type out of range, as a broken stream may bring it, has the empty
// name and the colour blue.
MORVEX_EXPORT QLatin1String resultName(TestResult::ResultType type);
MORVEX_EXPORT ResultColor resultColor(TestResult::ResultType type);

/// The word for a kind of difference and for its subject.
MORVEX_EXPORT QLatin1String differenceName(TableDiff::Element::Kind kind);
MORVEX_EXPORT QLatin1String subjectName(TableDiff::Subject::Type type);

/// What stands for a section without a title.
MORVEX_EXPORT QString nameOrUnnamed(const QString &name);

// The texts that frame a run and a test case.
MORVEX_EXPORT QString startMessage(const QString &name);
MORVEX_EXPORT QString startDetails(const QString &name);
MORVEX_EXPORT QString endMessage(const QString &name);
MORVEX_EXPORT QString endDetails(const QString &name);

} // namespace Morvex
