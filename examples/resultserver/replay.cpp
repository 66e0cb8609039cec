#include "replay.h"

#include "message.h"
#include "receivedrun.h"
#include "test/htmlreportgenerator.h"
#include "test/openreportfile.h"
#include "test/reportgeneratorshared.h"

#include <QDateTime>
#include <QUrl>
#include <QXmlStreamReader>

namespace {

using namespace Morvex;
using Entry = TestResult::Entry;

// Stands for the suite of a run of a single test case, which doesn't say where it is.
const QLatin1String unknownSuite("/suite");

TestReportGenerator::TestType testTypeOf(const EntryMessage &start)
{
    return start.script.uri.startsWith(QLatin1String("x-testsuite:"))
               ? TestReportGenerator::TEST_CASE
               : TestReportGenerator::TEST_SUITE;
}

TableDiff::Cell readCell(QXmlStreamReader &xml, int row, int column)
{
    TableDiff::Cell cell;
    cell.row = row;
    cell.column = column;
    while (xml.readNextStartElement()) {
        const QString name = xml.attributes().value(QLatin1String("name")).toString();
        cell.properties.insert(name, xml.readElementText(QXmlStreamReader::SkipChildElements));
    }
    return cell;
}

TableDiff::Subject readSubject(QXmlStreamReader &xml)
{
    TableDiff::Subject subject;
    const bool isCell = xml.name() == QLatin1String("cell");
    const int row = xml.attributes().value(QLatin1String("line")).toInt();
    const int column = xml.attributes().value(QLatin1String("column")).toInt();
    if (isCell) {
        subject.cells.append(readCell(xml, 0, 0));
        return subject;
    }
    subject.type =
        xml.name() == QLatin1String("row") ? TableDiff::Subject::ROW : TableDiff::Subject::COLUMN;
    while (xml.readNextStartElement())
        subject.cells.append(readCell(xml, row, column));
    return subject;
}

FList<TableDiff::Element> readTableDiff(const QString &path)
{
    FList<TableDiff::Element> diff;
    QFile file(path);
    file.open(QIODevice::ReadOnly);
    QXmlStreamReader xml(&file);
    if (!xml.readNextStartElement())
        return diff;
    while (xml.readNextStartElement()) {
        TableDiff::Element element;
        if (xml.name() == QLatin1String("insertion"))
            element.kind = TableDiff::Element::INSERTION;
        else if (xml.name() == QLatin1String("deletion"))
            element.kind = TableDiff::Element::DELETION;
        while (xml.readNextStartElement()) {
            element.subject = readSubject(xml);
            diff.append(element);
        }
    }
    return diff;
}

TestResult::VPType vpTypeOf(const QString &kind)
{
    const QStringList kinds{
        QStringLiteral("scriptedVerificationResult"), QStringLiteral("propertyVerificationResult"),
        QStringLiteral("tableVerificationResult"), QStringLiteral("screenshotVerificationResult"),
        QStringLiteral("visualVerificationResult")};
    return static_cast<TestResult::VPType>(qMax(0, kinds.indexOf(kind)));
}

TestResult::AttachmentType attachmentTypeOf(const QString &kind)
{
    for (const auto type : {TestResult::UICOVERAGE_ATTACHMENT, TestResult::SCREENSHOT_ATTACHMENT}) {
        if (kind == attachmentTypeToString(type))
            return type;
    }
    return TestResult::FILE_ATTACHMENT;
}

// Between all characters there is an empty name.
void replaceName(const QString &name, const QString &stored, QString *text)
{
    if (!name.isEmpty())
        text->replace(name, stored);
}

// Puts entries back together: from their message, and from the files that follow it.
class Replay
{
public:
    Replay(TestResult *result, const QDir &report, const QString &attachments)
        : m_result(result)
        , m_report(report)
        , m_attachments(attachments)
    {
    }

    void add(const ReceivedRun::Record &record);
    void finish();

private:
    QString localPath(const QString &uri) const;
    LineInfo lineOf(const Place &place) const;
    QString fileOf(const QString &name) const;
    Entry toEntry(const EntryMessage &message);
    void addFiles(const EntryMessage &message, Entry &entry) const;

    TestResult *m_result;
    QDir m_report;
    QDir m_attachments;
    QString m_suite;
    QString m_testCase;
    std::optional<EntryMessage> m_pending;
    // The files by their names: those of the pending entry, and all videos.
    QHash<QString, QString> m_files;
    QHash<QString, QString> m_videos;
};

void Replay::add(const ReceivedRun::Record &record)
{
    if (record.kind != ReceivedRun::EntryRecord) {
        auto &files = record.kind == ReceivedRun::VideoRecord ? m_videos : m_files;
        files.insert(QString::fromUtf8(record.content), m_attachments.filePath(record.storedName));
        return;
    }
    finish();
    MessageReader reader(record.content);
    reader.number();
    reader.number();
    m_pending = readEntry(reader);
}

void Replay::finish()
{
    if (m_pending)
        m_result->processEntry(toEntry(*m_pending));
    m_pending.reset();
    m_files.clear();
}

QString Replay::localPath(const QString &uri) const
{
    const QUrl url(uri);
    const QString path = url.path(QUrl::FullyDecoded);
    if (url.scheme() == QLatin1String("x-testsuite"))
        return m_suite + path;
    if (url.scheme() == QLatin1String("x-testcase"))
        return m_testCase + path;
    return path;
}

LineInfo Replay::lineOf(const Place &place) const
{
    return place.uri.isEmpty() ? LineInfo() : LineInfo(localPath(place.uri), place.line);
}

// A file that did not come has the name that the runner gave it.
QString Replay::fileOf(const QString &name) const
{
    const QString stored = m_files.value(name, m_videos.value(name));
    return stored.isEmpty() ? m_report.filePath(QUrl(name).path(QUrl::FullyDecoded).mid(1))
                            : stored;
}

Entry Replay::toEntry(const EntryMessage &message)
{
    if (message.type == TestResult::START) {
        const bool isSuite = testTypeOf(message) == TestReportGenerator::TEST_SUITE;
        m_suite = isSuite ? localPath(message.script.uri) : QString(unknownSuite);
        m_testCase = isSuite ? QString() : localPath(message.script.uri);
    }
    Entry entry;
    entry.time = QDateTime::fromMSecsSinceEpoch(message.time);
    entry.type = message.type;
    entry.name = message.name;
    entry.summary = message.summary;
    entry.message = message.message;
    entry.details = message.details;
    entry.info = message.info;
    entry.retry = message.retry;
    entry.vpType = vpTypeOf(message.kind);
    const bool isScripted = entry.vpType == TestResult::NO_VP && !message.location.uri.isEmpty();
    entry.line = lineOf(isScripted ? message.location : message.script);
    for (const Place &frame : message.stack)
        entry.stack.push_back(lineOf(frame));
    if (entry.stack.empty() && entry.line.isValid())
        entry.stack.push_back(entry.line);
    // The generator would compare the visual verification point with the stored snapshot, but its
    // file is the client's: here the path may name anything.
    if (entry.vpType != TestResult::NO_VP && entry.vpType != TestResult::VISUAL_VP)
        entry.vpFile = QFileInfo(localPath(message.location.uri));
    addFiles(message, entry);
    return entry;
}

void Replay::addFiles(const EntryMessage &message, Entry &entry) const
{
    if (entry.type >= TestResult::ATTACHMENT) {
        entry.attachmentType = attachmentTypeOf(message.kind);
        entry.attachmentUri = fileOf(message.resource);
    } else if (entry.vpType == TestResult::TABLE_VP) {
        entry.tableDiff = readTableDiff(m_files.value(message.resource));
    } else if (m_files.contains(message.resource)) {
        replaceName(vpFailedImgFromMsg(entry.details), m_files.value(message.resource),
                    &entry.details);
    }
    if (m_files.contains(message.screenshot)) {
        const QString taken = extractScreenshotFromMsgAndDetail(entry.message, entry.details);
        replaceName(taken, m_files.value(message.screenshot), &entry.message);
        replaceName(taken, m_files.value(message.screenshot), &entry.details);
    }
}

std::optional<EntryMessage> firstEntryOf(const QString &runDirectory, QString *reportName)
{
    std::optional<EntryMessage> first;
    ReceivedRun::read(runDirectory, reportName, [&first](const ReceivedRun::Record &record) {
        MessageReader reader(record.content);
        reader.number();
        reader.number();
        if (record.kind == ReceivedRun::EntryRecord)
            first = readEntry(reader);
        return record.kind != ReceivedRun::EntryRecord;
    });
    return first;
}

// Returns an error text, empty on success. An earlier attempt may have moved them already.
[[nodiscard]] QString moveFiles(const QString &from, const QDir &report, const QString &to)
{
    report.mkpath(QStringLiteral("attachments"));
    if (QFileInfo::exists(from) && !QDir().rename(from, report.filePath(to)))
        return QStringLiteral("cannot move the files of the run to '%1'").arg(report.filePath(to));
    // Without files the directory is empty, and goes.
    report.rmdir(to);
    report.rmdir(QStringLiteral("attachments"));
    return {};
}

} // namespace

QString reportPage(const QDir &data, const QString &reportName)
{
    return data.filePath(reportName + QLatin1String("/index.html"));
}

QString addToReport(const QDir &data, const QString &runDirectory)
{
    QString reportName;
    const std::optional<EntryMessage> first = firstEntryOf(runDirectory, &reportName);
    // A run that never began has nothing to show.
    if (!first) {
        QDir(runDirectory).removeRecursively();
        return {};
    }
    const QDir report(data.filePath(reportName));
    if (!QDir().mkpath(QFileInfo(report.path()).path()))
        return QStringLiteral("cannot create the directory of '%1'").arg(report.path());
    QString resultDir;
    const auto created = HtmlReportGenerator::create(report.path(), testTypeOf(*first), &resultDir);
    if (!created.error.isEmpty())
        return created.error;
    const int incompleteBefore = incompleteReports();
    {
        TestResult result(created.generator);
        const QString attachments =
            QLatin1String("attachments/") + QFileInfo(runDirectory).fileName();
        const QString error =
            moveFiles(runDirectory + QLatin1String("/files"), report, attachments);
        if (!error.isEmpty())
            return error;
        Replay replay(&result, report, report.filePath(attachments));
        ReceivedRun::read(runDirectory, &reportName, [&replay](const ReceivedRun::Record &record) {
            replay.add(record);
            return true;
        });
        replay.finish();
    }
    // What is in the report now is a run without its end.
    if (incompleteReports() != incompleteBefore)
        return QStringLiteral("cannot write the whole report '%1'").arg(report.path());
    QDir(runDirectory).removeRecursively();
    return {};
}
