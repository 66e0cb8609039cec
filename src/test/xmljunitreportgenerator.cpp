#include "test/xmljunitreportgenerator.h"

#include "shared/xmltext.h"
#include "test/report/bufferedreport.h"
#include "test/report/junitshared.h"
#include "test/report/openreport.h"
#include "test/report/resultlabels.h"
#include "test/report/stacklines.h"

#include <QStringList>

#include <utility>

namespace Morvex {
namespace {

const int indentStep = 4;

// As a plain number: readers take neither an exponent nor more than three decimals.
QString seconds(qint64 milliseconds)
{
    QString text = junitSeconds(milliseconds);
    while (text.endsWith(QLatin1Char('0')))
        text.chop(1);
    if (text.endsWith(QLatin1Char('.')))
        text.chop(1);
    return text;
}

QString withoutQuotes(const QString &text)
{
    const auto isQuote = [](QChar character) {
        return character == QLatin1Char('\'') || character == QLatin1Char('"');
    };
    int begin = 0;
    int end = text.size();
    while (begin < end && isQuote(text.at(begin)))
        ++begin;
    while (end > begin && isQuote(text.at(end - 1)))
        --end;
    return text.mid(begin, end - begin);
}

QString withoutBlanks(const QString &text)
{
    QString name = text;
    name.replace(QLatin1Char('\t'), QLatin1Char('_'));
    return name.replace(QLatin1Char(' '), QLatin1Char('_'));
}

QStringList nonEmpty(QStringList texts)
{
    texts.removeAll(QString());
    return texts;
}

QString composeResultMessage(const TestResult::Entry &entry)
{
    const bool hasMessageElsewhere = isJUnitFailure(entry.type) || isJUnitError(entry.type);
    QString composed;
    for (const QString &field : nonEmpty({hasMessageElsewhere ? QString() : entry.message,
                                          entry.details, entry.info, entry.vpName}))
        composed += field + QLatin1Char('|');
    return composed;
}

// Some readers show the attribute, others the text, so the text has all.
XmlElement createFailureOrErrorElement(const TestResult::Entry &entry)
{
    XmlElement element(isJUnitFailure(entry.type) ? QLatin1String("failure")
                                                  : QLatin1String("error"));
    element.addAttribute(QLatin1String("type"), resultName(entry.type));
    element.addAttribute(QLatin1String("message"), replaceInvalidXMLcharacters(entry.message));
    const QStringList lines =
        nonEmpty({entry.line.toString(), entry.message, composeResultMessage(entry)}) +
        stackLines(entry.stack);
    element.setText(lines.join(QLatin1Char('\n')));
    return element;
}

} // namespace

struct XmlJUnitReportGenerator::Private
{
    std::unique_ptr<ReportFile> file;
    BufferedReport testCases;
    QMap<QString, QString> properties = junitProperties({});
    QString runName;
    QString testCaseName;
    // In milliseconds of the epoch. The end of the run is the last one.
    qint64 stepStart = 0;
    QDateTime start;
    BufferedReport systemOut;
    int tests = 0;
    int failures = 0;
    int errors = 0;
    JUnitNames names;

    void updateCounter(const TestResult::Entry &entry);
    void handleByType(const TestResult::Entry &entry);
    void startRun(const TestResult::Entry &entry);
    void startStep(const TestResult::Entry &entry);
    void addTestCase(const TestResult::Entry &entry);
    void appendToSystemOut(const TestResult::Entry &entry);
    XmlElement createTestCaseElement(const TestResult::Entry &entry);
    QString composeUniqueTestCaseName(const QString &className, const TestResult::Entry &entry);
    XmlElement rootElement() const;
    void dumpReport();
};

XmlJUnitReportGenerator::XmlJUnitReportGenerator(std::unique_ptr<ReportFile> file)
    : d(std::make_unique<Private>())
{
    d->file = std::move(file);
}

XmlJUnitReportGenerator::~XmlJUnitReportGenerator() = default;

TestReportGenerator::Result XmlJUnitReportGenerator::create(const QString &path)
{
    return createInFile(path, {}, ReportFile::LocalOnStdStream,
                        [](std::unique_ptr<ReportFile> file) {
                            return new XmlJUnitReportGenerator(std::move(file));
                        });
}

void XmlJUnitReportGenerator::doHandleEntry(const TestResult::Entry &entry)
{
    if (!d->start.isValid()) {
        d->start = entry.time;
        d->startStep(entry);
    }
    d->updateCounter(entry);
    d->handleByType(entry);
}

void XmlJUnitReportGenerator::Private::updateCounter(const TestResult::Entry &entry)
{
    const bool isFailure = isJUnitFailure(entry.type);
    const bool isError = isJUnitError(entry.type);
    const bool hasPassed = entry.type == TestResult::PASS || entry.type == TestResult::XFAIL;
    failures += isFailure ? 1 : 0;
    errors += isError ? 1 : 0;
    tests += isFailure || isError || hasPassed ? 1 : 0;
}

void XmlJUnitReportGenerator::Private::handleByType(const TestResult::Entry &entry)
{
    switch (entry.type) {
    case TestResult::START:
        startRun(entry);
        break;
    case TestResult::START_TEST_CASE:
        testCaseName = entry.info;
        startStep(entry);
        break;
    case TestResult::END_TEST_CASE:
        testCaseName.clear();
        startStep(entry);
        break;
    case TestResult::END:
        startStep(entry);
        break;
    case TestResult::LOG:
    case TestResult::WARNING:
        appendToSystemOut(entry);
        break;
    case TestResult::FATAL:
    case TestResult::ERROR:
    case TestResult::PASS:
    case TestResult::FAIL:
    case TestResult::XFAIL:
    case TestResult::XPASS:
        addTestCase(entry);
        break;
    default:
        break;
    }
}

void XmlJUnitReportGenerator::Private::startRun(const TestResult::Entry &entry)
{
    if (runName.isEmpty())
        runName = withoutQuotes(entry.name);
    properties = junitProperties(entry);
}

void XmlJUnitReportGenerator::Private::startStep(const TestResult::Entry &entry)
{
    if (entry.time.isValid())
        stepStart = entry.time.toMSecsSinceEpoch();
}

void XmlJUnitReportGenerator::Private::addTestCase(const TestResult::Entry &entry)
{
    QByteArray text;
    createTestCaseElement(entry).append(text, indentStep, indentStep);
    testCases.append(text);
    appendToSystemOut(entry);
}

void XmlJUnitReportGenerator::Private::appendToSystemOut(const TestResult::Entry &entry)
{
    const QStringList fields = nonEmpty({resultName(entry.type), entry.line.toString(),
                                         entry.message, entry.details, entry.info, entry.vpName});
    QByteArray line;
    appendXmlText(line, escapeControls(fields.join(QLatin1Char('|'))));
    systemOut.append(line + '\n');
}

XmlElement XmlJUnitReportGenerator::Private::createTestCaseElement(const TestResult::Entry &entry)
{
    // A result outside of any test case belongs to the run.
    const QString className = testCaseName.isEmpty() ? runName : testCaseName;
    XmlElement element(QLatin1String("testcase"));
    element.addAttribute(QLatin1String("name"), composeUniqueTestCaseName(className, entry));
    const qint64 startOfThis = stepStart;
    startStep(entry);
    element.addAttribute(QLatin1String("time"), seconds(stepStart - startOfThis));
    element.addAttribute(QLatin1String("classname"), className);
    if (isJUnitFailure(entry.type) || isJUnitError(entry.type))
        element.addChild(createFailureOrErrorElement(entry));
    return element;
}

QString XmlJUnitReportGenerator::Private::composeUniqueTestCaseName(const QString &className,
                                                                    const TestResult::Entry &entry)
{
    const QString place = entry.line.toString();
    const QString base = escapeControls(withoutBlanks(place.isEmpty() ? entry.message : place));
    if (base.isEmpty())
        return names.numbered(className, QStringLiteral("no_line_info_and_no_msg_"));
    return names.unique(className, base);
}

void XmlJUnitReportGenerator::generateSummary()
{
    d->dumpReport();
}

XmlElement XmlJUnitReportGenerator::Private::rootElement() const
{
    XmlElement root(QLatin1String("testsuite"));
    root.addAttribute(QLatin1String("name"), runName)
        .addAttribute(QLatin1String("tests"), tests)
        .addAttribute(QLatin1String("failures"), failures)
        .addAttribute(QLatin1String("errors"), errors)
        .addAttribute(QLatin1String("hostname"), junitHostName())
        .addAttribute(QLatin1String("time"), seconds(stepStart - start.toMSecsSinceEpoch()))
        .addAttribute(QLatin1String("timestamp"), junitTimestamp(start));
    return root;
}

void XmlJUnitReportGenerator::Private::dumpReport()
{
    const XmlElement root = rootElement();
    int indent = 0;
    QByteArray text = file->xmlDeclaration();
    dumpElementToStream(root, OpenTag, &text, indent);
    dumpElementToStream(junitPropertiesElement(properties), WholeElement, &text, indent);
    file->write(text);
    testCases.writeTo(*file);
    file->write("    <system-out>");
    systemOut.writeTo(*file);
    text = "</system-out>\n";
    dumpElementToStream(XmlElement(QLatin1String("system-err")), WholeElement, &text, indent);
    dumpElementToStream(root, CloseTag, &text, indent);
    file->write(text);
    file->flush();
}

} // namespace Morvex
