#pragma once

#include "support/xmldocument.h"

#include <QByteArray>

#include <map>
#include <string>
#include <vector>

namespace MorvexTest {

/// By the keys of TestReportGenerator::resultCount; "errors+fatals" where a format joins
/// them. A format that does not have a number leaves its key out.
using Counts = std::map<std::string, int>;

/// A format that writes one XML file, and what its report lets a reader find out about the run.
struct ClassicFormat
{
    std::string keyword;
    Counts (*read)(const XmlDocument &document);
    /// Whether its report is there without generateSummary.
    bool needsNoSummary;
};

/// All that are in the table of formats.
const std::vector<ClassicFormat> &classicFormats();

/// The counts of the file that a format with a directory writes, by its name in the table of
/// formats.
Counts countsOfResultsFile(const QString &file, const QByteArray &content);

/// Those of the last run in the data file of a web report.
Counts countsOfWebReport(const QByteArray &content);

/// Those of the summary of a console report.
Counts countsOfConsole(const QByteArray &content);

} // namespace MorvexTest
