#pragma once

#include <QString>

namespace Morvex {

struct RunnerOptions;

enum ExitStatus { ExitPassed = 0, ExitFailed = 1, ExitUnusable = 2, ExitInterrupted = 130 };

/// A line of the runner on standard error; standard output belongs to the report.
void printMessage(const QString &text);

/// The same without the name of the program before it, for what the user may want to copy.
void printLine(const QString &text);

/// What is wrong with the command line, and where to read about it.
void printUsageError(const QString &error);

/// What to add to the message about a suite directory or test case that is missing, when an option
/// that takes all that follows may have taken the suite directory; else empty.
QString suiteDirectoryHint(const RunnerOptions &options);

/// The text quoted for a shell where it has to be.
QString shellQuoted(const QString &text);

} // namespace Morvex
