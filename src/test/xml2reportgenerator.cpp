#include "test/xml2reportgenerator.h"

#include "test/report/resultlabels.h"
#include "test/reportgeneratorshared.h"
#include "test/tablediff.h"

#include <utility>

namespace Morvex {
namespace {

const QLatin1String descriptionName("description");
const QLatin1String testName("test");
const QLatin1String verificationName("verification");
const QLatin1String timeName("time");
const QLatin1String typeName("type");
const QLatin1String detailed("DETAILED");
const QLatin1String xmlNamespace("http://www.morvex.org/XML2");

XmlElement descriptionElement(const QString &text, QLatin1String type = {})
{
    XmlElement element(descriptionName);
    if (!type.isEmpty())
        element.addAttribute(typeName, type);
    element.setText(text);
    return element;
}

void writeText(XmlElement &element, const QString &text)
{
    element.setCData(text);
}

void addLocation(XmlElement &element, const LineInfo &line)
{
    if (!line.isValid())
        return;
    element.addAttribute(QLatin1String("file"), line.fileName());
    element.addAttribute(QLatin1String("line"), line.lineNumber());
}

void addFailedProperty(XmlElement &result, const TestResult::Entry &entry)
{
    result.addChild(
        descriptionElement(vpObjectFromMsg(entry.message, true), QLatin1String("object")));
    result.addChild(
        descriptionElement(vpPropertyFromMsg(entry.message), QLatin1String("property")));
    QString expected;
    QString actual;
    expectedAndActualValueFromMsg(entry.details, &expected, &actual);
    if (!actual.isNull())
        result.addChild(descriptionElement(actual, QLatin1String("failedValue")));
}

void addFailedScreenshot(XmlElement &result, const TestResult::Entry &entry)
{
    result.addChild(
        descriptionElement(vpObjectFromMsg(entry.message, false), QLatin1String("object")));
    const QString image = vpFailedImgFromMsg(entry.details);
    if (!image.isEmpty())
        result.addChild(descriptionElement(image, QLatin1String("failedImage")));
}

void injectFailedVPInfo(XmlElement &result, const TestResult::Entry &entry)
{
    if (entry.type != TestResult::FAIL && entry.type != TestResult::XPASS)
        return;
    switch (entry.vpType) {
    case TestResult::PROPERTY_VP:
        addFailedProperty(result, entry);
        break;
    case TestResult::SCREENSHOT_VP:
    case TestResult::VISUAL_VP:
        addFailedScreenshot(result, entry);
        break;
    case TestResult::NO_VP:
    case TestResult::TABLE_VP:
        break;
    }
}

// A result brings no file of its own, but the screenshot that was taken with it.
QString attachedFile(const TestResult::Entry &entry)
{
    if (!entry.attachmentUri.isEmpty())
        return entry.attachmentUri;
    return extractScreenshotFromMsgAndDetail(entry.message, entry.details);
}

XmlElement createCellElement(const TableDiff::Cell &cell)
{
    XmlElement element(QLatin1String("cell"));
    for (auto it = cell.properties.cbegin(); it != cell.properties.cend(); ++it) {
        XmlElement property(QLatin1String("property"));
        property.addAttribute(QLatin1String("name"), it.key());
        property.setText(it.value().toString());
        element.addChild(std::move(property));
    }
    return element;
}

void addCells(XmlElement &parent, const FList<TableDiff::Cell> &cells)
{
    for (const TableDiff::Cell &cell : cells)
        parent.addChild(createCellElement(cell));
}

void createSubjectElement(XmlElement &parent, const TableDiff::Subject &subject)
{
    const FList<TableDiff::Cell> &cells = subject.cells;
    if (subject.type == TableDiff::Subject::CELL) {
        addCells(parent, cells);
        return;
    }
    const bool isRow = subject.type == TableDiff::Subject::ROW;
    XmlElement element(isRow ? QLatin1String("row") : QLatin1String("column"));
    if (!cells.isEmpty()) {
        const TableDiff::Cell &first = cells.first();
        element.addAttribute(isRow ? QLatin1String("line") : QLatin1String("index"),
                             isRow ? first.row : first.column);
    }
    addCells(element, cells);
    parent.addChild(std::move(element));
}

QLatin1String diffElementName(TableDiff::Element::Kind kind)
{
    switch (kind) {
    case TableDiff::Element::INSERTION:
        return QLatin1String("insertion");
    case TableDiff::Element::DELETION:
        return QLatin1String("deletion");
    case TableDiff::Element::CONTEXT:
        break;
    }
    return QLatin1String("context");
}

XmlElement createDiffElement(const TableDiff::Element &difference)
{
    XmlElement element(diffElementName(difference.kind));
    createSubjectElement(element, difference.subject);
    return element;
}

void injectTableDiff(XmlElement &result, const TestResult::Entry &entry)
{
    if (entry.vpType != TestResult::TABLE_VP || entry.tableDiff.isEmpty())
        return;
    result.addChild(
        descriptionElement(vpObjectFromMsg(entry.message, false), QLatin1String("object")));
    XmlElement tableDiff(QLatin1String("tablediff"));
    for (const TableDiff::Element &difference : entry.tableDiff)
        tableDiff.addChild(createDiffElement(difference));
    result.addChild(std::move(tableDiff));
}

} // namespace

Xml2ReportGenerator::Xml2ReportGenerator(std::unique_ptr<ReportFile> file, int version)
    : m_file(std::move(file))
    , m_version(version)
{
    dump(rootElement(), OpenTag);
    flush();
}

Xml2ReportGenerator::~Xml2ReportGenerator()
{
    if (!m_run.isGivenUp())
        return;
    const TestResult::Entry entry = RunWatch::givenUpEntry();
    handleEntry(entry);
    closeRun(entry.time);
    flush();
}

TestReportGenerator::Result Xml2ReportGenerator::create(const QString &path, int version)
{
    auto file = std::make_unique<ReportFile>();
    const QString error = file->open(path, FreshFileName, ReportFile::LocalOnStdStream);
    if (!error.isEmpty())
        return {nullptr, error};
    return {new Xml2ReportGenerator(std::move(file), version), QString()};
}

void Xml2ReportGenerator::generateSummary() {}

void Xml2ReportGenerator::doHandleEntry(const TestResult::Entry &entry)
{
    // The document is closed.
    if (m_run.isEnded())
        return;
    m_run.see(entry.type);
    writeEntry(entry);
    flush();
}

void Xml2ReportGenerator::writeEntry(const TestResult::Entry &entry)
{
    switch (entry.type) {
    case TestResult::START:
        openTest(entry.name, entry.time);
        break;
    case TestResult::START_TEST_CASE:
        openTest(entry.info, entry.time);
        break;
    case TestResult::END_TEST_CASE:
        closeTest(entry.time);
        break;
    case TestResult::END:
        closeRun(entry.time);
        break;
    case TestResult::PASS:
    case TestResult::FAIL:
    case TestResult::XFAIL:
    case TestResult::XPASS:
        writeResult(entry);
        break;
    case TestResult::LOG:
    case TestResult::FATAL:
    case TestResult::ERROR:
    case TestResult::WARNING:
        writeMessage(entry);
        break;
    case TestResult::SKIP_SECTION:
        // Without it, a test case that was left out would look passed.
        writeMessage(convertSectionEventToLogEvent(entry));
        break;
    case TestResult::START_SECTION:
    case TestResult::END_SECTION:
    case TestResult::ATTACHMENT:
    case TestResult::STARTVIDEOCAPTURE:
    case TestResult::ENDVIDEOCAPTURE:
    case TestResult::NONE:
        break;
    }
}

void Xml2ReportGenerator::openTest(const QString &name, const QDateTime &time)
{
    closeVerification();
    XmlElement test(testName);
    test.addAttribute(QLatin1String("name"), name);
    dump(test, OpenTag);
    ++m_openTests;
    XmlElement prolog(QLatin1String("prolog"));
    prolog.addAttribute(timeName, timeText(time));
    dump(prolog, WholeElement);
}

QString Xml2ReportGenerator::timeText(const QDateTime &time)
{
    return QString::fromLatin1(m_times.text(time));
}

void Xml2ReportGenerator::closeTest(const QDateTime &time)
{
    closeVerification();
    if (m_openTests == 0)
        return;
    XmlElement epilog(QLatin1String("epilog"));
    epilog.addAttribute(timeName, timeText(time));
    dump(epilog, WholeElement);
    dump(XmlElement(testName), CloseTag);
    --m_openTests;
}

void Xml2ReportGenerator::closeRun(const QDateTime &time)
{
    closeVerification();
    while (m_openTests > 0)
        closeTest(time);
    dump(rootElement(), CloseTag);
}

void Xml2ReportGenerator::openVerification(const TestResult::Entry &entry)
{
    const bool belongsToOpenOne = entry.vpCounter > 0 && entry.vpCounter == m_openVpCounter;
    if (m_isVerificationOpen && belongsToOpenOne)
        return;
    closeVerification();
    XmlElement verification(verificationName);
    verification.addAttribute(QLatin1String("name"), entry.vpName);
    addLocation(verification, entry.line);
    setVpTypeAttribute(verification, entry);
    dump(verification, OpenTag);
    m_isVerificationOpen = true;
    m_openVpCounter = entry.vpCounter;
}

void Xml2ReportGenerator::closeVerification()
{
    if (m_isVerificationOpen)
        dump(XmlElement(verificationName), CloseTag);
    m_isVerificationOpen = false;
}

void Xml2ReportGenerator::writeResult(const TestResult::Entry &entry)
{
    openVerification(entry);
    XmlElement result(QLatin1String("result"));
    result.addAttribute(timeName, timeText(entry.time));
    result.addAttribute(typeName, resultName(entry.type));
    result.addChild(descriptionElement(entry.message));
    result.addChild(descriptionElement(entry.details, detailed));
    if (!entry.info.isEmpty())
        result.addChild(descriptionElement(entry.info, detailed));
    addVersionedDescriptions(result, entry);
    dump(result, WholeElement);
}

void Xml2ReportGenerator::addVersionedDescriptions(XmlElement &result,
                                                   const TestResult::Entry &entry) const
{
    if (m_version < 1)
        return;
    injectFailedVPInfo(result, entry);
    const QString file = attachedFile(entry);
    if (!file.isEmpty())
        result.addChild(descriptionElement(file, QLatin1String("file")));
    if (m_version >= 2)
        injectTableDiff(result, entry);
}

void Xml2ReportGenerator::writeMessage(const TestResult::Entry &entry)
{
    closeVerification();
    XmlElement message(QLatin1String("message"));
    message.addAttribute(timeName, timeText(entry.time));
    message.addAttribute(typeName, resultName(entry.type));
    addLocation(message, entry.line);
    XmlElement description(descriptionName);
    writeText(description, entry.message);
    message.addChild(std::move(description));
    XmlElement details(descriptionName);
    details.addAttribute(typeName, detailed);
    writeText(details, entry.details);
    message.addChild(std::move(details));
    dump(message, WholeElement);
}

XmlElement Xml2ReportGenerator::rootElement() const
{
    XmlElement root(QLatin1String("MorvexReport"));
    root.addAttribute(QLatin1String("version"), QStringLiteral("2.%1").arg(m_version));
    root.addAttribute(QLatin1String("xmlns"), xmlNamespace);
    return root;
}

// Empty for a kind that this version does not tell.
QString Xml2ReportGenerator::vpTypeAttributeValue(TestResult::VPType type) const
{
    switch (type) {
    case TestResult::PROPERTY_VP:
        return QStringLiteral("properties");
    case TestResult::TABLE_VP:
        return m_version >= 2 ? QStringLiteral("table") : QString();
    case TestResult::SCREENSHOT_VP:
    case TestResult::VISUAL_VP:
        return QStringLiteral("screenshot");
    case TestResult::NO_VP:
        break;
    }
    return {};
}

void Xml2ReportGenerator::setVpTypeAttribute(XmlElement &element,
                                             const TestResult::Entry &entry) const
{
    const QString type = vpTypeAttributeValue(entry.vpType);
    if (m_version >= 1 && !type.isEmpty())
        element.addAttribute(typeName, type);
}

void Xml2ReportGenerator::dump(const XmlElement &element, WriteMode mode)
{
    dumpElementToStream(element, mode, &m_text, m_indent);
}

void Xml2ReportGenerator::flush()
{
    m_file->write(m_text);
    m_file->flush();
    m_text.resize(0);
}

} // namespace Morvex
