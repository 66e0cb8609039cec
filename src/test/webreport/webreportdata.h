#pragma once

#include <QLatin1String>

namespace Morvex {

// The data file of a web report, a script with one statement for each run. docs/webreport-data.md
// says what it holds.

const QLatin1String webReportDataDir("data");
const QLatin1String webReportDataFile("results-v1.js");

const char webReportHeader[] = "var data = [];\n";
const char webReportRunBegin[] = "data.push( ";
const char webReportRunEnd[] = " );\n\n";

// In a document no quote is without a backslash before it but at the ends of a text, and no text
// holds this as a whole: so these bytes begin a run wherever they are.
const char webReportRunMark[] = "data.push( {\"version\"";

// What is left of a run that was cut before its results.
const char webReportLostRun[] =
    "data.push( {\"version\":{\"major\":1,\"minor\":2},\"tests\":[],\"ended\":false} );\n\n";

} // namespace Morvex
