#include "test/xmljunitreportgenerator.h"

#include "shared/xmltext.h"
#include "test/report/resultlabels.h"

#include <QStringList>

#include <utility>

namespace Morvex {
namespace {

const int indentStep = 4;

// As a plain number: readers take neither an exponent nor more than three decimals.
QString seconds(qint64 milliseconds)
{
    // A clock may have been set back.
    const double value = static_cast<double>(qMax(milliseconds, qint64(0))) / 1000;
    QString text = QString::number(value, 'f', 3);
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

QString stackText(const std::vector<LineInfo> &stack)
{
    QString text;
    for (const LineInfo &frame : stack)
        text += QLatin1String("\n  at ") + frame.fileName() + QLatin1Char(':') +
                QString::number(frame.lineNumber());
    return text;
}

// Some readers show the attribute, others the text, so the text has all.
XmlElement createFailureOrErrorElement(const TestResult::Entry &entry)
{
    XmlElement element(isJUnitFailure(entry.type) ? QLatin1String("failure")
                                                  : QLatin1String("error"));
    element.addAttribute(QLatin1String("type"), resultName(entry.type));
    element.addAttribute(QLatin1String("message"), replaceInvalidXMLcharacters(entry.message));
    const QStringList lines =
        nonEmpty({entry.line.toString(), entry.message, composeResultMessage(entry)});
    element.setText(lines.join(QLatin1Char('\n')) + stackText(entry.stack));
    return element;
}

} // namespace

XmlJUnitReportGenerator::XmlJUnitReportGenerator(std::unique_ptr<ReportFile> file)
    : m_file(std::move(file))
    , m_properties(junitProperties({}))
{
}

XmlJUnitReportGenerator::~XmlJUnitReportGenerator()
{
    if (!m_run.isGivenUp() || !isReportSummaryWanted())
        return;
    handleEntry(RunWatch::givenUpEntry());
    generateSummary();
}

TestReportGenerator::Result XmlJUnitReportGenerator::create(const QString &path)
{
    auto file = std::make_unique<ReportFile>();
    const QString error = file->open(path, {}, ReportFile::LocalOnStdStream);
    if (!error.isEmpty())
        return {nullptr, error};
    return {new XmlJUnitReportGenerator(std::move(file)), QString()};
}

void XmlJUnitReportGenerator::doHandleEntry(const TestResult::Entry &entry)
{
    m_run.see(entry.type);
    if (!m_start.isValid()) {
        m_start = entry.time;
        startStep(entry);
    }
    updateCounter(entry);
    handleByType(entry);
}

void XmlJUnitReportGenerator::updateCounter(const TestResult::Entry &entry)
{
    switch (entry.type) {
    case TestResult::FAIL:
    case TestResult::XPASS:
        ++m_tests;
        ++m_failures;
        break;
    case TestResult::PASS:
    case TestResult::XFAIL:
        ++m_tests;
        break;
    case TestResult::FATAL:
    case TestResult::ERROR:
        ++m_tests;
        ++m_errors;
        break;
    default:
        break;
    }
}

void XmlJUnitReportGenerator::handleByType(const TestResult::Entry &entry)
{
    switch (entry.type) {
    case TestResult::START:
        startRun(entry);
        break;
    case TestResult::START_TEST_CASE:
        m_testCaseName = entry.info;
        startStep(entry);
        break;
    case TestResult::END_TEST_CASE:
        m_testCaseName.clear();
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

void XmlJUnitReportGenerator::startRun(const TestResult::Entry &entry)
{
    if (m_runName.isEmpty())
        m_runName = withoutQuotes(entry.name);
    m_properties = junitProperties(entry);
}

void XmlJUnitReportGenerator::startStep(const TestResult::Entry &entry)
{
    if (entry.time.isValid())
        m_stepStart = entry.time.toMSecsSinceEpoch();
}

void XmlJUnitReportGenerator::addTestCase(const TestResult::Entry &entry)
{
    QByteArray text;
    createTestCaseElement(entry).append(text, indentStep, indentStep);
    m_testCases.append(text);
    appendToSystemOut(entry);
}

void XmlJUnitReportGenerator::appendToSystemOut(const TestResult::Entry &entry)
{
    const QStringList fields = nonEmpty({resultName(entry.type), entry.line.toString(),
                                         entry.message, entry.details, entry.info, entry.vpName});
    QByteArray line;
    appendXmlText(line, showControls(fields.join(QLatin1Char('|'))));
    m_systemOut.append(line + '\n');
}

XmlElement XmlJUnitReportGenerator::createTestCaseElement(const TestResult::Entry &entry)
{
    // A result outside of any test case belongs to the run.
    const QString className = m_testCaseName.isEmpty() ? m_runName : m_testCaseName;
    XmlElement element(QLatin1String("testcase"));
    element.addAttribute(QLatin1String("name"), composeUniqueTestCaseName(className, entry));
    const qint64 stepStart = m_stepStart;
    startStep(entry);
    element.addAttribute(QLatin1String("time"), seconds(m_stepStart - stepStart));
    element.addAttribute(QLatin1String("classname"), className);
    if (isJUnitFailure(entry.type) || isJUnitError(entry.type))
        element.addChild(createFailureOrErrorElement(entry));
    return element;
}

QString XmlJUnitReportGenerator::composeUniqueTestCaseName(const QString &className,
                                                           const TestResult::Entry &entry)
{
    const QString place = entry.line.toString();
    const QString base = showControls(withoutBlanks(place.isEmpty() ? entry.message : place));
    if (base.isEmpty())
        return m_names.numbered(className, QStringLiteral("no_line_info_and_no_msg_"));
    return m_names.unique(className, base);
}

void XmlJUnitReportGenerator::generateSummary()
{
    dumpReport();
}

XmlElement XmlJUnitReportGenerator::rootElement() const
{
    XmlElement root(QLatin1String("testsuite"));
    root.addAttribute(QLatin1String("name"), m_runName)
        .addAttribute(QLatin1String("tests"), m_tests)
        .addAttribute(QLatin1String("failures"), m_failures)
        .addAttribute(QLatin1String("errors"), m_errors)
        .addAttribute(QLatin1String("hostname"), junitHostName())
        .addAttribute(QLatin1String("time"), seconds(m_stepStart - m_start.toMSecsSinceEpoch()))
        .addAttribute(QLatin1String("timestamp"), junitTimestamp(m_start));
    return root;
}

void XmlJUnitReportGenerator::dumpReport()
{
    const XmlElement root = rootElement();
    int indent = 0;
    QByteArray text = m_file->xmlDeclaration();
    dumpElementToStream(root, OpenTag, &text, indent);
    dumpElementToStream(junitPropertiesElement(m_properties), WholeElement, &text, indent);
    m_file->write(text);
    m_testCases.writeTo(*m_file);
    m_file->write("    <system-out>");
    m_systemOut.writeTo(*m_file);
    text = "</system-out>\n";
    dumpElementToStream(XmlElement(QLatin1String("system-err")), WholeElement, &text, indent);
    dumpElementToStream(root, CloseTag, &text, indent);
    m_file->write(text);
    m_file->flush();
}

} // namespace Morvex
