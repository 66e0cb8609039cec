#include "test/jsonreportgenerator.h"

#include "test/report/iso8601time.h"
#include "test/report/jsonreportwriter.h"
#include "test/report/jsontablediff.h"
#include "test/report/openreport.h"
#include "test/report/reportlocations.h"
#include "test/report/resultlabels.h"
#include "test/report/retrylimit.h"
#include "test/report/sectionkind.h"
#include "test/reportgeneratorshared.h"

#include <string_view>

namespace Morvex {
namespace {

using Entry = TestResult::Entry;

QString textOf(const Entry &entry)
{
    if (entry.details.isEmpty() || entry.info.isEmpty())
        return entry.message;
    return entry.message + QLatin1String(": ") + entry.details;
}

} // namespace

struct JsonReportGenerator::Private
{
    Private(std::unique_ptr<std::ostream> output, const QString &resultDir, TestType testType,
            unsigned short formatVersion)
        : stream(std::move(output))
        , locations(testType, resultDir)
        , type(testType)
        , writer(*stream)
        , version(formatVersion)
    {
    }

    std::unique_ptr<std::ostream> stream;
    ReportLocations locations;
    TestType type;
    JsonReportWriter writer;
    unsigned short version;
    RetryLimit retryLimit;
    Iso8601Time time;
    QByteArray timeText;
    int openTestCases = 0;

    void writeEntry(const Entry &entry);
    std::string_view timeOf(const Entry &entry);

    void writeVersion();
    void writeStart(const Entry &entry);
    void writeTestCase(const Entry &entry);
    void writeSection(const Entry &entry);
    void writeSkippedSection(const Entry &entry);
    void setSectionObject(const Entry &entry, const QString &testType, const QString &name,
                          const QString &summary, const QString &description);
    void writeSectionStart(int retry);
    void writeRetry(int retry);
    void writeSectionEnd(const Entry &entry);

    void setCommonObject(const Entry &entry);
    void writeMessage(const Entry &entry);
    void writeVerification(const Entry &entry);
    void addVerificationPoint(const Entry &entry, QLatin1String resultType, bool stripProperty);
    void addProperty(const Entry &entry);
    void addFailedImage(const Entry &entry, QLatin1String key);
    void writeAttachment(const Entry &entry);
};

JsonReportGenerator::JsonReportGenerator(std::unique_ptr<std::ostream> stream,
                                         const QString &resultDir, TestType type,
                                         unsigned short version)
    : d(std::make_unique<Private>(std::move(stream), resultDir, type, version))
{
}

JsonReportGenerator::~JsonReportGenerator()
{
    d->writer.closeOpenedValues();
}

TestReportGenerator::Result JsonReportGenerator::create(const QString &path, TestType type,
                                                        unsigned short version, QString *resultDir)
{
    StreamResult opened =
        openInDirectory(QLatin1String("json"), path, QStringLiteral("results.json"),
                        ReportStream::Buffered, resultDir);
    if (!opened.error.isEmpty())
        return {nullptr, opened.error};
    return {new JsonReportGenerator(std::move(opened.stream), *resultDir, type, version),
            QString()};
}

void JsonReportGenerator::generateSummary()
{
    d->writer.closeOpenedValues();
}

void JsonReportGenerator::init()
{
    d->writer.writeStartObject();
    d->writeVersion();
    d->writer.writeSeparator();
    d->writer.writeStartArray("tests");
}

void JsonReportGenerator::doHandleEntry(const Entry &entry)
{
    d->locations.update(entry);
    if (entry.type == TestResult::START)
        init();
    d->retryLimit.beforeEntry(entry);
    d->writeEntry(entry);
    d->retryLimit.afterEntry(entry);
    d->writer.flush();
}

std::ostream &JsonReportGenerator::stream()
{
    return *d->stream;
}

void JsonReportGenerator::Private::writeEntry(const Entry &entry)
{
    switch (entry.type) {
    case TestResult::START:
        writeStart(entry);
        break;
    case TestResult::END_TEST_CASE:
        // One that came from a child without its start would close the run.
        if (openTestCases == 0)
            break;
        --openTestCases;
        Q_FALLTHROUGH();
    case TestResult::END:
    case TestResult::END_SECTION:
        writeSectionEnd(entry);
        break;
    case TestResult::START_TEST_CASE:
        ++openTestCases;
        writeTestCase(entry);
        break;
    case TestResult::START_SECTION:
        writeSection(entry);
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
    case TestResult::STARTVIDEOCAPTURE:
    case TestResult::ENDVIDEOCAPTURE:
        writeAttachment(entry);
        break;
    case TestResult::NONE:
        break;
    }
}

// Valid until the next call.
std::string_view JsonReportGenerator::Private::timeOf(const Entry &entry)
{
    timeText = time.text(entry.time);
    return {timeText.constData(), static_cast<std::size_t>(timeText.size())};
}

void JsonReportGenerator::Private::writeVersion()
{
    writer.object.clear();
    writer.object.addInteger(QLatin1String("major"), version >> 8);
    writer.object.addInteger(QLatin1String("minor"), version & 0xff);
    writer.writeStartObject("version");
    writer.writeData(true);
    writer.writeEndObject();
}

void JsonReportGenerator::Private::writeStart(const Entry &entry)
{
    setSectionObject(entry, type == TEST_SUITE ? SectionKind::testSuite : SectionKind::testCase,
                     entry.name, entry.summary, entry.description);
    writeSectionStart(-1);
}

void JsonReportGenerator::Private::writeTestCase(const Entry &entry)
{
    setSectionObject(entry, SectionKind::testCase, entry.info, entry.summary, entry.description);
    writeSectionStart(entry.retry);
}

void JsonReportGenerator::Private::writeSection(const Entry &entry)
{
    setSectionObject(entry, entry.info, entry.message, QString(), entry.details);
    writeSectionStart(entry.retry);
}

void JsonReportGenerator::Private::writeSkippedSection(const Entry &entry)
{
    setSectionObject(entry, entry.info, entry.message, QString(), entry.details);
    writer.object.addValue(QLatin1String("isSkipped"), "true");
    writer.object.addIfNotEmpty(QLatin1String("stop"), timeOf(entry));
    writer.handleChildrenSeparator();
    writer.writeData(false);
}

void JsonReportGenerator::Private::setSectionObject(const Entry &entry, const QString &testType,
                                                    const QString &name, const QString &summary,
                                                    const QString &description)
{
    writer.object.clear();
    writer.object.addIfNotEmpty(QLatin1String("start"), timeOf(entry));
    writer.object.addIfNotEmpty(QLatin1String("summary"), summary);
    writer.object.addIfNotEmpty(QLatin1String("description"), description);
    writer.object.addIfNotEmpty(QLatin1String("type"), testType);
    writer.object.addIfNotEmpty(QLatin1String("uri"), locations.scriptFile(entry.line.fileName()));
    writer.object.addIfNotEmpty(QLatin1String("name"), name);
    writer.object.addLineNumber(entry.line.lineNumber());
}

void JsonReportGenerator::Private::writeSectionStart(int retry)
{
    writer.handleChildrenSeparator();
    writer.writeStartObject();
    writer.writeData(true);
    // One that came damaged from a child may have nothing.
    if (!writer.object.isEmpty())
        writer.writeSeparator();
    if (retryLimit.value() >= 1 && retry >= 0 && version > Version1_1)
        writeRetry(retry);
    writer.writeStartArray("tests");
}

void JsonReportGenerator::Private::writeRetry(int retry)
{
    writer.object.clear();
    writer.object.addInteger(QLatin1String("count"), retryLimit.value() - retry);
    writer.object.addInteger(QLatin1String("max"), retryLimit.value());
    writer.writeStartObject("retry");
    writer.writeData(true);
    writer.writeEndObject();
    writer.writeSeparator();
}

void JsonReportGenerator::Private::writeSectionEnd(const Entry &entry)
{
    writer.writeEndArray();
    writer.writeSeparator();
    writer.object.clear();
    writer.object.add(QLatin1String("stop"), timeOf(entry));
    writer.writeData(true);
    writer.writeEndObject();
}

void JsonReportGenerator::Private::setCommonObject(const Entry &entry)
{
    writer.object.clear();
    writer.object.addIfNotEmpty(QLatin1String("detail"),
                                entry.info.isEmpty() ? entry.details : entry.info);
    if (entry.line.isValid())
        writer.object.addLineNumber(entry.line.lineNumber());
    writer.object.add(QLatin1String("result"), resultName(entry.type));
    const QString screenshot = extractScreenshotFromMsgAndDetail(entry.message, entry.details);
    if (!screenshot.isEmpty())
        writer.object.addIfNotEmpty(QLatin1String("screenshotUri"),
                                    locations.failedImage(screenshot));
    writer.object.addIfNotEmpty(QLatin1String("text"), textOf(entry));
    writer.object.addIfNotEmpty(QLatin1String("time"), timeOf(entry));
    if (entry.line.isValid())
        writer.object.addIfNotEmpty(QLatin1String("uri"),
                                    locations.scriptFile(entry.line.fileName()));
}

void JsonReportGenerator::Private::writeMessage(const Entry &entry)
{
    writer.handleChildrenSeparator();
    setCommonObject(entry);
    writer.object.add(QLatin1String("type"), QLatin1String("msg"));
    writer.writeData(false);
}

void JsonReportGenerator::Private::writeVerification(const Entry &entry)
{
    writer.handleChildrenSeparator();
    setCommonObject(entry);
    switch (entry.vpType) {
    case TestResult::NO_VP:
        writer.object.add(QLatin1String("type"), QLatin1String("scriptedVerificationResult"));
        break;
    case TestResult::PROPERTY_VP:
        addVerificationPoint(entry, QLatin1String("propertyVerificationResult"), true);
        addProperty(entry);
        break;
    case TestResult::TABLE_VP:
        addVerificationPoint(entry, QLatin1String("tableVerificationResult"), false);
        writer.object.addValue(QLatin1String("tablediff"), jsonOf(entry.tableDiff));
        break;
    case TestResult::SCREENSHOT_VP:
        addVerificationPoint(entry, QLatin1String("screenshotVerificationResult"), false);
        addFailedImage(entry, QLatin1String("failedImageUri"));
        break;
    case TestResult::VISUAL_VP:
        addVerificationPoint(entry, QLatin1String("visualVerificationResult"), false);
        addFailedImage(entry, QLatin1String("failedObjectDump"));
        break;
    }
    writer.writeData(false);
}

void JsonReportGenerator::Private::addVerificationPoint(const Entry &entry,
                                                        QLatin1String resultType,
                                                        bool stripProperty)
{
    writer.object.add(QLatin1String("type"), resultType);
    writer.object.addIfNotEmpty(QLatin1String("vpUri"), locations.verificationPoint(entry));
    writer.object.addIfNotEmpty(QLatin1String("objectName"),
                                vpObjectFromMsg(entry.message, stripProperty));
}

void JsonReportGenerator::Private::addProperty(const Entry &entry)
{
    QString expected;
    QString actual;
    expectedAndActualValueFromMsg(entry.details, &expected, &actual);
    writer.object.addIfNotEmpty(QLatin1String("actualValue"), actual);
    writer.object.addIfNotEmpty(QLatin1String("expectedValue"), expected);
    writer.object.addIfNotEmpty(QLatin1String("property"), vpPropertyFromMsg(entry.message));
}

void JsonReportGenerator::Private::addFailedImage(const Entry &entry, QLatin1String key)
{
    writer.object.addIfNotEmpty(key, locations.failedImage(vpFailedImgFromMsg(entry.details)));
}

void JsonReportGenerator::Private::writeAttachment(const Entry &entry)
{
    writer.handleChildrenSeparator();
    writer.object.clear();
    writer.object.addIfNotEmpty(QLatin1String("time"), timeOf(entry));
    writer.object.addIfNotEmpty(QLatin1String("type"),
                                attachmentTypeToString(entry.attachmentType));
    writer.object.addIfNotEmpty(QLatin1String("uri"), locations.attachment(entry.attachmentUri));
    writer.writeData(false);
}

} // namespace Morvex
