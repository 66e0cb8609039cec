#include "test/webreport/webreportmerge.h"

#include "shared/files/regularfile.h"
#include "shared/realpath.h"
#include "test/webreport/webreportdata.h"
#include "test/webreport/webreportdirectory.h"
#include "test/webreport/webreportrepair.h"
#include "test/webreport/webreportruns.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QSet>
#include <QUrl>

#include <algorithm>

namespace Morvex {
namespace {

struct MergedRun
{
    QByteArray document;
    QString type;
    QString name;
    QDateTime start;
};

// A report whose runs are taken, and where its files go.
class Source
{
public:
    // Names of directories in the target that other sources have are in @p taken.
    Source(const QString &directory, int number, QSet<QString> *taken)
        : m_report(directory)
        , m_taken(taken)
        , m_suffix(QLatin1Char('-') + QString::number(number))
    {
    }

    // Returns an error text, empty on success.
    [[nodiscard]] QString read(std::vector<MergedRun> *runs, const QDir &target,
                               QStringList *warnings)
    {
        const QString fileName =
            QDir(m_report.filePath(webReportDataDir)).filePath(webReportDataFile);
        QFile file(fileName);
        const QString error = openRegularFile(&file);
        if (!error.isEmpty())
            return QStringLiteral("Could not open '%1': %2").arg(fileName, error);
        QByteArray data = file.readAll();
        if (data.size() != file.size())
            return QStringLiteral("Could not read '%1': %2").arg(fileName, file.errorString());
        const WebReportEdits edits = webReportEdits(data.constData(), data.size());
        if (!edits.error.isEmpty())
            return QStringLiteral("'%1' %2").arg(fileName, edits.error);
        if (!edits.edits.empty())
            data = applyWebReportEdits(data.constData(), data.size(), edits.edits);
        for (const WebReportRun &run : webReportRuns(data.constData(), data.size())) {
            const QByteArray document = replaceReportFiles(
                run.document, [&](const QString &path) { return moved(path, target, warnings); });
            // A run that was lost before it started stays after the one before it.
            const bool isLost = run.start.isEmpty() && !runs->empty();
            const QDateTime start =
                isLost ? runs->back().start : QDateTime::fromString(run.start, Qt::ISODate);
            runs->push_back(
                {QByteArray(document.constData(), document.size()), run.type, run.name, start});
        }
        return m_error;
    }

private:
    // The location of a file in the target, which has it then if the report does. A missing one
    // gets a location too: at its old one there may be a file of another report.
    QByteArray moved(const QString &path, const QDir &target, QStringList *warnings)
    {
        const QString clean = QDir::cleanPath(path);
        const QFileInfo file(m_report.filePath(clean));
        if (isOutside(clean, file)) {
            *warnings += QStringLiteral("'%1' is outside of the report '%2', kept as a link")
                             .arg(file.absoluteFilePath(), m_report.path());
            return QUrl::fromLocalFile(cleanedPath(file.filePath())).toEncoded(QUrl::FullyEncoded);
        }
        const QString directory = directoryFor(QFileInfo(clean).path(), target);
        copyWithFilesBeside(clean, directory, target);
        return reportLocation(QDir::cleanPath(directory + QLatin1Char('/') + file.fileName()));
    }

    bool isOutside(const QString &clean, const QFileInfo &file) const
    {
        const QString root = m_report.canonicalPath() + QLatin1Char('/');
        return clean == QLatin1String("..") || clean.startsWith(QLatin1String("../")) ||
               QDir::isAbsolutePath(clean) ||
               (file.exists() && !file.canonicalFilePath().startsWith(root));
    }

    // Another report may have files of the same names there. Pictures that belong together stay in
    // one directory.
    QString directoryFor(const QString &directory, const QDir &target)
    {
        auto known = m_directories.find(directory);
        if (known != m_directories.end())
            return *known;
        QString name = directory;
        const auto isTaken = [&] {
            const bool isRoot = name == QLatin1String(".");
            return isRoot || m_taken->contains(name) ||
                   !QDir(target.filePath(name)).entryList(QDir::Files).isEmpty() ||
                   QFileInfo(target.filePath(name)).isFile();
        };
        while (isTaken())
            name = name == QLatin1String(".") ? QStringLiteral("files") : name + m_suffix;
        *m_taken += name;
        return *m_directories.insert(directory, name);
    }

    void copyWithFilesBeside(const QString &path, const QString &directory, const QDir &target)
    {
        if (m_copied.contains(path))
            return;
        m_copied += path;
        target.mkpath(directory);
        for (const QString &one : withFilesBeside(path)) {
            const QString source = m_report.filePath(one);
            const QString copy =
                target.filePath(directory + QLatin1Char('/') + QFileInfo(one).fileName());
            QFile file(source);
            if (QFileInfo(source).isFile() && !QFileInfo::exists(copy) && !file.copy(copy) &&
                m_error.isEmpty())
                m_error = QStringLiteral("Could not copy '%1' to '%2': %3")
                              .arg(source, copy, file.errorString());
        }
    }

    const QDir m_report;
    QSet<QString> *const m_taken;
    const QString m_suffix;
    QHash<QString, QString> m_directories;
    QSet<QString> m_copied;
    QString m_error;
};

// The later end of two, as it is in a document; empty when one is.
QString laterStop(const QString &one, const QString &other)
{
    if (one.isEmpty() || other.isEmpty())
        return {};
    const bool isLater =
        QDateTime::fromString(one, Qt::ISODate) < QDateTime::fromString(other, Qt::ISODate);
    return isLater ? other : one;
}

// Adds the children of the other run. False when one of them can't be taken apart.
bool join(MergedRun *run, const MergedRun &other)
{
    const WebReportRunParts parts = splitWebReportRun(run->document);
    const WebReportRunParts added = splitWebReportRun(other.document);
    if (parts.head.isEmpty() || added.head.isEmpty())
        return false;
    const bool needsSeparator = !parts.children.isEmpty() && !added.children.isEmpty();
    const QString stop = laterStop(parts.stop, added.stop);
    run->document =
        parts.head + parts.children + (needsSeparator ? "," : "") + added.children +
        (stop.isEmpty() ? "]}],\"ended\":false}" : "],\"stop\":\"" + stop.toLatin1() + "\"}]}");
    return true;
}

std::vector<MergedRun> joined(const std::vector<MergedRun> &runs)
{
    std::vector<MergedRun> result;
    for (const MergedRun &run : runs) {
        const auto same = std::find_if(result.begin(), result.end(), [&](const MergedRun &one) {
            return run.start.isValid() && one.start == run.start && one.name == run.name &&
                   one.type == run.type;
        });
        if (same == result.end() || !join(&*same, run))
            result.push_back(run);
    }
    return result;
}

QString writeRuns(const QDir &report, const std::vector<MergedRun> &runs)
{
    QFile file(QDir(report.filePath(webReportDataDir)).filePath(webReportDataFile));
    const auto write = [&](const QByteArray &bytes) { return file.write(bytes) == bytes.size(); };
    bool isWritten = file.open(QIODevice::WriteOnly) && write(webReportHeader);
    for (const MergedRun &run : runs)
        isWritten =
            isWritten && write(webReportRunBegin) && write(run.document) && write(webReportRunEnd);
    return isWritten && file.flush() ? QString()
                                     : QStringLiteral("Could not write '%1': %2")
                                           .arg(file.fileName(), file.errorString());
}

QString fill(const QString &target, const QStringList &reports, bool joinRuns,
             WebReportMerge *merge)
{
    std::vector<MergedRun> runs;
    QSet<QString> taken;
    int number = 0;
    for (const QString &report : reports) {
        const QString error =
            Source(report, ++number, &taken).read(&runs, QDir(target), &merge->warnings);
        if (!error.isEmpty())
            return error;
    }
    std::stable_sort(runs.begin(), runs.end(), [](const MergedRun &one, const MergedRun &other) {
        return one.start < other.start;
    });
    if (joinRuns)
        runs = joined(runs);
    merge->warnings.removeDuplicates();
    merge->runs = int(runs.size());
    return writeRuns(QDir(target), runs);
}

// The report that a directory, which need not exist, is in; empty without one.
QString reportAround(const QFileInfo &directory, const QSet<QString> &reports)
{
    QString path = directory.path();
    while (!QFileInfo::exists(path) && path != QFileInfo(path).path())
        path = QFileInfo(path).path();
    for (path = QFileInfo(path).canonicalFilePath(); !reports.contains(path);
         path = QFileInfo(path).path()) {
        if (path == QFileInfo(path).path())
            return {};
    }
    return path;
}

} // namespace

WebReportMerge mergeWebReports(const QString &target, const QStringList &reports, bool joinRuns)
{
    WebReportMerge merge;
    const QFileInfo directory(cleanedPath(target));
    QSet<QString> known;
    for (const QString &report : reports) {
        const QString path = QFileInfo(report).canonicalFilePath();
        if (!path.isEmpty() && known.contains(path))
            merge.error = QStringLiteral("'%1' is named twice").arg(report);
        known += path;
    }
    const QString around = reportAround(directory, known);
    if (!around.isEmpty())
        merge.error =
            QStringLiteral("'%1' is in the report '%2', which stays as it is").arg(target, around);
    else if (directory.exists() && known.contains(directory.canonicalFilePath()))
        merge.error = QStringLiteral("'%1' is one of the reports to merge").arg(target);
    else if (directory.exists() || directory.isSymLink())
        merge.error = QStringLiteral("'%1' already exists; give a directory that does not exist "
                                     "yet")
                          .arg(target);
    if (!merge.error.isEmpty())
        return merge;
    merge.error = makeWebReport(directory.filePath(), [&](const QString &path) {
        return fill(path, reports, joinRuns, &merge);
    });
    return merge;
}

} // namespace Morvex
