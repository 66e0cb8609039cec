#include "test/xml3reportgenerator.h"

#include "shared/system/trace.h"
#include "test/report/openreport.h"
#include "test/report/resultkinds.h"
#include "test/report/retrylimit.h"
#include "test/report/sectionkind.h"
#include "test/report/xml3elements.h"
#include "test/report/xml3reportwriter.h"
#include "test/report/xml3verification.h"
#include "test/reportgeneratorshared.h"

#include <cerrno>
#include <cstring>
#include <pwd.h>
#include <unistd.h>

namespace Morvex {
namespace {

using Entry = TestResult::Entry;

const char xmlNamespace[] = "http://www.morvex.org/resources/schemas/xml3";

const int firstVersionWithUser = 4;

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

} // namespace

struct Xml3ReportGenerator::Private : Xml3Elements
{
    Private(std::unique_ptr<std::ostream> output, TestType testType, int formatVersion,
            const QString &resultDir)
        : Xml3Elements(std::move(output), formatVersion, testType, resultDir)
        , verification(*this)
        , type(testType)
    {
    }

    Xml3Verification verification;
    TestType type;
    RetryLimit retryLimit;

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
};

Xml3ReportGenerator::Xml3ReportGenerator(std::unique_ptr<Private> data)
    : d(std::move(data))
{
}

Xml3ReportGenerator::~Xml3ReportGenerator() = default;

TestReportGenerator::Result Xml3ReportGenerator::create(const QString &path, TestType type,
                                                        int version, QString *resultDir)
{
    // The writer flushes each line.
    StreamResult opened =
        openInDirectory(QLatin1String("xml3"), path, QStringLiteral("results.xml"),
                        ReportStream::Buffered, resultDir);
    if (!opened.error.isEmpty())
        return {nullptr, opened.error};
    return {new Xml3ReportGenerator(
                std::make_unique<Private>(std::move(opened.stream), type, version, *resultDir)),
            QString()};
}

void Xml3ReportGenerator::generateSummary() {}

void Xml3ReportGenerator::doHandleEntry(const Entry &entry)
{
    if (!isVerification(entry.type))
        d->verification.close();
    d->locations.update(entry);
    d->retryLimit.beforeEntry(entry);
    d->writeEntry(entry);
    d->retryLimit.afterEntry(entry);
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
        verification.writeResult(entry);
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
    if (version >= firstXml3VersionWithMsAndVideo) {
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

} // namespace Morvex
