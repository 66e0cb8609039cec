#include "test/report/xml3elements.h"

#include "test/report/resultlabels.h"
#include "test/report/xml3reportwriter.h"
#include "test/reportgeneratorshared.h"

#include <utility>

namespace Morvex {
namespace {

const int firstVersionWithStacktrace = 3;

// A shorter stack is the place of the entry itself.
const std::size_t minFrames = 2;

} // namespace

using Entry = TestResult::Entry;

Xml3Elements::Xml3Elements(std::unique_ptr<std::ostream> output, int formatVersion,
                           TestReportGenerator::TestType type, const QString &resultDir)
    : stream(std::move(output))
    , writer(*stream)
    , version(formatVersion)
    , locations(type, resultDir)
{
    writer.setAutoFormatting(true);
}

std::string Xml3Elements::typeName(const Entry &entry)
{
    const QLatin1String name = resultName(entry.type);
    return {name.data(), static_cast<std::size_t>(name.size())};
}

std::string Xml3Elements::formatDateTime(const QDateTime &dateTime)
{
    const QByteArray text =
        version >= firstXml3VersionWithMsAndVideo ? time.textWithMs(dateTime) : time.text(dateTime);
    return text.toStdString();
}

void Xml3Elements::writeLocation(const LineInfo &line)
{
    Xml3ReportWriter::writeFileLocation(writer, locations.scriptFile(line.fileName()),
                                        line.lineNumber());
}

void Xml3Elements::writeStacktrace(const Entry &entry)
{
    if (version < firstVersionWithStacktrace || entry.stack.size() < minFrames)
        return;
    writer.writeStartElement("stacktrace");
    for (const LineInfo &frame : entry.stack)
        writeLocation(frame);
    writer.writeEndElement();
}

void Xml3Elements::writeCommon(const Entry &entry, const QString &details)
{
    writer.writeCDataElementQString("text", entry.info.isEmpty()
                                                ? entry.message
                                                : entry.message + QLatin1String(": ") + entry.info);
    if (!details.isEmpty())
        writer.writeCDataElementQString("detail", details);
    const QString screenshot = extractScreenshotFromMsgAndDetail(entry.message, entry.details);
    if (!screenshot.isEmpty())
        writeUri("screenshot", locations.failedImage(screenshot));
}

void Xml3Elements::writeUri(const char *element, const std::string &uri)
{
    writer.writeStartElement(element);
    writer.writeCDataElement("uri", uri);
    writer.writeEndElement();
}

} // namespace Morvex
