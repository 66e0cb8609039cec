#pragma once

#include "morvex_export.h"

#include <QDeadlineTimer>

class QProcessEnvironment;

namespace Morvex {

/// When the parent ends the test case of this process, if it has not come to its end; never without
/// a limit.
MORVEX_EXPORT QDeadlineTimer testCaseDeadline();

/// Makes it that of a child with this environment.
void addTestCaseDeadline(QProcessEnvironment *environment, const QDeadlineTimer &deadline);

} // namespace Morvex
