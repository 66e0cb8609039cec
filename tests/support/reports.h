#pragma once

#include "support/runs.h"
#include "support/xmldocument.h"

#include <QByteArray>
#include <QString>

#include <functional>

namespace MorvexTest {

/// What stands in the file of the format @p keyword when all that @p log logs has been handled and
/// the format is gone.
QByteArray reportOf(const char *keyword, const std::function<void(Morvex::TestResult &)> &log);

/// The report of a whole run.
QByteArray reportOf(const char *keyword, const SampleRun &run);

/// A run with START, one entry and END.
QByteArray reportOf(const char *keyword, const Morvex::TestResult::Entry &entry);

/// One entry at noon of a day in local time.
Morvex::TestResult::Entry entryOf(Morvex::TestResult::ResultType type, const QString &message,
                                  const QString &details = {});

} // namespace MorvexTest
