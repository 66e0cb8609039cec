#pragma once

#include <QLatin1String>

namespace Morvex {

// The data file of a web report, a script with one statement for each run. docs/webreport-data.md
// tells what it holds.

const QLatin1String webReportDataDir("data");
const QLatin1String webReportDataFile("results-v1.js");

const char webReportHeader[] = "var data = [];\n";
const char webReportRunBegin[] = "data.push( ";
const char webReportRunEnd[] = " );\n\n";

} // namespace Morvex
