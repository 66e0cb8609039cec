#pragma once

#include "morvex_export.h"

#include <QLoggingCategory>

namespace Morvex {

// Diagnostics only; silent unless QT_LOGGING_RULES switches a category on, as in
// QT_LOGGING_RULES="morvex.reportgen=true".
MORVEX_EXPORT Q_DECLARE_LOGGING_CATEGORY(traceReportGen) MORVEX_EXPORT
    Q_DECLARE_LOGGING_CATEGORY(traceReportGenerator) MORVEX_EXPORT
    Q_DECLARE_LOGGING_CATEGORY(traceTestCaseRun) MORVEX_EXPORT
    Q_DECLARE_LOGGING_CATEGORY(traceXml3Report)

} // namespace Morvex
