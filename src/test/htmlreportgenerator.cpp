#include "test/htmlreportgenerator.h"

#include "shared/filelock.h"
#include "shared/trace.h"
#include "test/output/reportstream.h"
#include "test/webreport/webreportdata.h"
#include "test/webreport/webreportdirectory.h"
#include "test/webreport/webreportrepair.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cstdio>

namespace Morvex {
namespace {

// What can't be repaired takes a run all the same.
void reportRepair(const WebReportRepair &repair)
{
    if (repair.isRepaired)
        qCDebug(traceReportGen) << repair.message;
    if (!repair.error.isEmpty())
        std::fprintf(stderr, "morvexrunner: %s\n", qUtf8Printable(repair.error));
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
    const QDir dir(QDir::cleanPath(QDir::current().absoluteFilePath(path)));
    const QString dataDir = dir.filePath(webReportDataDir);
    const QString dataFile = QDir(dataDir).filePath(webReportDataFile);
    qCDebug(traceReportGen) << "data dir " << dataDir;
    qCDebug(traceReportGen) << "data file " << dataFile;
    if (!dir.exists()) {
        const QString error = makeWebReport(dir.path());
        if (!error.isEmpty())
            return {nullptr, error};
    }
    if (!QFileInfo::exists(dataFile))
        return {nullptr, QStringLiteral("Directory '%1' exists but does not contain result file")
                             .arg(dir.absolutePath())};
    std::unique_ptr<FileLock> lock;
    const WebReportRepair repair = lockAndRepairWebReport(dir.path(), &lock);
    if (repair.isInUse)
        return {nullptr,
                QStringLiteral("%1; wait for its end or give another directory").arg(repair.error)};
    *resultDir = dir.path();
    auto stream = std::make_unique<ReportStream>(dataFile, std::ios::app, ReportStream::Unbuffered);
    if (!stream->isOpen())
        return {nullptr, QStringLiteral("Could not open '%1' for writing").arg(dataFile)};
    reportRepair(repair);
    return {new HtmlReportGenerator(std::move(stream), std::move(lock), *resultDir, type),
            QString()};
}

void HtmlReportGenerator::init()
{
    stream().seekp(0, std::ios::end);
    const auto position = static_cast<qint64>(stream().tellp());
    qCDebug(traceReportGen) << "reportPos" << position;
    // In one piece: a header alone would hide that a run was lost.
    stream() << (position == 0 ? std::string(webReportHeader) : std::string()) + webReportRunBegin;
    m_isBegun = true;
    JsonReportGenerator::init();
}

} // namespace Morvex
