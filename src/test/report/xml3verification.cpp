#include "test/report/xml3verification.h"

#include "test/report/xml3elements.h"
#include "test/report/xml3reportwriter.h"
#include "test/reportgeneratorshared.h"

#include <QDir>

namespace Morvex {
namespace {

using Entry = TestResult::Entry;

const int firstVersionWithVisual = 1;
const int noVerification = -1;

// An image of the actual look is kept unless it was the expected one.
bool hasFailedImage(TestResult::ResultType type)
{
    return type != TestResult::PASS && type != TestResult::XPASS;
}

// The image travels with the report.
QString withShortImagePath(const QString &details)
{
    const QString image = vpFailedImgFromMsg(details);
    if (image.isEmpty())
        return details;
    const QFileInfo file(image);
    return QString(details).replace(image,
                                    file.dir().dirName() + QLatin1Char('/') + file.fileName());
}

} // namespace

Xml3Verification::Xml3Verification(Xml3Elements &elements)
    : m_elements(elements)
    , m_writer(elements.writer)
    , m_open(noVerification)
{
}

void Xml3Verification::open(const Entry &entry)
{
    if (m_open == entry.vpCounter)
        return;
    close();
    m_writer.writeStartElement("verification");
    if (!entry.stack.empty())
        m_elements.writeLocation(entry.stack.front());
    m_elements.writeStacktrace(entry);
    m_open = entry.vpCounter;
}

void Xml3Verification::close()
{
    if (m_open == noVerification)
        return;
    m_writer.writeEndElement();
    m_open = noVerification;
}

void Xml3Verification::writeResult(const Entry &entry)
{
    open(entry);
    switch (entry.vpType) {
    case TestResult::NO_VP:
        writeScriptedResult(entry);
        break;
    case TestResult::PROPERTY_VP:
        writePropertyResult(entry);
        break;
    case TestResult::TABLE_VP:
        writeTableResult(entry);
        break;
    case TestResult::SCREENSHOT_VP:
        writeImageResult(entry, "screenshotVerificationResult", "failedImage");
        break;
    case TestResult::VISUAL_VP:
        if (m_elements.version >= firstVersionWithVisual)
            writeImageResult(entry, "visualVerificationResult", "failedObjectDump");
        else
            writeScriptedResult(entry);
        break;
    }
}

void Xml3Verification::startResult(const Entry &entry, const char *element)
{
    m_writer.writeStartElement(element);
    m_writer.writeAttribute("type", Xml3Elements::typeName(entry));
    m_writer.writeAttribute("time", m_elements.formatDateTime(entry.time));
}

void Xml3Verification::writeScriptedResult(const Entry &entry)
{
    startResult(entry, "scriptedVerificationResult");
    m_writer.writeStartElement("scriptedLocation");
    Xml3ReportWriter::writeFileLocationContent(
        m_writer, m_elements.locations.scriptFile(entry.line.fileName()), entry.line.lineNumber());
    m_writer.writeEndElement();
    m_elements.writeCommon(entry, entry.details);
    m_writer.writeEndElement();
}

void Xml3Verification::writePropertyResult(const Entry &entry)
{
    startResult(entry, "propertyVerificationResult");
    m_writer.writeStartElement("objectPropertyLocation");
    m_writer.writeCDataElement("uri", m_elements.locations.verificationPoint(entry));
    m_writer.writeCDataElementQString("objectName", vpObjectFromMsg(entry.message, true));
    m_writer.writeCDataElementQString("property", vpPropertyFromMsg(entry.message));
    m_writer.writeEndElement();
    m_elements.writeCommon(entry, entry.details);
    QString expected;
    QString actual;
    expectedAndActualValueFromMsg(entry.details, &expected, &actual);
    m_writer.writeCDataElementQString("expectedValue", expected);
    m_writer.writeCDataElementQString("actualValue", actual);
    m_writer.writeEndElement();
}

void Xml3Verification::writeTableResult(const Entry &entry)
{
    startResult(entry, "tableVerificationResult");
    writeObjectLocation(entry);
    m_elements.writeCommon(entry, entry.details);
    Xml3ReportWriter::writeTableDiff(m_writer, entry.tableDiff);
    m_writer.writeEndElement();
}

void Xml3Verification::writeImageResult(const Entry &entry, const char *element,
                                        const char *imageElement)
{
    startResult(entry, element);
    writeObjectLocation(entry);
    m_elements.writeCommon(entry, withShortImagePath(entry.details));
    if (hasFailedImage(entry.type))
        m_elements.writeUri(imageElement,
                            m_elements.locations.failedImage(vpFailedImgFromMsg(entry.details)));
    m_writer.writeEndElement();
}

void Xml3Verification::writeObjectLocation(const Entry &entry)
{
    m_writer.writeStartElement("objectLocation");
    m_writer.writeCDataElement("uri", m_elements.locations.verificationPoint(entry));
    m_writer.writeCDataElementQString("objectName", vpObjectFromMsg(entry.message, false));
    m_writer.writeEndElement();
}

} // namespace Morvex
