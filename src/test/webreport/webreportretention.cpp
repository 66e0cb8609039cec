#include "test/webreport/webreportretention.h"

#include "shared/files/filelock.h"
#include "shared/files/regularfile.h"
#include "shared/files/writefile.h"
#include "shared/realpath.h"
#include "test/reportgeneratorshared.h"
#include "test/webreport/webreportdata.h"
#include "test/webreport/webreportrepair.h"
#include "test/webreport/webreportruns.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>

#include <memory>

namespace Morvex {
namespace {

// Names of files that may be left over, each ended by a zero byte.
const QLatin1String listName(".removed-files");

// What a report has of its own.
bool isPage(const QString &path)
{
    static const QSet<QString> pages{QStringLiteral("index.html"), QStringLiteral("data"),
                                     QStringLiteral("image"), QStringLiteral("script"),
                                     QStringLiteral("style")};
    return pages.contains(path.section(QLatin1Char('/'), 0, 0));
}

// The data file in memory, as long as this object lives.
class DataFile
{
public:
    explicit DataFile(const QString &path)
        : m_file(path)
    {
        if (openRegularFile(&m_file).isEmpty() && m_file.size() > 0)
            m_data = reinterpret_cast<const char *>(m_file.map(0, m_file.size()));
    }

    bool isRead() const { return m_data || (m_file.isOpen() && m_file.size() == 0); }
    QString error() const
    {
        return QStringLiteral("Could not read '%1': %2")
            .arg(m_file.fileName(), m_file.errorString());
    }
    const char *data() const { return m_data; }
    qint64 size() const { return m_data ? m_file.size() : 0; }

private:
    QFile m_file;
    const char *m_data = nullptr;
};

class Retention
{
public:
    explicit Retention(const QDir &report)
        : m_report(report)
        , m_dataFile(QDir(report.filePath(webReportDataDir)).filePath(webReportDataFile))
        , m_list(QDir(report.filePath(webReportDataDir)).filePath(listName))
    {
    }

    WebReportRetention keep(unsigned int keptRuns, const QString &suiteUri)
    {
        WebReportRetention result;
        result.error = removeLeftOver();
        if (result.error.isEmpty())
            result.error = removeRuns(keptRuns, suiteUri, &result.removedRuns);
        if (result.error.isEmpty() && result.removedRuns > 0)
            result.error = removeLeftOver();
        return result;
    }

private:
    QString removeRuns(unsigned int keptRuns, const QString &suiteUri, int *removedRuns)
    {
        const DataFile file(m_dataFile);
        if (!file.isRead())
            return file.error();
        std::vector<WebReportEdit> edits;
        QByteArray list = m_left;
        QHash<QString, unsigned int> later;
        const std::vector<WebReportRun> runs = webReportRuns(file.data(), file.size());
        for (auto run = runs.rbegin(); run != runs.rend(); ++run) {
            const bool isKept = !suiteUri.isEmpty() && run->uri != suiteUri;
            if (isKept || ++later[run->suite()] <= keptRuns)
                continue;
            edits.insert(edits.begin(), {run->begin, run->end, QByteArray(), 0, true});
            for (const QString &path : reportFilesOf(run->document))
                list += QFile::encodeName(path) + '\0';
        }
        if (edits.empty())
            return {};
        // Whoever finds the list asks the data file which of the files it may remove.
        const QString error = writeList(list);
        if (!error.isEmpty())
            return error;
        *removedRuns = int(edits.size());
        return replaceWebReportData(m_dataFile, file.data(), file.size(), edits);
    }

    QString writeList(const QByteArray &list) const
    {
        const FileWriteResult written = writeFileSafely(m_list, list);
        return written.outcome == FileWriteResult::Written
                   ? QString()
                   : QStringLiteral("Could not write '%1': %2").arg(m_list, written.error);
    }

    // Removes the files of the list that no run names. Those that can't be removed stay on it.
    QString removeLeftOver()
    {
        QFile list(m_list);
        if (!openRegularFile(&list).isEmpty())
            return {};
        const DataFile file(m_dataFile);
        if (!file.isRead())
            return file.error();
        QSet<QString> named;
        for (const WebReportRun &run : webReportRuns(file.data(), file.size()))
            named += reportFilesOf(run.document);
        m_left.clear();
        for (const QByteArray &name : list.readAll().split('\0')) {
            const QString path = QFile::decodeName(name);
            if (!path.isEmpty() && !named.contains(path) && !removeFile(path))
                m_left += name + '\0';
        }
        if (!m_left.isEmpty())
            return writeList(m_left);
        return QFile::remove(m_list) ? QString()
                                     : QStringLiteral("Could not remove '%1'").arg(m_list);
    }

    // Only files that are in the report, whatever a run says. False when that fails.
    bool removeFile(const QString &path)
    {
        const QString clean = QDir::cleanPath(path);
        const QFileInfo info(m_report.filePath(clean));
        const QString root = m_report.canonicalPath() + QLatin1Char('/');
        const QString directory = info.dir().canonicalPath() + QLatin1Char('/');
        const QString relative = directory.mid(root.size()) + info.fileName();
        const bool isFile = info.isSymLink() || info.isFile();
        if (!isFile || !directory.startsWith(root) || isPage(relative) || isPage(clean))
            return true;
        if (!QFile::remove(info.filePath()))
            return false;
        // Directories that are empty now go too.
        if (relative.contains(QLatin1Char('/')))
            m_report.rmpath(QFileInfo(relative).path());
        return true;
    }

    const QDir m_report;
    const QString m_dataFile;
    const QString m_list;
    // As in the list: what could not be removed.
    QByteArray m_left;
};

} // namespace

WebReportRetention removeOldRuns(const QString &directory, unsigned int keptRuns,
                                 const QString &suiteDirectory)
{
    const QString suiteUri = QString::fromStdString(relativeURI(suiteDirectory, {}, {}));
    const QString path = cleanedPath(directory);
    std::unique_ptr<FileLock> lock;
    const WebReportRepair repair = lockAndRepairWebReport(path, &lock);
    if (!repair.error.isEmpty())
        return {repair.error, 0};
    if (!lock || !lock->isHeld())
        return {QStringLiteral("'%1' could not be locked").arg(path), 0};
    return Retention(QDir(path)).keep(keptRuns, suiteUri);
}

} // namespace Morvex
