#include "test/htmlreportgenerator.h"

#include "shared/environment.h"
#include "shared/filelock.h"
#include "shared/temporarydir.h"
#include "shared/trace.h"
#include "test/report/openreport.h"
#include "test/webreport/webreportdata.h"
#include "test/webreport/webreportrepair.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

#include <cstdio>

namespace Morvex {
namespace {

// The pages are copied in a moment.
const int lockWaitMilliseconds = 3000;

QString templateDirectory()
{
    const std::string prefix = Environment::getVariable("MORVEX_PREFIX");
    return QString::fromStdString(prefix) + QLatin1String("/lib/webreport");
}

// An empty data file is a report without runs. Returns an error text, empty on success.
QString fillReport(const QString &directory)
{
    QString error;
    if (!copyDirectory(templateDirectory(), directory, &error, KeepExistingFile))
        return QStringLiteral("Error while copying web report templates: ") + error;
    const QDir dataDir(QDir(directory).filePath(webReportDataDir));
    QFile file(dataDir.filePath(webReportDataFile));
    if (!dataDir.mkpath(QStringLiteral(".")) || !file.open(QIODevice::Append))
        return QStringLiteral("Could not open '%1' for writing").arg(file.fileName());
    return {};
}

// Whether a directory is one that a run has made for its pages, and not a person.
bool isUnfinished(const QString &name, const QString &prefix)
{
    static const QRegularExpression number(QStringLiteral("\\A[0-9a-f]{1,8}\\z"));
    return name.startsWith(prefix) && number.match(name.mid(prefix.size())).hasMatch();
}

// What runs have left that were killed while they made the report.
void removeUnfinished(const QDir &parent, const QString &prefix)
{
    const QStringList names = parent.entryList(QDir::Dirs | QDir::Hidden | QDir::NoSymLinks);
    for (const QString &name : names) {
        if (isUnfinished(name, prefix))
            removeDirRecursively(parent.filePath(name));
    }
}

// The directory appears as a whole or not at all: one that lacks its data file would be refused in
// each later run. Returns an error text, empty on success.
QString makeReport(const QDir &dir)
{
    const QFileInfo info(dir.path());
    const QString prefix = QLatin1Char('.') + info.fileName() + QLatin1String(".new-");
    const QString error = QStringLiteral("Could not create directory '%1'").arg(dir.path());
    if (!info.dir().mkpath(QStringLiteral(".")))
        return error;
    // One run after the other: what is unfinished now stays so.
    const FileLock lock(info.dir().path(), lockWaitMilliseconds);
    if (dir.exists())
        return {};
    if (lock.isHeld())
        removeUnfinished(info.dir(), prefix);
    TemporaryDir unfinished(info.dir().filePath(prefix));
    if (!unfinished.isValid())
        return error;
    const QString fillError = fillReport(unfinished.path());
    if (!fillError.isEmpty())
        return fillError;
    if (std::rename(QFile::encodeName(unfinished.path()).constData(),
                    QFile::encodeName(dir.path()).constData()) == 0)
        unfinished.setAutoRemove(false);
    else if (!dir.exists())
        return error;
    return {};
}

// What can't be repaired takes a run all the same.
void reportRepair(const WebReportRepair &repair)
{
    if (repair.isRepaired)
        qCDebug(traceReportGen) << repair.message;
    if (!repair.error.isEmpty())
        std::fprintf(stderr, "morvexrunner: %s\n", qUtf8Printable(repair.error));
}

} // namespace

struct HtmlReportGenerator::Private
{
    bool isBegun = false;
};

HtmlReportGenerator::HtmlReportGenerator(std::unique_ptr<std::ostream> output,
                                         const QString &resultDir, TestType type)
    : JsonReportGenerator(std::move(output), resultDir, type, Version1_2)
    , d(std::make_unique<Private>())
{
}

HtmlReportGenerator::~HtmlReportGenerator()
{
    generateSummary();
    if (d->isBegun)
        stream() << webReportRunEnd;
}

TestReportGenerator::Result HtmlReportGenerator::create(const QString &path, TestType type,
                                                        QString *resultDir)
{
    const QString error = resultDirectoryError(QLatin1String("html"), path, *resultDir);
    if (!error.isEmpty())
        return {nullptr, error};
    const QDir dir(QDir::cleanPath(QDir::current().absoluteFilePath(path)));
    const QString dataDir = dir.filePath(webReportDataDir);
    const QString dataFile = QDir(dataDir).filePath(webReportDataFile);
    qCDebug(traceReportGen) << "data dir " << dataDir;
    qCDebug(traceReportGen) << "data file " << dataFile;
    const QString makeError = dir.exists() ? QString() : makeReport(dir);
    if (!makeError.isEmpty())
        return {nullptr, makeError};
    if (!QFileInfo::exists(dataFile))
        return {nullptr, QStringLiteral("Directory '%1' exists but does not contain result file")
                             .arg(dir.absolutePath())};
    std::unique_ptr<FileLock> lock;
    const WebReportRepair repair = lockAndRepairWebReport(dir.path(), &lock);
    if (repair.isInUse)
        return {nullptr,
                QStringLiteral("%1; wait for its end or give another directory").arg(repair.error)};
    *resultDir = dir.path();
    StreamResult opened =
        openStream(dataFile, TargetContent::Kept, ReportStream::Unbuffered, std::move(lock));
    if (!opened.error.isEmpty())
        return {nullptr, opened.error};
    reportRepair(repair);
    return {new HtmlReportGenerator(std::move(opened.stream), *resultDir, type), QString()};
}

void HtmlReportGenerator::init()
{
    stream().seekp(0, std::ios::end);
    const auto position = static_cast<qint64>(stream().tellp());
    qCDebug(traceReportGen) << "reportPos" << position;
    // In one piece: a header alone would hide that a run was lost.
    stream() << (position == 0 ? std::string(webReportHeader) : std::string()) + webReportRunBegin;
    d->isBegun = true;
    JsonReportGenerator::init();
}

} // namespace Morvex
