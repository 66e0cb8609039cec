#include "test/htmlreportgenerator.h"

#include "shared/files/filelock.h"
#include "shared/realpath.h"
#include "shared/system/trace.h"
#include "test/report/openreport.h"
#include "test/reportgeneratorshared.h"
#include "test/webreport/picturedifference.h"
#include "test/webreport/visualtrees.h"
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

bool writeDifferences(const TestResult::Entry &entry, const QString &file)
{
    if (entry.vpType != TestResult::VISUAL_VP)
        return writePictureDifference(file);
    return writeVisualTrees(entry.vpFile.filePath(), vpObjectFromMsg(entry.message, false), file);
}

} // namespace

struct HtmlReportGenerator::Private
{
    QString resultDir;
    bool isBegun = false;
};

HtmlReportGenerator::HtmlReportGenerator(std::unique_ptr<std::ostream> output,
                                         const QString &resultDir, TestType type)
    : JsonReportGenerator(std::move(output), resultDir, type, Version1_2)
    , d(std::make_unique<Private>())
{
    d->resultDir = resultDir;
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
    const QDir dir(cleanedPath(path));
    const QString dataDir = dir.filePath(webReportDataDir);
    const QString dataFile = QDir(dataDir).filePath(webReportDataFile);
    qCDebug(traceReportGen) << "data dir " << dataDir;
    qCDebug(traceReportGen) << "data file " << dataFile;
    const QString makeError = dir.exists() ? QString() : makeWebReport(dir.path());
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

// The page shows what differs in a verification that failed from a script beside the stored file.
void HtmlReportGenerator::doHandleEntry(const TestResult::Entry &entry)
{
    const bool isStored =
        entry.vpType == TestResult::VISUAL_VP || entry.vpType == TestResult::SCREENSHOT_VP;
    if (isStored && (entry.type == TestResult::FAIL || entry.type == TestResult::XFAIL)) {
        const QFileInfo file(vpFailedImgFromMsg(entry.details));
        const QString reportDir = QDir(d->resultDir).canonicalPath() + QLatin1Char('/');
        if (file.isFile() && file.canonicalFilePath().startsWith(reportDir) &&
            !writeDifferences(entry, file.filePath()))
            std::fprintf(stderr, "morvexrunner: the differences of '%s' could not be stored\n",
                         qUtf8Printable(file.filePath()));
    }
    JsonReportGenerator::doHandleEntry(entry);
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
