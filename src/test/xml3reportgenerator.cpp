#include "test/xml3reportgenerator.h"

#include "shared/system/trace.h"
#include "test/report/iso8601time.h"
#include "test/report/openreport.h"
#include "test/report/reportlocations.h"
#include "test/report/resultlabels.h"
#include "test/report/retrylimit.h"
#include "test/report/sectionkind.h"
#include "test/report/xml3reportwriter.h"
#include "test/reportgeneratorshared.h"
#include "test/xmlstreamwriter.h"

#include <QDir>

#include <cerrno>
#include <cstring>
#include <pwd.h>
#include <unistd.h>

namespace Morvex {
namespace {

using Entry = TestResult::Entry;

const char xmlNamespace[] = "http://www.morvex.org/resources/schemas/xml3";

// What came with a version, beside what Xml3ReportWriter knows.
const int firstVersionWithVisual = 1;
const int firstVersionWithStacktrace = 3;
const int firstVersionWithUser = 4;
const int firstVersionWithMsAndVideo = 5;

const int noVerification = -1;

bool isVerificationResult(TestResult::ResultType type)
{
    return type == TestResult::PASS || type == TestResult::FAIL || type == TestResult::XFAIL ||
           type == TestResult::XPASS;
}

// An image of the actual look is kept unless it was the expected one.
bool hasFailedImage(TestResult::ResultType type)
{
    return type != TestResult::PASS && type != TestResult::XPASS;
}

std::string typeName(const Entry &entry)
{
    const QLatin1String name = resultName(entry.type);
    return {name.data(), static_cast<std::size_t>(name.size())};
}

QString userName()
{
    errno = 0;
    const passwd *user = ::getpwuid(::geteuid());
    if (!user) {
        qCDebug(traceXml3Report) << "Failed to obtain username: " << std::strerror(errno);
        return {};
    }
    const QString fullName = QString::fromLocal8Bit(user->pw_gecos).section(QLatin1Char(','), 0, 0);
    return fullName.isEmpty() ? QString::fromLocal8Bit(user->pw_name) : fullName;
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

struct Xml3ReportGenerator::Private
{
    Private(std::unique_ptr<std::ostream> output, TestType testType, int formatVersion,
            const QString &resultDir)
        : stream(std::move(output))
        , writer(*stream)
        , version(formatVersion)
        , locations(testType, resultDir)
        , type(testType)
    {
        writer.setAutoFormatting(true);
    }

    std::unique_ptr<std::ostream> stream;
    XmlStreamWriterQString writer;
    int openVerification = noVerification;
    int version;
    ReportLocations locations;
    TestType type;
    RetryLimit retryLimit;
    Iso8601Time time;

    std::string formatDateTime(const QDateTime &dateTime);

    void writeEntry(const Entry &entry);
    void writeStart(const Entry &entry);
    void writeEnd(const Entry &entry);
    void writeSection(const Entry &entry, const QString &testType, const QString &name,
                      const QString &summary, const QString &description, int retry);
    void writeSectionEnd(const Entry &entry);
    void writeSkippedSection(const Entry &entry);
    void writeMessage(const Entry &entry);
    void writeVideo(const Entry &entry, const char *element);
    void writeAttachment(const Entry &entry);
    void writeAttachmentContent(const Entry &entry);

    void writeLocation(const LineInfo &line);
    void writeStacktrace(const Entry &entry);
    void openVerificationOf(const Entry &entry);
    void closeVerification();

    void writeVerification(const Entry &entry);
    void startResult(const Entry &entry, const char *element);
    void writeScriptedResult(const Entry &entry);
    void writePropertyResult(const Entry &entry);
    void writeTableResult(const Entry &entry);
    void writeImageResult(const Entry &entry, const char *element, const char *imageElement);
    void writeObjectLocation(const Entry &entry);
    void writeCommon(const Entry &entry, const QString &details);
    void writeUri(const char *element, const std::string &uri);
};

Xml3ReportGenerator::Xml3ReportGenerator(std::unique_ptr<Private> data)
    : d(std::move(data))
{
}

Xml3ReportGenerator::~Xml3ReportGenerator() = default;

TestReportGenerator::Result Xml3ReportGenerator::create(const QString &path, TestType type,
                                                        int version, QString *resultDir)
{
    // The writer hands over whole lines.
    StreamResult opened =
        openInDirectory(QLatin1String("xml3"), path, QStringLiteral("results.xml"),
                        ReportStream::Unbuffered, resultDir);
    if (!opened.error.isEmpty())
        return {nullptr, opened.error};
    return {new Xml3ReportGenerator(
                std::make_unique<Private>(std::move(opened.stream), type, version, *resultDir)),
            QString()};
}

void Xml3ReportGenerator::generateSummary() {}

void Xml3ReportGenerator::doHandleEntry(const Entry &entry)
{
    if (!isVerificationResult(entry.type))
        d->closeVerification();
    d->locations.update(entry);
    d->retryLimit.beforeEntry(entry);
    d->writeEntry(entry);
    d->retryLimit.afterEntry(entry);
}

std::string Xml3ReportGenerator::Private::formatDateTime(const QDateTime &dateTime)
{
    const QByteArray text =
        version >= firstVersionWithMsAndVideo ? time.textWithMs(dateTime) : time.text(dateTime);
    return text.toStdString();
}

void Xml3ReportGenerator::Private::writeEntry(const Entry &entry)
{
    switch (entry.type) {
    case TestResult::START:
        writeStart(entry);
        break;
    case TestResult::END:
        writeEnd(entry);
        break;
    case TestResult::START_TEST_CASE:
        writeSection(entry, SectionKind::testCase, entry.info, entry.summary, entry.description,
                     entry.retry);
        break;
    case TestResult::START_SECTION:
        writeSection(entry, entry.info, entry.message, QString(), entry.details, entry.retry);
        break;
    case TestResult::END_TEST_CASE:
    case TestResult::END_SECTION:
        writeSectionEnd(entry);
        break;
    case TestResult::SKIP_SECTION:
        writeSkippedSection(entry);
        break;
    case TestResult::LOG:
    case TestResult::FATAL:
    case TestResult::ERROR:
    case TestResult::WARNING:
        writeMessage(entry);
        break;
    case TestResult::PASS:
    case TestResult::FAIL:
    case TestResult::XFAIL:
    case TestResult::XPASS:
        writeVerification(entry);
        break;
    case TestResult::ATTACHMENT:
        writeAttachment(entry);
        break;
    case TestResult::STARTVIDEOCAPTURE:
        writeVideo(entry, "videoCaptureStart");
        break;
    case TestResult::ENDVIDEOCAPTURE:
        writeVideo(entry, "videoCaptureEnd");
        break;
    case TestResult::NONE:
        break;
    }
}

void Xml3ReportGenerator::Private::writeStart(const Entry &entry)
{
    writer.writeStartDocument();
    writer.writeStartElement("MorvexReport");
    writer.writeAttribute("version", "3." + std::to_string(version));
    writer.writeAttribute("xmlns", xmlNamespace);
    if (version >= firstVersionWithUser) {
        const QString user = userName();
        if (!user.isEmpty())
            writer.writeAttributeQString("executedBy", user);
    }
    writeSection(entry, type == TEST_SUITE ? SectionKind::testSuite : SectionKind::testCase,
                 entry.name, entry.summary, entry.description, -1);
}

void Xml3ReportGenerator::Private::writeEnd(const Entry &entry)
{
    writeSectionEnd(entry);
    writer.writeEndElement();
    writer.writeEndDocument();
}

void Xml3ReportGenerator::Private::writeSection(const Entry &entry, const QString &testType,
                                                const QString &name, const QString &summary,
                                                const QString &description, int retry)
{
    Xml3ReportWriter::writeSectionStart(writer, version, testType, name, formatDateTime(entry.time),
                                        summary, description,
                                        locations.scriptFile(entry.line.fileName()),
                                        entry.line.lineNumber(), retry, retryLimit.value());
}

void Xml3ReportGenerator::Private::writeSectionEnd(const Entry &entry)
{
    writer.writeStartElement("epilog");
    writer.writeAttribute("time", formatDateTime(entry.time));
    writer.writeEndElement();
    writer.writeEndElement();
}

void Xml3ReportGenerator::Private::writeSkippedSection(const Entry &entry)
{
    writer.writeStartElement("skippedTest");
    writer.writeAttributeQString("type", entry.info);
    writer.writeAttribute("time", formatDateTime(entry.time));
    Xml3ReportWriter::writeSectionTexts(writer, entry.message, QString(), entry.details);
    writeLocation(entry.line);
    writer.writeEndElement();
}

void Xml3ReportGenerator::Private::writeMessage(const Entry &entry)
{
    writer.writeStartElement("message");
    writer.writeAttribute("time", formatDateTime(entry.time));
    writer.writeAttribute("type", typeName(entry));
    if (entry.line.isValid())
        writeLocation(entry.line);
    writeStacktrace(entry);
    writeCommon(entry, entry.details);
    writer.writeEndElement();
}

// Older readers know no videos; the order of the attributes distinguishes these from other
// attachments.
void Xml3ReportGenerator::Private::writeVideo(const Entry &entry, const char *element)
{
    if (version >= firstVersionWithMsAndVideo) {
        writer.writeStartElement(element);
    } else {
        writer.writeStartElement("attachment");
        writer.writeAttribute("type", "file");
    }
    writer.writeAttribute("time", formatDateTime(entry.time));
    writeAttachmentContent(entry);
    writer.writeEndElement();
}

void Xml3ReportGenerator::Private::writeAttachment(const Entry &entry)
{
    writer.writeStartElement("attachment");
    writer.writeAttribute("time", formatDateTime(entry.time));
    writer.writeAttributeQString("type", attachmentTypeToString(entry.attachmentType));
    writeAttachmentContent(entry);
    writer.writeEndElement();
}

void Xml3ReportGenerator::Private::writeAttachmentContent(const Entry &entry)
{
    writer.writeCDataElement("uri", locations.attachment(entry.attachmentUri));
    writer.writeCDataElementQString("text", entry.message);
    if (entry.line.isValid())
        writeLocation(entry.line);
}

void Xml3ReportGenerator::Private::writeLocation(const LineInfo &line)
{
    Xml3ReportWriter::writeFileLocation(writer, locations.scriptFile(line.fileName()),
                                        line.lineNumber());
}

void Xml3ReportGenerator::Private::writeStacktrace(const Entry &entry)
{
    if (version < firstVersionWithStacktrace || entry.stack.size() < 2)
        return;
    writer.writeStartElement("stacktrace");
    for (const LineInfo &frame : entry.stack)
        writeLocation(frame);
    writer.writeEndElement();
}

void Xml3ReportGenerator::Private::openVerificationOf(const Entry &entry)
{
    if (openVerification == entry.vpCounter)
        return;
    closeVerification();
    writer.writeStartElement("verification");
    if (!entry.stack.empty())
        writeLocation(entry.stack.front());
    writeStacktrace(entry);
    openVerification = entry.vpCounter;
}

void Xml3ReportGenerator::Private::closeVerification()
{
    if (openVerification == noVerification)
        return;
    writer.writeEndElement();
    openVerification = noVerification;
}

void Xml3ReportGenerator::Private::writeVerification(const Entry &entry)
{
    openVerificationOf(entry);
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
        if (version >= firstVersionWithVisual)
            writeImageResult(entry, "visualVerificationResult", "failedObjectDump");
        else
            writeScriptedResult(entry);
        break;
    }
}

void Xml3ReportGenerator::Private::startResult(const Entry &entry, const char *element)
{
    writer.writeStartElement(element);
    writer.writeAttribute("type", typeName(entry));
    writer.writeAttribute("time", formatDateTime(entry.time));
}

void Xml3ReportGenerator::Private::writeScriptedResult(const Entry &entry)
{
    startResult(entry, "scriptedVerificationResult");
    writer.writeStartElement("scriptedLocation");
    Xml3ReportWriter::writeFileLocationContent(writer, locations.scriptFile(entry.line.fileName()),
                                               entry.line.lineNumber());
    writer.writeEndElement();
    writeCommon(entry, entry.details);
    writer.writeEndElement();
}

void Xml3ReportGenerator::Private::writePropertyResult(const Entry &entry)
{
    startResult(entry, "propertyVerificationResult");
    writer.writeStartElement("objectPropertyLocation");
    writer.writeCDataElement("uri", locations.verificationPoint(entry));
    writer.writeCDataElementQString("objectName", vpObjectFromMsg(entry.message, true));
    writer.writeCDataElementQString("property", vpPropertyFromMsg(entry.message));
    writer.writeEndElement();
    writeCommon(entry, entry.details);
    QString expected;
    QString actual;
    expectedAndActualValueFromMsg(entry.details, &expected, &actual);
    writer.writeCDataElementQString("expectedValue", expected);
    writer.writeCDataElementQString("actualValue", actual);
    writer.writeEndElement();
}

void Xml3ReportGenerator::Private::writeTableResult(const Entry &entry)
{
    startResult(entry, "tableVerificationResult");
    writeObjectLocation(entry);
    writeCommon(entry, entry.details);
    Xml3ReportWriter::writeTableDiff(writer, entry.tableDiff);
    writer.writeEndElement();
}

void Xml3ReportGenerator::Private::writeImageResult(const Entry &entry, const char *element,
                                                    const char *imageElement)
{
    startResult(entry, element);
    writeObjectLocation(entry);
    writeCommon(entry, withShortImagePath(entry.details));
    if (hasFailedImage(entry.type))
        writeUri(imageElement, locations.failedImage(vpFailedImgFromMsg(entry.details)));
    writer.writeEndElement();
}

void Xml3ReportGenerator::Private::writeObjectLocation(const Entry &entry)
{
    writer.writeStartElement("objectLocation");
    writer.writeCDataElement("uri", locations.verificationPoint(entry));
    writer.writeCDataElementQString("objectName", vpObjectFromMsg(entry.message, false));
    writer.writeEndElement();
}

void Xml3ReportGenerator::Private::writeCommon(const Entry &entry, const QString &details)
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

void Xml3ReportGenerator::Private::writeUri(const char *element, const std::string &uri)
{
    writer.writeStartElement(element);
    writer.writeCDataElement("uri", uri);
    writer.writeEndElement();
}

} // namespace Morvex
