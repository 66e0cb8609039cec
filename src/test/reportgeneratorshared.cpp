#include "test/reportgeneratorshared.h"

#include "shared/realpath.h"
#include "test/report/sectionkind.h"

#include <QDir>
#include <QFileInfo>
#include <QUrl>

#include <iostream>

namespace Morvex {
namespace {

std::string encoded(const QUrl &url)
{
    return url.toString(QUrl::FullyEncoded).toStdString();
}

std::string fileURI(const QString &path)
{
    // A relative path alone may not be a URL: its first part may hold a colon.
    if (QDir::isRelativePath(path))
        return QUrl::toPercentEncoding(path, "/:").toStdString();
    return encoded(QUrl::fromLocalFile(path));
}

// The part of text before the first quote at or after from; all of it without such a quote.
QString cutAtQuote(const QString &text, int from)
{
    const int quote = text.indexOf(QLatin1Char('\''), qMax(from, 0));
    return quote < 0 ? text : text.left(quote);
}

QString symbolicName(const QString &text, bool stripProperty)
{
    const bool hasBraces = text.startsWith(QLatin1String(":{"));
    const QString name = cutAtQuote(text, hasBraces ? text.lastIndexOf(QLatin1Char('}')) : 0);
    const int dot = stripProperty ? name.lastIndexOf(QLatin1Char('.')) : -1;
    return dot < 0 ? name : name.left(dot);
}

QString multiPropertyName(const QString &text, bool stripProperty)
{
    const int brace = text.lastIndexOf(QLatin1Char('}'));
    if (stripProperty && brace >= 0)
        return text.left(brace + 1);
    return cutAtQuote(text, brace);
}

struct SectionLabel
{
    QLatin1String info;
    QLatin1String label;
};

const SectionLabel sectionLabels[] = {
    {SectionKind::feature, QLatin1String("Feature")},
    {SectionKind::scenario, QLatin1String("Scenario")},
    {SectionKind::scenarioOutline, QLatin1String("Scenario Outline")},
    {SectionKind::row, QLatin1String("Example")},
    {SectionKind::step, QLatin1String("Step")},
    {SectionKind::userSection, QLatin1String("Section")},
};

QLatin1String sectionLabel(const QString &info)
{
    for (const SectionLabel &section : sectionLabels) {
        if (info == section.info)
            return section.label;
    }
    return {};
}

QLatin1String sectionVerb(TestResult::ResultType type)
{
    switch (type) {
    case TestResult::START_SECTION:
        return QLatin1String("Start");
    case TestResult::END_SECTION:
        return QLatin1String("End");
    case TestResult::SKIP_SECTION:
        return QLatin1String("Skip");
    default:
        return {};
    }
}

QDateTime withOffset(const QDateTime &time)
{
    return time.toOffsetFromUtc(time.offsetFromUtc());
}

} // namespace

void setTestSuiteAndTestCasePath(TestReportGenerator::TestType type, const TestResult::Entry &entry,
                                 QString *suitePath, QString *casePath)
{
    if (entry.type != TestResult::START)
        return;
    const QString path = entry.line.fileName();
    if (type == TestReportGenerator::TEST_SUITE) {
        *suitePath = realPath(path);
    } else {
        *casePath = realPath(path);
        *suitePath = realPath(path + QDir::separator() + QLatin1String(".."));
    }
}

std::string relativeURI(const QString &path, const QString &suiteDir, const QString &caseDir)
{
    if (path.isEmpty())
        return {};
    const QString resolved = realPath(path);
    const QFileInfo file(resolved);
    if (!caseDir.isEmpty() && isInDirectory(file, QDir(caseDir)))
        return relativeURIForProtocol(resolved, QDir(caseDir), QStringLiteral("x-testcase"));
    if (!suiteDir.isEmpty() && isInDirectory(file, QDir(suiteDir)))
        return relativeURIForProtocol(resolved, QDir(suiteDir), QStringLiteral("x-testsuite"));
    return fileURI(resolved);
}

std::string relativeURIForProtocol(const QString &path, const QDir &base, const QString &scheme)
{
    QUrl url;
    url.setScheme(scheme);
    url.setPath(QLatin1Char('/') + base.relativeFilePath(path));
    return encoded(url);
}

bool isInDirectory(const QFileInfo &file, const QDir &dir)
{
    const QString path = file.filePath();
    const QString dirPath = dir.path();
    if (path.startsWith(dirPath) && path.size() > dirPath.size())
        return true;
    QDir above(path);
    while (above.cdUp()) {
        if (above == dir)
            return true;
        if (above.isRoot())
            return false;
    }
    return false;
}

std::string vpURI(const TestResult::Entry &entry, const QString &suiteDir, const QString &caseDir)
{
    return relativeURI(entry.vpFile.filePath(), suiteDir, caseDir);
}

std::string failedImageURI(const QString &path, const QString &suiteDir, const QString &caseDir,
                           const QString &resultDir)
{
    if (resultDir.isEmpty())
        return relativeURI(path, suiteDir, caseDir);
    return relativeURIForProtocol(path, QDir(resultDir), QStringLiteral("x-results"));
}

std::string attachmentURI(const QString &path, const QString &suiteDir, const QString &caseDir,
                          const QString &resultDir)
{
    return failedImageURI(path, suiteDir, caseDir, resultDir);
}

std::string scriptFileURI(const QString &path, const QString &suiteDir, const QString &caseDir)
{
    return relativeURI(path, suiteDir, caseDir);
}

QString vpObjectFromMsg(const QString &msg, bool stripProperty)
{
    const int quote = msg.indexOf(QLatin1Char('\''));
    if (quote < 0)
        return {};
    const QString text = msg.mid(quote + 1);
    if (text.startsWith(QLatin1Char(':')))
        return symbolicName(text, stripProperty);
    if (text.startsWith(QLatin1Char('{')))
        return multiPropertyName(text, stripProperty);
    return cutAtQuote(text, 0);
}

QString vpPropertyFromMsg(const QString &msg)
{
    const QString object = vpObjectFromMsg(msg, false);
    const int dot = object.lastIndexOf(QLatin1Char('.'));
    return dot < 0 ? QString() : object.mid(dot + 1);
}

QString vpFailedImgFromMsg(const QString &msg)
{
    const int first = msg.indexOf(QLatin1Char('\''));
    const int second = first < 0 ? -1 : msg.indexOf(QLatin1Char('\''), first + 1);
    return second < 0 ? QString() : msg.mid(first + 1, second - first - 1);
}

QString extractScreenshotFromMsg(const QString &msg)
{
    // Most texts have no such quote, and a character is found sooner than a word.
    if (!msg.contains(QLatin1Char('"')))
        return {};
    const int start = msg.indexOf(QLatin1String("Screenshot in"));
    const int first = start < 0 ? -1 : msg.indexOf(QLatin1Char('"'), start);
    const int second = first < 0 ? -1 : msg.indexOf(QLatin1Char('"'), first + 1);
    return second < 0 ? QString() : msg.mid(first + 1, second - first - 1);
}

QString extractScreenshotFromMsgAndDetail(const QString &msg, const QString &details)
{
    const QString screenshot = extractScreenshotFromMsg(msg);
    return screenshot.isEmpty() ? extractScreenshotFromMsg(details) : screenshot;
}

void expectedAndActualValueFromMsg(const QString &msg, QString *second, QString *first)
{
    const int open = msg.indexOf(QLatin1Char('\''));
    const int close = msg.lastIndexOf(QLatin1Char('\''));
    if (open < 0 || close <= open)
        return;
    const QString values = msg.mid(open + 1, close - open - 1);
    const QLatin1String separator("' and '");
    const int middle = values.indexOf(separator);
    if (middle < 0)
        return;
    *first = values.left(middle);
    *second = values.mid(middle + separator.size());
}

QString formatAsISO8601(const QDateTime &time)
{
    return withOffset(time).toString(Qt::ISODate);
}

QString formatAsISO8601WithMs(const QDateTime &time)
{
    return withOffset(time).toString(Qt::ISODateWithMs);
}

QString attachmentTypeToString(TestResult::AttachmentType type)
{
    switch (type) {
    case TestResult::UICOVERAGE_ATTACHMENT:
        return QStringLiteral("uicoverage");
    case TestResult::FILE_ATTACHMENT:
        return QStringLiteral("file");
    case TestResult::SCREENSHOT_ATTACHMENT:
        return QStringLiteral("screenshot");
    case TestResult::NO_ATTACHMENT:
        break;
    }
    return {};
}

bool isSectionEvent(TestResult::ResultType type)
{
    return !sectionVerb(type).isEmpty();
}

TestResult::Entry convertSectionEventToLogEvent(const TestResult::Entry &entry)
{
    const QLatin1String verb = sectionVerb(entry.type);
    const QLatin1String label = verb.isEmpty() ? QLatin1String() : sectionLabel(entry.info);
    TestResult::Entry converted = entry;
    if (label.isEmpty())
        return converted;
    converted.type = TestResult::LOG;
    converted.message = verb + QLatin1Char(' ') + label;
    if (entry.info == SectionKind::userSection)
        converted.message += QLatin1String(": ") + entry.message;
    else
        converted.details = entry.message;
    return converted;
}

void dumpEntry(const TestResult::Entry &entry)
{
    std::cerr << entry;
}

std::ostream &operator<<(std::ostream &stream, const TestResult::Entry &entry)
{
    const auto line = [&stream](const char *label, const QString &value) {
        stream << label << value.toStdString() << '\n';
    };
    stream << "TestResult Entry:\n";
    line("  time          : ", entry.time.toString(Qt::ISODateWithMs));
    line("  type          : ", TestResult::resultToString(entry.type));
    line("  message       : ", entry.message);
    line("  details       : ", entry.details);
    line("  line          : ", entry.line.toString());
    line("  info          : ", entry.info);
    line("  vpCounter     : ", QString::number(entry.vpCounter));
    line("  name          : ", entry.name);
    line("  vpType        : ", QString::number(entry.vpType));
    line("  vpName        : ", entry.vpName);
    line("  summary       : ", entry.summary);
    line("  description   : ", entry.description);
    line("  attachmentType: ", attachmentTypeToString(entry.attachmentType));
    line("  attachmentUri : ", entry.attachmentUri);
    return stream;
}

} // namespace Morvex
