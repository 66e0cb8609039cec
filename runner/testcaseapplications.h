#pragma once

#include "runner/applicationaccess.h"

#include <memory>

namespace Morvex {

/// See RunnerLibrary.
std::unique_ptr<ApplicationAccess>
makeTestCaseApplications(const ApplicationAccess::TestCase &testCase);

} // namespace Morvex
