#pragma once

#include "test/report/iso8601time.h"
#include "test/report/reportlocations.h"
#include "test/testreportgenerator.h"
#include "test/xmlstreamwriter.h"

#include <QDateTime>
#include <QString>

#include <memory>
#include <ostream>
#include <string>

namespace Morvex {

const int firstXml3VersionWithMsAndVideo = 5;

/// What messages, sections and the results of verifications of an xml3 report have in common.
struct Xml3Elements
{
    Xml3Elements(std::unique_ptr<std::ostream> output, int formatVersion,
                 TestReportGenerator::TestType type, const QString &resultDir);

    static std::string typeName(const TestResult::Entry &entry);
    /// In the form of the version.
    std::string formatDateTime(const QDateTime &dateTime);

    void writeLocation(const LineInfo &line);
    /// Nothing for a stack that is no more than the place of the entry.
    void writeStacktrace(const TestResult::Entry &entry);
    /// The texts, and the screenshot that was taken.
    void writeCommon(const TestResult::Entry &entry, const QString &details);
    void writeUri(const char *element, const std::string &uri);

    std::unique_ptr<std::ostream> stream;
    XmlStreamWriterQString writer;
    int version;
    ReportLocations locations;
    Iso8601Time time;
};

} // namespace Morvex
