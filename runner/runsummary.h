#pragma once

#include <QtGlobal>

namespace Morvex {

class RunOutcome;
struct RunnerOptions;

/// How a run ended.
struct RunEnd
{
    qint64 milliseconds;
    bool isInterrupted;
};

/// Prints what a run of a suite came to, and the command that runs the failed test cases again.
void printSummary(const RunOutcome &outcome, const RunnerOptions &options, const RunEnd &end);

} // namespace Morvex
