#pragma once

#include "runner/applicationaccess.h"

#include <memory>

namespace Morvex {

/// The part of the runner that the test cases of a suite need only when their script asks for it:
/// all commands of the command line, the formats of reports, applications, verification points. It
/// is a library, since what it links takes as long to load as all else that an empty test case
/// does.
struct RunnerLibrary
{
    /// Does what the command line asks for and returns the exit status.
    int (*runCommand)(const RunnerOptions &options);
    std::unique_ptr<ApplicationAccess> (*makeApplicationAccess)(
        const ApplicationAccess::TestCase &testCase);
};

/// Loads it on the first call. Null with an error text when it can't be loaded; @p error must not
/// be null.
[[nodiscard]] const RunnerLibrary *runnerLibrary(QString *error);

} // namespace Morvex
