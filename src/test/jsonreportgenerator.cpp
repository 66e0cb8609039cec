#include "test/jsonreportgenerator.h"

#include "test/output/jsonobject.h"
#include "test/report/iso8601time.h"
#include "test/report/openreport.h"
#include "test/report/reportlocations.h"
#include "test/report/resultlabels.h"
#include "test/report/retrylimit.h"
#include "test/reportgeneratorshared.h"

#include <string_view>

namespace Morvex {
namespace {

using Entry = TestResult::Entry;

QLatin1String elementType(TableDiff::Element::Kind kind)
{
    switch (kind) {
    case TableDiff::Element::CONTEXT:
        break;
    case TableDiff::Element::INSERTION:
        return QLatin1String("insertion");
    case TableDiff::Element::DELETION:
        return QLatin1String("deletion");
    }
    return QLatin1String("context");
}

QLatin1String diffType(TableDiff::Subject::Type type)
{
    switch (type) {
    case TableDiff::Subject::CELL:
        break;
    case TableDiff::Subject::ROW:
        return QLatin1String("row");
    case TableDiff::Subject::COLUMN:
        return QLatin1String("column");
    }
    return QLatin1String("cell");
}

std::string whole(JsonObject &object)
{
    std::string json;
    object.write(json, false);
    return json;
}

std::string propertiesOf(const TableDiff::Cell &cell)
{
    std::vector<std::string> properties;
    for (auto property = cell.properties.cbegin(); property != cell.properties.cend(); ++property) {
        JsonObject object;
        object.add(QLatin1String("name"), property.key());
        object.add(QLatin1String("value"), property.value().toString());
        properties.push_back(whole(object));
    }
    return jsonArray(properties);
}

std::string cellsOf(const TableDiff::Subject &subject)
{
    std::vector<std::string> cells;
    for (const TableDiff::Cell &cell : subject.cells) {
        JsonObject object;
        object.addValue(QLatin1String("properties"), propertiesOf(cell));
        cells.push_back(whole(object));
    }
    return jsonArray(cells);
}

// Without a cell, as a broken stream may bring it, the numbers are unknown.
std::string diffValue(const TableDiff::Subject &subject)
{
    JsonObject object;
    const TableDiff::Cell *first = subject.cells.isEmpty() ? nullptr : &subject.cells.first();
    switch (subject.type) {
    case TableDiff::Subject::CELL:
        if (first) {
            object.addInteger(QLatin1String("row"), first->row);
            object.addInteger(QLatin1String("column"), first->column);
        }
        break;
    case TableDiff::Subject::ROW:
        if (first)
            object.addInteger(QLatin1String("line"), first->row);
        object.addValue(QLatin1String("cells"), cellsOf(subject));
        break;
    case TableDiff::Subject::COLUMN:
        if (first)
            object.addInteger(QLatin1String("index"), first->column);
        object.addValue(QLatin1String("cells"), cellsOf(subject));
        break;
    }
    return whole(object);
}

std::string tableDiff(const FList<TableDiff::Element> &elements)
{
    std::vector<std::string> values;
    for (const TableDiff::Element &element : elements) {
        JsonObject object;
        object.add(QLatin1String("elementType"), elementType(element.kind));
        object.add(QLatin1String("diffType"), diffType(element.subject.type));
        object.addValue(QLatin1String("diffValue"), diffValue(element.subject));
        values.push_back(whole(object));
    }
    return jsonArray(values);
}

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
        , type(testType)
        , locations(testType, resultDir)
        , version(formatVersion)
    {
    }

    std::unique_ptr<std::ostream> stream;
    TestType type;
    ReportLocations locations;
    // Innermost last.
    std::vector<char> closers;
    // One for each open array.
    std::vector<bool> hasChildren;
    unsigned short version;
    RetryLimit retryLimit;
    Iso8601Time time;
    QByteArray timeText;
    // The text of one entry, which leaves in one piece. Both are kept for their memory.
    std::string text;
    JsonObject object;

    void writeEntry(const Entry &entry);
    void flushText();
    std::string_view timeOf(const Entry &entry);

    void writeStartObject();
    void writeStartObject(const char *name);
    void writeStartArray();
    void writeStartArray(const char *name);
    void writeName(const char *name);
    void writeEndObject() { writeCloser(); }
    void writeEndArray();
    void writeCloser();
    void writeSeparator() { text += ','; }
    void writeData(bool strip) { object.write(text, strip); }
    void closeOpenedValues();
    void handleChildrenSeparator();

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
    d->closeOpenedValues();
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
    d->closeOpenedValues();
}

void JsonReportGenerator::init()
{
    d->writeStartObject();
    d->writeVersion();
    d->writeSeparator();
    d->writeStartArray("tests");
}

void JsonReportGenerator::doHandleEntry(const Entry &entry)
{
    d->locations.update(entry);
    if (entry.type == TestResult::START)
        init();
    d->retryLimit.beforeEntry(entry);
    d->writeEntry(entry);
    d->retryLimit.afterEntry(entry);
    d->flushText();
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
    case TestResult::END:
    case TestResult::END_TEST_CASE:
    case TestResult::END_SECTION:
        writeSectionEnd(entry);
        break;
    case TestResult::START_TEST_CASE:
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

void JsonReportGenerator::Private::flushText()
{
    stream->write(text.data(), static_cast<std::streamsize>(text.size()));
    text.clear();
}

// Valid until the next call.
std::string_view JsonReportGenerator::Private::timeOf(const Entry &entry)
{
    timeText = time.text(entry.time);
    return {timeText.constData(), static_cast<std::size_t>(timeText.size())};
}

void JsonReportGenerator::Private::writeStartObject()
{
    text += '{';
    closers.push_back('}');
}

void JsonReportGenerator::Private::writeStartObject(const char *name)
{
    writeName(name);
    writeStartObject();
}

void JsonReportGenerator::Private::writeStartArray()
{
    text += '[';
    closers.push_back(']');
    hasChildren.push_back(false);
}

void JsonReportGenerator::Private::writeStartArray(const char *name)
{
    writeName(name);
    writeStartArray();
}

void JsonReportGenerator::Private::writeName(const char *name)
{
    text += '"';
    text += name;
    text += "\":";
}

void JsonReportGenerator::Private::writeEndArray()
{
    writeCloser();
    if (!hasChildren.empty())
        hasChildren.pop_back();
}

void JsonReportGenerator::Private::writeCloser()
{
    if (closers.empty())
        return;
    text += closers.back();
    closers.pop_back();
}

void JsonReportGenerator::Private::closeOpenedValues()
{
    text.append(closers.rbegin(), closers.rend());
    closers.clear();
    hasChildren.clear();
    flushText();
}

void JsonReportGenerator::Private::handleChildrenSeparator()
{
    if (hasChildren.empty())
        return;
    if (hasChildren.back())
        writeSeparator();
    hasChildren.back() = true;
}

void JsonReportGenerator::Private::writeVersion()
{
    object.clear();
    object.addInteger(QLatin1String("major"), version >> 8);
    object.addInteger(QLatin1String("minor"), version & 0xff);
    writeStartObject("version");
    writeData(true);
    writeEndObject();
}

void JsonReportGenerator::Private::writeStart(const Entry &entry)
{
    setSectionObject(entry,
                     type == TEST_SUITE ? QStringLiteral("testsuite") : QStringLiteral("testcase"),
                     entry.name, entry.summary, entry.description);
    writeSectionStart(-1);
}

void JsonReportGenerator::Private::writeTestCase(const Entry &entry)
{
    setSectionObject(entry, QStringLiteral("testcase"), entry.info, entry.summary,
                     entry.description);
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
    object.addValue(QLatin1String("isSkipped"), "true");
    object.addIfNotEmpty(QLatin1String("stop"), timeOf(entry));
    handleChildrenSeparator();
    writeData(false);
}

void JsonReportGenerator::Private::setSectionObject(const Entry &entry, const QString &testType,
                                                    const QString &name, const QString &summary,
                                                    const QString &description)
{
    object.clear();
    object.addIfNotEmpty(QLatin1String("start"), timeOf(entry));
    object.addIfNotEmpty(QLatin1String("summary"), summary);
    object.addIfNotEmpty(QLatin1String("description"), description);
    object.addIfNotEmpty(QLatin1String("type"), testType);
    object.addIfNotEmpty(QLatin1String("uri"), locations.scriptFile(entry.line.fileName()));
    object.addIfNotEmpty(QLatin1String("name"), name);
    object.addLineNumber(entry.line.lineNumber());
}

void JsonReportGenerator::Private::writeSectionStart(int retry)
{
    handleChildrenSeparator();
    writeStartObject();
    writeData(true);
    writeSeparator();
    if (retryLimit.value() >= 1 && retry >= 0 && version > Version1_1)
        writeRetry(retry);
    writeStartArray("tests");
}

void JsonReportGenerator::Private::writeRetry(int retry)
{
    object.clear();
    object.addInteger(QLatin1String("count"), retryLimit.value() - retry);
    object.addInteger(QLatin1String("max"), retryLimit.value());
    writeStartObject("retry");
    writeData(true);
    writeEndObject();
    writeSeparator();
}

void JsonReportGenerator::Private::writeSectionEnd(const Entry &entry)
{
    writeEndArray();
    writeSeparator();
    object.clear();
    object.add(QLatin1String("stop"), timeOf(entry));
    writeData(true);
    writeEndObject();
}

void JsonReportGenerator::Private::setCommonObject(const Entry &entry)
{
    object.clear();
    object.addIfNotEmpty(QLatin1String("detail"),
                         entry.info.isEmpty() ? entry.details : entry.info);
    if (entry.line.isValid())
        object.addLineNumber(entry.line.lineNumber());
    object.add(QLatin1String("result"), resultName(entry.type));
    const QString screenshot = extractScreenshotFromMsgAndDetail(entry.message, entry.details);
    if (!screenshot.isEmpty())
        object.addIfNotEmpty(QLatin1String("screenshotUri"), locations.failedImage(screenshot));
    object.addIfNotEmpty(QLatin1String("text"), textOf(entry));
    object.addIfNotEmpty(QLatin1String("time"), timeOf(entry));
    if (entry.line.isValid())
        object.addIfNotEmpty(QLatin1String("uri"), locations.scriptFile(entry.line.fileName()));
}

void JsonReportGenerator::Private::writeMessage(const Entry &entry)
{
    handleChildrenSeparator();
    setCommonObject(entry);
    object.add(QLatin1String("type"), QLatin1String("msg"));
    writeData(false);
}

void JsonReportGenerator::Private::writeVerification(const Entry &entry)
{
    handleChildrenSeparator();
    setCommonObject(entry);
    switch (entry.vpType) {
    case TestResult::NO_VP:
        object.add(QLatin1String("type"), QLatin1String("scriptedVerificationResult"));
        break;
    case TestResult::PROPERTY_VP:
        addVerificationPoint(entry, QLatin1String("propertyVerificationResult"), true);
        addProperty(entry);
        break;
    case TestResult::TABLE_VP:
        addVerificationPoint(entry, QLatin1String("tableVerificationResult"), false);
        object.addValue(QLatin1String("tablediff"), tableDiff(entry.tableDiff));
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
    writeData(false);
}

void JsonReportGenerator::Private::addVerificationPoint(const Entry &entry,
                                                        QLatin1String resultType,
                                                        bool stripProperty)
{
    object.add(QLatin1String("type"), resultType);
    object.addIfNotEmpty(QLatin1String("vpUri"), locations.verificationPoint(entry));
    object.addIfNotEmpty(QLatin1String("objectName"),
                         vpObjectFromMsg(entry.message, stripProperty));
}

void JsonReportGenerator::Private::addProperty(const Entry &entry)
{
    QString expected;
    QString actual;
    expectedAndActualValueFromMsg(entry.details, &expected, &actual);
    object.addIfNotEmpty(QLatin1String("actualValue"), actual);
    object.addIfNotEmpty(QLatin1String("expectedValue"), expected);
    object.addIfNotEmpty(QLatin1String("property"), vpPropertyFromMsg(entry.message));
}

void JsonReportGenerator::Private::addFailedImage(const Entry &entry, QLatin1String key)
{
    object.addIfNotEmpty(key, locations.failedImage(vpFailedImgFromMsg(entry.details)));
}

void JsonReportGenerator::Private::writeAttachment(const Entry &entry)
{
    handleChildrenSeparator();
    object.clear();
    object.addIfNotEmpty(QLatin1String("time"), timeOf(entry));
    object.addIfNotEmpty(QLatin1String("type"), attachmentTypeToString(entry.attachmentType));
    object.addIfNotEmpty(QLatin1String("uri"), locations.attachment(entry.attachmentUri));
    writeData(false);
}

} // namespace Morvex
