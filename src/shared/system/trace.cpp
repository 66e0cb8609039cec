#include "shared/system/trace.h"

namespace Morvex {

Q_LOGGING_CATEGORY(traceReportGen, "morvex.reportgen", QtCriticalMsg)
Q_LOGGING_CATEGORY(traceReportGenerator, "morvex.ReportGenerator", QtCriticalMsg)
Q_LOGGING_CATEGORY(traceTestCaseRun, "morvex.TestCaseRun", QtCriticalMsg)
Q_LOGGING_CATEGORY(traceXml3Report, "morvex.Xml3Report", QtCriticalMsg)

} // namespace Morvex
