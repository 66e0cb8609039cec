#pragma once

#include "morvex_export.h"
#include "test/tablediff.h"
#include "test/xmlstreamwriter.h"

#include <QString>

#include <string>

namespace Morvex {

/// The parts of an xml3 report that other generators write too.
namespace Xml3ReportWriter {

/// Opens a `test` and writes its `prolog`; the `test` stays open. @p time is in the form of
/// @p version. The element about retries is left out when @p retry is negative.
MORVEX_EXPORT void writeSectionStart(XmlStreamWriterQString &writer, int version,
                                     const QString &type, const QString &name,
                                     const std::string &time, const QString &summary,
                                     const QString &description, const std::string &uri, int lineNo,
                                     int retry, int maxRetry);

/// `name`, `summary`, `description`: what a section that was skipped has too.
MORVEX_EXPORT void writeSectionTexts(XmlStreamWriterQString &writer, const QString &name,
                                     const QString &summary, const QString &description);

/// A negative @p lineNo is left out.
MORVEX_EXPORT void writeFileLocation(XmlStreamWriter &writer, const std::string &uri, int lineNo);

/// What is in a location, for locations of another name.
MORVEX_EXPORT void writeFileLocationContent(XmlStreamWriter &writer, const std::string &uri,
                                            int lineNo);

MORVEX_EXPORT void writeTableDiff(XmlStreamWriter &writer, const FList<TableDiff::Element> &diff);
MORVEX_EXPORT void writeTableDiffCell(XmlStreamWriter &writer, const TableDiff::Cell &cell);

} // namespace Xml3ReportWriter
} // namespace Morvex
