#include "test/xml2reportgenerator.h"

#include "test/output/xmlelement.h"
#include "test/report/iso8601time.h"
#include "test/report/openreport.h"
#include "test/report/resultlabels.h"
#include "test/report/xml2descriptions.h"
#include "test/reportgeneratorshared.h"

#include <utility>

namespace Morvex {
namespace {

const QLatin1String testName("test");
const QLatin1String verificationName("verification");
const QLatin1String timeName("time");
const QLatin1String typeName("type");
const QLatin1String detailed("DETAILED");
const QLatin1String xmlNamespace("http://www.morvex.org/XML2");

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

// A result brings no file of its own, but the screenshot that was taken with it.
QString attachedFile(const TestResult::Entry &entry)
{
    if (!entry.attachmentUri.isEmpty())
        return entry.attachmentUri;
    return extractScreenshotFromMsgAndDetail(entry.message, entry.details);
}

} // namespace

struct Xml2ReportGenerator::Private
{
    std::unique_ptr<ReportFile> file;
    int version = 0;
    int indent = 0;
    int openTests = 0;
    bool isVerificationOpen = false;
    int openVpCounter = 0;
    bool isClosed = false;
    Iso8601Time times;
    // What the current entry adds to the file.
    QByteArray text;

    void writeEntry(const TestResult::Entry &entry);
    void openTest(const QString &name, const QDateTime &time);
    void closeTest(const QDateTime &time);
    void closeRun(const QDateTime &time);
    void openVerification(const TestResult::Entry &entry);
    void closeVerification();
    void writeResult(const TestResult::Entry &entry);
    void writeMessage(const TestResult::Entry &entry);

    QString timeText(const QDateTime &time);
    XmlElement rootElement() const;
    QString vpTypeAttributeValue(TestResult::VPType type) const;
    void setVpTypeAttribute(XmlElement &element, const TestResult::Entry &entry) const;
    void addVersionedDescriptions(XmlElement &result, const TestResult::Entry &entry) const;
    void dump(const XmlElement &element, WriteMode mode);
    void flush();
};

Xml2ReportGenerator::Xml2ReportGenerator(std::unique_ptr<ReportFile> file, int version)
    : d(std::make_unique<Private>())
{
    d->file = std::move(file);
    d->version = version;
    d->dump(d->rootElement(), OpenTag);
    d->flush();
}

Xml2ReportGenerator::~Xml2ReportGenerator() = default;

TestReportGenerator::Result Xml2ReportGenerator::create(const QString &path, int version)
{
    return createInFile(path, FreshFileName, ReportFile::LocalOnStdStream,
                        [version](std::unique_ptr<ReportFile> file) {
                            return new Xml2ReportGenerator(std::move(file), version);
                        });
}

void Xml2ReportGenerator::generateSummary() {}

void Xml2ReportGenerator::doHandleEntry(const TestResult::Entry &entry)
{
    // The document is closed.
    if (d->isClosed)
        return;
    d->writeEntry(entry);
    d->flush();
}

void Xml2ReportGenerator::Private::writeEntry(const TestResult::Entry &entry)
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

void Xml2ReportGenerator::Private::openTest(const QString &name, const QDateTime &time)
{
    closeVerification();
    XmlElement test(testName);
    test.addAttribute(QLatin1String("name"), name);
    dump(test, OpenTag);
    ++openTests;
    XmlElement prolog(QLatin1String("prolog"));
    prolog.addAttribute(timeName, timeText(time));
    dump(prolog, WholeElement);
}

QString Xml2ReportGenerator::Private::timeText(const QDateTime &time)
{
    return QString::fromLatin1(times.text(time));
}

void Xml2ReportGenerator::Private::closeTest(const QDateTime &time)
{
    closeVerification();
    if (openTests == 0)
        return;
    XmlElement epilog(QLatin1String("epilog"));
    epilog.addAttribute(timeName, timeText(time));
    dump(epilog, WholeElement);
    dump(XmlElement(testName), CloseTag);
    --openTests;
}

void Xml2ReportGenerator::Private::closeRun(const QDateTime &time)
{
    closeVerification();
    while (openTests > 0)
        closeTest(time);
    dump(rootElement(), CloseTag);
    isClosed = true;
}

void Xml2ReportGenerator::Private::openVerification(const TestResult::Entry &entry)
{
    const bool belongsToOpenOne = entry.vpCounter > 0 && entry.vpCounter == openVpCounter;
    if (isVerificationOpen && belongsToOpenOne)
        return;
    closeVerification();
    XmlElement verification(verificationName);
    verification.addAttribute(QLatin1String("name"), entry.vpName);
    addLocation(verification, entry.line);
    setVpTypeAttribute(verification, entry);
    dump(verification, OpenTag);
    isVerificationOpen = true;
    openVpCounter = entry.vpCounter;
}

void Xml2ReportGenerator::Private::closeVerification()
{
    if (isVerificationOpen)
        dump(XmlElement(verificationName), CloseTag);
    isVerificationOpen = false;
}

void Xml2ReportGenerator::Private::writeResult(const TestResult::Entry &entry)
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

void Xml2ReportGenerator::Private::addVersionedDescriptions(XmlElement &result,
                                                            const TestResult::Entry &entry) const
{
    if (version < 1)
        return;
    injectFailedVPInfo(result, entry);
    const QString attached = attachedFile(entry);
    if (!attached.isEmpty())
        result.addChild(descriptionElement(attached, QLatin1String("file")));
    if (version >= 2)
        injectTableDiff(result, entry);
}

void Xml2ReportGenerator::Private::writeMessage(const TestResult::Entry &entry)
{
    closeVerification();
    XmlElement message(QLatin1String("message"));
    message.addAttribute(timeName, timeText(entry.time));
    message.addAttribute(typeName, resultName(entry.type));
    addLocation(message, entry.line);
    XmlElement description = emptyDescription();
    writeText(description, entry.message);
    message.addChild(std::move(description));
    XmlElement details = emptyDescription(detailed);
    writeText(details, entry.details);
    message.addChild(std::move(details));
    dump(message, WholeElement);
}

XmlElement Xml2ReportGenerator::Private::rootElement() const
{
    XmlElement root(QLatin1String("MorvexReport"));
    root.addAttribute(QLatin1String("version"), QStringLiteral("2.%1").arg(version));
    root.addAttribute(QLatin1String("xmlns"), xmlNamespace);
    return root;
}

// Empty for a kind that this version does not have.
QString Xml2ReportGenerator::Private::vpTypeAttributeValue(TestResult::VPType type) const
{
    switch (type) {
    case TestResult::PROPERTY_VP:
        return QStringLiteral("properties");
    case TestResult::TABLE_VP:
        return version >= 2 ? QStringLiteral("table") : QString();
    case TestResult::SCREENSHOT_VP:
    case TestResult::VISUAL_VP:
        return QStringLiteral("screenshot");
    case TestResult::NO_VP:
        break;
    }
    return {};
}

void Xml2ReportGenerator::Private::setVpTypeAttribute(XmlElement &element,
                                                      const TestResult::Entry &entry) const
{
    const QString type = vpTypeAttributeValue(entry.vpType);
    if (version >= 1 && !type.isEmpty())
        element.addAttribute(typeName, type);
}

void Xml2ReportGenerator::Private::dump(const XmlElement &element, WriteMode mode)
{
    dumpElementToStream(element, mode, &text, indent);
}

void Xml2ReportGenerator::Private::flush()
{
    file->write(text);
    file->flush();
    text.resize(0);
}

} // namespace Morvex
