#include "test/junitreportgenerator.h"

#include "shared/xmltext.h"
#include "test/report/iso8601time.h"
#include "test/report/junitshared.h"
#include "test/report/junittestcase.h"
#include "test/report/openreport.h"
#include "test/report/resultlabels.h"
#include "test/report/stacklines.h"

#include <QHash>
#include <QPair>
#include <QStringList>

#include <algorithm>
#include <utility>

namespace Morvex {
namespace {

// How many names of a nesting are at each end of a name that would be too long otherwise.
const int shownLevels = 10;

// A dot joins the levels of nesting, so that none may be in a name.
QString normalizedName(const QString &name)
{
    QString normalized = escapeControls(nameOrUnnamed(name));
    return normalized.replace(QLatin1Char('.'), QLatin1Char('_'));
}

void logEntry(QByteArray &stream, const TestResult::Entry &entry, Iso8601Time &times)
{
    QStringList parts{entry.line.toString(), entry.message, entry.details, entry.vpName};
    parts.removeAll(QString());
    QString text = times.isoDate(entry.time) + QLatin1String(" [") + resultName(entry.type) +
                   QLatin1String("] ") + escapeNonPrintable(parts.join(QLatin1Char(' '))) +
                   QLatin1Char('\n');
    for (const QString &line : stackLines(entry.stack))
        text += line + QLatin1Char('\n');
    appendXmlCData(stream, text);
}

struct JUnitTestSuite
{
    QString name;
    QMap<QString, QString> properties = junitProperties({});
    QDateTime start;
    // In the order in which they were opened.
    std::vector<JUnitTestCase> testCases;
    // Each entry as it is written, fit for a CDATA section.
    std::vector<QByteArray> log;
};

} // namespace

struct JUnitReportGenerator::Private
{
    std::unique_ptr<ReportFile> file;
    JUnitTestSuite suite;
    // By the path around it and the name.
    QHash<QPair<int, QString>, int> paths;
    // How many cases of a path are shown, by path.
    std::vector<int> shown{0};
    // The open test cases, innermost last. The first is that of what is outside of all others.
    std::vector<std::size_t> open;
    // The latest time of an entry so far, up to which the time has been given to test cases. The
    // results of a verification bear the time of its start, so that an entry may be older than the
    // one before. In milliseconds of the epoch.
    qint64 lastTime = 0;
    // In milliseconds.
    qint64 duration = 0;
    bool isWritten = false;
    Iso8601Time times;

    void passTime(const QDateTime &time);
    void log(const TestResult::Entry &entry);
    void handle(const TestResult::Entry &entry);
    void startSuite(const TestResult::Entry &entry);
    void endSuite();
    void startFakeCase();
    void endFakeCase();
    void beginCase(const QString &name, bool isSection);
    void endCase();
    void endCasesUpTo(std::size_t depth);
    std::size_t depthOfTestCase() const;
    int pathOf(int parent, const QString &name);
    QStringList namesOf(const JUnitTestCase &testCase) const;
    void write();
    XmlElement rootElement() const;
    void writeTestCase(const JUnitTestCase &testCase, int indent);
    void writeFailure(const JUnitTestCase &testCase, int indent);
    void writeJUnitSystemOut();
};

JUnitReportGenerator::JUnitReportGenerator(std::unique_ptr<ReportFile> file)
    : d(std::make_unique<Private>())
{
    d->file = std::move(file);
    d->startFakeCase();
}

JUnitReportGenerator::~JUnitReportGenerator() = default;

TestReportGenerator::Result JUnitReportGenerator::create(const QString &path)
{
    return createInFile(path, {}, ReportFile::Utf8, [](std::unique_ptr<ReportFile> file) {
        return new JUnitReportGenerator(std::move(file));
    });
}

void JUnitReportGenerator::generateSummary() {}

void JUnitReportGenerator::doHandleEntry(const TestResult::Entry &entry)
{
    // The document is written and closed.
    if (d->isWritten)
        return;
    d->passTime(entry.time);
    d->handle(entry);
}

// The time since the last entry goes to the test case that was open all the while.
void JUnitReportGenerator::Private::passTime(const QDateTime &time)
{
    if (!time.isValid())
        return;
    const qint64 now = time.toMSecsSinceEpoch();
    if (!suite.start.isValid()) {
        suite.start = time;
        lastTime = now;
    }
    const qint64 passed = qMax(now - lastTime, qint64(0));
    suite.testCases[open.back()].milliseconds += passed;
    duration += passed;
    lastTime += passed;
}

void JUnitReportGenerator::Private::log(const TestResult::Entry &entry)
{
    suite.testCases[open.back()].add(entry, suite.log.size());
    QByteArray text;
    logEntry(text, entry, times);
    text.squeeze();
    suite.log.push_back(std::move(text));
}

void JUnitReportGenerator::Private::handle(const TestResult::Entry &entry)
{
    switch (entry.type) {
    case TestResult::START:
        startSuite(entry);
        log(entry);
        break;
    case TestResult::END:
        endCasesUpTo(1);
        log(entry);
        endSuite();
        break;
    case TestResult::START_TEST_CASE:
        endCasesUpTo(1);
        beginCase(entry.info, false);
        log(entry);
        break;
    case TestResult::END_TEST_CASE:
        endCasesUpTo(depthOfTestCase());
        log(entry);
        endCasesUpTo(1);
        break;
    case TestResult::START_SECTION:
        beginCase(entry.message, true);
        log(entry);
        break;
    case TestResult::END_SECTION:
        log(entry);
        if (suite.testCases[open.back()].isSection)
            endCase();
        break;
    default:
        log(entry);
        break;
    }
}

void JUnitReportGenerator::Private::startSuite(const TestResult::Entry &entry)
{
    suite.name = entry.name;
    suite.properties = junitProperties(entry);
}

void JUnitReportGenerator::Private::endSuite()
{
    endCasesUpTo(1);
    endFakeCase();
    write();
    isWritten = true;
}

void JUnitReportGenerator::Private::startFakeCase()
{
    JUnitTestCase fake;
    fake.name = QStringLiteral("(main)");
    suite.testCases.push_back(fake);
    open.push_back(0);
}

// Readers lose a suite without a test case, so one stands for the empty run.
void JUnitReportGenerator::Private::endFakeCase()
{
    JUnitTestCase &fake = suite.testCases.front();
    const bool isOnlyOne =
        std::none_of(suite.testCases.begin(), suite.testCases.end(),
                     [](const JUnitTestCase &testCase) { return testCase.isShown; });
    fake.isShown = fake.results > 0 || isOnlyOne;
    if (fake.results == 0)
        fake.name = QStringLiteral("(empty)");
}

void JUnitReportGenerator::Private::beginCase(const QString &name, bool isSection)
{
    const JUnitTestCase &parent = suite.testCases[open.back()];
    JUnitTestCase testCase;
    testCase.name = normalizedName(name);
    testCase.parent = open.back();
    testCase.outer = parent.depth == shownLevels ? open.back() : parent.outer;
    testCase.depth = parent.depth + 1;
    testCase.path = pathOf(parent.path, testCase.name);
    testCase.isSection = isSection;
    open.push_back(suite.testCases.size());
    suite.testCases.push_back(std::move(testCase));
}

void JUnitReportGenerator::Private::endCase()
{
    const std::size_t place = open.back();
    JUnitTestCase &testCase = suite.testCases[place];
    open.pop_back();
    testCase.isShown = !testCase.isSection || testCase.results > 0;
    if (testCase.isShown) {
        testCase.number = ++shown[std::size_t(testCase.path)];
        return;
    }
    suite.testCases[open.back()].takeOver(testCase);
    if (place + 1 == suite.testCases.size())
        suite.testCases.pop_back();
}

void JUnitReportGenerator::Private::endCasesUpTo(std::size_t depth)
{
    while (open.size() > depth)
        endCase();
}

// How many are open up to and with the innermost test case that is not a section.
std::size_t JUnitReportGenerator::Private::depthOfTestCase() const
{
    std::size_t depth = open.size();
    while (depth > 1 && suite.testCases[open[depth - 1]].isSection)
        --depth;
    return depth;
}

int JUnitReportGenerator::Private::pathOf(int parent, const QString &name)
{
    int &path = paths[{parent, name}];
    if (path == 0) {
        path = static_cast<int>(shown.size());
        shown.push_back(0);
    }
    return path;
}

// From the test case inwards. With one more name than an unshortened list can have, so that the
// path in the middle can't be taken for a name.
QStringList JUnitReportGenerator::Private::namesOf(const JUnitTestCase &testCase) const
{
    QStringList names;
    const JUnitTestCase *level = &testCase;
    if (testCase.depth > 2 * shownLevels) {
        for (int i = 0; i < shownLevels; ++i) {
            names.prepend(level->name);
            level = &suite.testCases[level->parent];
        }
        names.prepend(QLatin1Char('[') + QString::number(level->path) + QLatin1Char(']'));
        level = &suite.testCases[testCase.outer];
    }
    for (; level->depth > 0; level = &suite.testCases[level->parent])
        names.prepend(level->name);
    return names;
}

void JUnitReportGenerator::Private::write()
{
    const XmlElement root = rootElement();
    int indent = 0;
    QByteArray text = file->xmlDeclaration();
    dumpElementToStream(root, OpenTag, &text, indent);
    dumpElementToStream(junitPropertiesElement(suite.properties), WholeElement, &text, indent);
    file->write(text);
    for (const JUnitTestCase &testCase : suite.testCases) {
        if (testCase.isShown)
            writeTestCase(testCase, indent);
    }
    writeJUnitSystemOut();
    text.clear();
    dumpElementToStream(XmlElement(QLatin1String("system-err")), WholeElement, &text, indent);
    dumpElementToStream(root, CloseTag, &text, indent);
    file->write(text);
    file->flush();
}

XmlElement JUnitReportGenerator::Private::rootElement() const
{
    int tests = 0;
    int failures = 0;
    int errors = 0;
    for (const JUnitTestCase &testCase : suite.testCases) {
        tests += testCase.isShown ? 1 : 0;
        errors += testCase.isError() ? 1 : 0;
        failures += testCase.isFailure() ? 1 : 0;
    }
    XmlElement root(QLatin1String("testsuite"));
    root.addAttribute(QLatin1String("name"), suite.name)
        .addAttribute(QLatin1String("hostname"), junitHostName())
        .addAttribute(QLatin1String("time"), junitSeconds(duration))
        .addAttribute(QLatin1String("timestamp"), junitTimestamp(suite.start))
        .addAttribute(QLatin1String("errors"), errors)
        .addAttribute(QLatin1String("failures"), failures)
        .addAttribute(QLatin1String("tests"), tests);
    return root;
}

void JUnitReportGenerator::Private::writeTestCase(const JUnitTestCase &testCase, int indent)
{
    const QStringList names = namesOf(testCase);
    const bool isFake = names.isEmpty();
    QString name = isFake ? testCase.name : names.join(QLatin1Char('/'));
    if (testCase.number > 1)
        name += QLatin1Char('_') + QString::number(testCase.number);
    XmlElement element(QLatin1String("testcase"));
    element
        .addAttribute(QLatin1String("classname"),
                      isFake ? QStringLiteral("(root)") : names.join(QLatin1Char('.')))
        .addAttribute(QLatin1String("name"), name)
        .addAttribute(QLatin1String("time"), junitSeconds(testCase.milliseconds));
    if (testCase.isSkipped())
        element.addChild(XmlElement(QLatin1String("skipped")));
    const bool hasFailed = testCase.isError() || testCase.isFailure();
    QByteArray text;
    dumpElementToStream(element, hasFailed ? OpenTag : WholeElement, &text, indent);
    file->write(text);
    if (!hasFailed)
        return;
    writeFailure(testCase, indent);
    text.clear();
    dumpElementToStream(element, CloseTag, &text, indent);
    file->write(text);
}

void JUnitReportGenerator::Private::writeFailure(const JUnitTestCase &testCase, int indent)
{
    XmlElement element(testCase.isError() ? QLatin1String("error") : QLatin1String("failure"));
    element.addAttribute(QLatin1String("message"), testCase.failureMessage())
        .addAttribute(QLatin1String("type"),
                      testCase.isError() ? QStringLiteral("ERROR") : QStringLiteral("FAILURE"));
    QByteArray text(indent, ' ');
    element.appendOpenTag(text);
    file->write(text + "<![CDATA[");
    for (const std::size_t place : testCase.entries)
        file->write(suite.log[place]);
    text = "]]>";
    element.appendCloseTag(text);
    file->write(text + '\n');
}

void JUnitReportGenerator::Private::writeJUnitSystemOut()
{
    file->write("    <system-out><![CDATA[");
    for (const QByteArray &entry : suite.log)
        file->write(entry);
    file->write("]]></system-out>\n");
}

} // namespace Morvex
