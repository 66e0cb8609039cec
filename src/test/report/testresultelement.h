#pragma once

#include "morvex_export.h"
#include "test/output/xmlelement.h"
#include "test/report/iso8601time.h"
#include "test/testreportgenerator.h"

namespace Morvex {

// The elements of the flat XML log, which is written at the end ("xml") or as it grows
// ("xmlIncremental").

/// The root, without its content.
MORVEX_EXPORT XmlElement flatReportElement();
MORVEX_EXPORT XmlElement testResultElement(const TestResult::Entry &entry, Iso8601Time &times);
/// The counts of the whole run.
MORVEX_EXPORT XmlElement summaryElement(const TestReportGenerator &generator);

} // namespace Morvex
