#pragma once

#include "test/output/xmlelement.h"
#include "test/testresult.h"

namespace Morvex {

// What the nested XML log says of a result, in elements below it.

// Without the attribute for an empty type.
XmlElement emptyDescription(QLatin1String type = {});
XmlElement descriptionElement(const QString &text, QLatin1String type = {});

/// The object, and what was found instead, of a verification that did not come out as it should.
void injectFailedVPInfo(XmlElement &result, const TestResult::Entry &entry);

/// The differences of a table, if the entry has any.
void injectTableDiff(XmlElement &result, const TestResult::Entry &entry);

} // namespace Morvex
