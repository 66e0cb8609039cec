#include "test/htmlreportgenerator.h"

#include "shared/environment.h"
#include "shared/filelock.h"
#include "shared/temporarydir.h"
#include "shared/trace.h"
#include "test/webreportdata.h"
#include "test/webreportrepair.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cstdio>
#include <fstream>

namespace Morvex {
namespace {

QString templateDirectory()
{
    const std::string prefix = Environment::getVariable("MORVEX_PREFIX");
    return QString::fromStdString(prefix) + QLatin1String("/lib/webreport");
}

QString makeReport(const QDir &dir)
{
    if (!dir.mkpath(QStringLiteral(".")))
        return QStringLiteral("Could not create directory '%1'").arg(dir.path());
    QString error;
    if (copyDirectory(templateDirectory(), dir.path(), &error, KeepExistingFile)) {
        dir.mkpath(webReportDataDir);
        return {};
    }
    // What is left would be refused as no web report in the next run.
    removeDirRecursively(dir.path());
    return QStringLiteral("Error while copying web report templates: ") + error;
}

// Returns an error text, empty on success.
QString repairReport(const QDir &dir)
{
    const WebReportRepair repair = repairWebReport(dir.path());
    if (repair.isRepaired)
        qCDebug(traceReportGen) << repair.message;
    return repair.error;
}

} // namespace

HtmlReportGenerator::HtmlReportGenerator(std::unique_ptr<std::ostream> output,
                                         std::unique_ptr<FileLock> lock, const QString &resultDir,
                                         TestType type)
    : JsonReportGenerator(std::move(output), resultDir, type, Version1_2)
    , m_lock(std::move(lock))
{
}

HtmlReportGenerator::~HtmlReportGenerator()
{
    generateSummary();
    if (m_isBegun)
        stream() << webReportRunEnd;
}

TestReportGenerator::Result HtmlReportGenerator::create(const QString &path, TestType type,
                                                        QString *resultDir)
{
    if (!resultDir->isEmpty())
        return {nullptr, QStringLiteral("Cannot create html report, another result directory is "
                                        "already set: %1")
                             .arg(*resultDir)};
    if (path.isEmpty())
        return {nullptr, QStringLiteral("Missing target directory")};
    const QDir dir(QDir::current().absoluteFilePath(path));
    const QString dataDir = dir.filePath(webReportDataDir);
    const QString dataFile = QDir(dataDir).filePath(webReportDataFile);
    qCDebug(traceReportGen) << "data dir " << dataDir;
    qCDebug(traceReportGen) << "data file " << dataFile;
    QString repairError;
    if (dir.exists()) {
        if (!QFileInfo::exists(dataFile))
            return {nullptr,
                    QStringLiteral("Directory '%1' exists but does not contain result file")
                        .arg(dir.absolutePath())};
        repairError = repairReport(dir);
    } else {
        const QString error = makeReport(dir);
        if (!error.isEmpty())
            return {nullptr, error};
    }
    *resultDir = dir.path();
    auto stream = std::make_unique<std::ofstream>();
    stream->rdbuf()->pubsetbuf(nullptr, 0);
    stream->open(QFile::encodeName(dataFile).constData(), std::ios::app);
    if (!stream->is_open())
        return {nullptr, QStringLiteral("Could not open '%1' for writing").arg(dataFile)};
    // What can't be repaired takes a run all the same.
    if (!repairError.isEmpty())
        std::fprintf(stderr, "morvexrunner: %s\n", qPrintable(repairError));
    auto lock = std::make_unique<FileLock>(dataFile);
    return {new HtmlReportGenerator(std::move(stream), std::move(lock), *resultDir, type),
            QString()};
}

void HtmlReportGenerator::init()
{
    stream().seekp(0, std::ios::end);
    const auto position = static_cast<qint64>(stream().tellp());
    qCDebug(traceReportGen) << "reportPos" << position;
    if (position == 0)
        stream() << webReportHeader;
    stream() << webReportRunBegin;
    m_isBegun = true;
    JsonReportGenerator::init();
}

} // namespace Morvex
