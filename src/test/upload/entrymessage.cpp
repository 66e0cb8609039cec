#include "test/upload/entrymessage.h"

#include "test/report/resultkinds.h"
#include "test/report/resultlabels.h"
#include "test/report/xml3reportwriter.h"
#include "test/reportgeneratorshared.h"
#include "test/upload/messagebuf.h"
#include "test/upload/uploadlines.h"
#include "test/upload/videofilename.h"
#include "test/xmlstreamwriter.h"

#include <atomic>
#include <sstream>

namespace Morvex {
namespace {

using Entry = TestResult::Entry;

const int typeWidth = 10;
const int messageWidth = 30;

// A shorter stack is the place of the entry itself.
const std::size_t minFrames = 2;

bool isMessage(TestResult::ResultType type)
{
    return type == TestResult::LOG || type == TestResult::FATAL || type == TestResult::ERROR ||
           type == TestResult::WARNING;
}

bool isVideo(TestResult::ResultType type)
{
    return type == TestResult::STARTVIDEOCAPTURE || type == TestResult::ENDVIDEOCAPTURE;
}

QString scriptFile(const Entry &entry)
{
    if (isMessage(entry.type))
        return {};
    if (isVerification(entry.type) || isVideo(entry.type) || entry.type == TestResult::ATTACHMENT)
        return entry.stack.empty() ? QString() : entry.stack.front().fileName();
    return entry.line.fileName();
}

const char *kindOf(TestResult::VPType type)
{
    switch (type) {
    case TestResult::NO_VP:
        return "scriptedVerificationResult";
    case TestResult::PROPERTY_VP:
        return "propertyVerificationResult";
    case TestResult::TABLE_VP:
        return "tableVerificationResult";
    case TestResult::SCREENSHOT_VP:
        return "screenshotVerificationResult";
    case TestResult::VISUAL_VP:
        return "visualVerificationResult";
    }
    return "";
}

std::string uriOf(const QString &file, const UploadPlaces &places)
{
    return scriptFileURI(file, places.suitePath, places.casePath);
}

std::string imageName(const QString &file, const UploadPlaces &places)
{
    if (file.isEmpty())
        return {};
    return failedImageURI(file, places.suitePath, places.casePath, places.tempDir);
}

std::string tableDiffText(const FList<TableDiff::Element> &diff)
{
    if (diff.isEmpty())
        return {};
    std::ostringstream stream;
    stream.imbue(std::locale::classic());
    {
        XmlStreamWriter writer(stream);
        writer.setAutoFormatting(true);
        Xml3ReportWriter::writeTableDiff(writer, diff);
    }
    return stream.str();
}

std::string nextTableDiffName()
{
    static std::atomic<int> counter{0};
    return "tablediff" + std::to_string(++counter) + "/tablediff.xml";
}

void describeVerification(const Entry &entry, const UploadPlaces &places, EntryMessage &message)
{
    message.kind = kindOf(entry.vpType);
    if (entry.vpType == TestResult::NO_VP) {
        message.location = uriOf(entry.line.fileName(), places);
        message.locationLine = entry.line.lineNumber();
    } else if (!message.kind.empty()) {
        message.location = vpURI(entry, places.suitePath, places.casePath);
    }
    if (entry.vpType == TestResult::TABLE_VP) {
        message.tableDiff = tableDiffText(entry.tableDiff);
        if (!message.tableDiff.empty())
            message.resource = nextTableDiffName();
    } else if (entry.vpType == TestResult::SCREENSHOT_VP || entry.vpType == TestResult::VISUAL_VP) {
        message.resourceFile = vpFailedImgFromMsg(entry.details);
        message.resource = imageName(message.resourceFile, places);
    }
}

void describeAttachment(const Entry &entry, const UploadPlaces &places, EntryMessage &message)
{
    message.kind = attachmentTypeToString(entry.attachmentType).toStdString();
    message.resourceFile = entry.attachmentUri;
    message.resource =
        attachmentURI(entry.attachmentUri, places.suitePath, places.casePath, places.tempDir);
}

QByteArray inBrackets(const QString &text)
{
    return text.isEmpty() ? QByteArray() : " (" + text.toUtf8() + ')';
}

void writeText(std::ostream &stream, const QByteArray &text)
{
    stream << '|' << WriteString(text);
}

void writeText(std::ostream &stream, const std::string &text)
{
    writeText(stream, QByteArray::fromStdString(text));
}

} // namespace

EntryMessage::EntryMessage(const Entry &entry, const UploadPlaces &places)
    : script(uriOf(scriptFile(entry), places))
{
    if ((isMessage(entry.type) || isVerification(entry.type)) && entry.stack.size() >= minFrames) {
        for (const LineInfo &frame : entry.stack)
            stack.push_back(uriOf(frame.fileName(), places));
    }
    if (isVideo(entry.type))
        resource = makeFileName(entry.attachmentUri, false).toStdString();
    else if (entry.type == TestResult::ATTACHMENT)
        describeAttachment(entry, places, *this);
    else
        describeVerification(entry, places, *this);
    screenshotFile = extractScreenshotFromMsgAndDetail(entry.message, entry.details);
    screenshot = imageName(screenshotFile, places);
}

void writeEntryFields(std::ostream &stream, const Entry &entry, const EntryMessage &message)
{
    const QLatin1String type = resultName(entry.type);
    stream << '|' << (entry.time.isValid() ? entry.time.toMSecsSinceEpoch() : 0);
    writeText(stream, QByteArray(type.data(), type.size()));
    writeText(stream, entry.name.toUtf8());
    writeText(stream, message.script);
    stream << '|' << entry.line.lineNumber();
    writeText(stream, entry.summary.toUtf8());
    writeText(stream, entry.message.toUtf8());
    writeText(stream, entry.details.toUtf8());
    writeText(stream, entry.info.toUtf8());
    stream << '|' << message.stack.size();
    for (std::size_t i = 0; i < message.stack.size(); ++i) {
        writeText(stream, message.stack[i]);
        stream << '|' << entry.stack[i].lineNumber();
    }
    writeText(stream, message.kind);
    writeText(stream, message.location);
    stream << '|' << message.locationLine;
    writeText(stream, message.resource);
    writeText(stream, message.screenshot);
    stream << '|' << entry.retry;
}

void traceEntry(const Entry &entry, const EntryMessage &message)
{
    const QLatin1String type = resultName(entry.type);
    QByteArray lines = entry.time.toString(Qt::ISODate).toUtf8() + '\t' +
                       QByteArray(type.data(), type.size()).leftJustified(typeWidth) + '\t' +
                       entry.message.toUtf8().leftJustified(messageWidth) + '\t' +
                       entry.details.toUtf8() + inBrackets(entry.info) + inBrackets(entry.vpName) +
                       '\n';
    for (std::size_t i = 0; i < message.stack.size(); ++i)
        lines += "trace " + QByteArray::number(static_cast<qulonglong>(i)) + ": " +
                 QByteArray::fromStdString(message.stack[i]) + ':' +
                 QByteArray::number(entry.stack[i].lineNumber()) + '\n';
    writeErrorLine(lines);
}

} // namespace Morvex
