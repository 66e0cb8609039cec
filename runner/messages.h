#pragma once

#include <QString>

namespace Morvex {

enum ExitStatus { ExitPassed = 0, ExitFailed = 1, ExitUnusable = 2, ExitInterrupted = 130 };

/// A line of the runner on standard error; standard output belongs to the report.
void printMessage(const QString &text);
void printLine(const QString &text);

/// The text quoted for a shell where it has to be.
QString shellQuoted(const QString &text);

} // namespace Morvex
