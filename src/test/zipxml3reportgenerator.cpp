#include "test/zipxml3reportgenerator.h"

#include "shared/system/trace.h"
#include "shared/temporarydir.h"
#include "shared/zipfile.h"
#include "test/openreportfile.h"
#include "test/output/reporttarget.h"
#include "test/xml3reportgenerator.h"

#include <QDir>
#include <QFile>

#include <cstdio>

namespace Morvex {
namespace {

[[nodiscard]] QString writeZip(const QString &sourceDir, QFile *target)
{
    ZipFile zip(target);
    const QDir source(sourceDir);
    // One that can't be listed now would make an empty zip file.
    const QString error = source.entryList(QDir::Files).isEmpty()
                              ? QStringLiteral("cannot read the directory '%1'").arg(sourceDir)
                              : zip.addDirectoryContents(source);
    const QString closeError = zip.close();
    return error.isEmpty() ? closeError : error;
}

} // namespace

struct ZipXml3ReportGenerator::Private
{
    // All three are null once the zip file is written. The file of the report is in the directory.
    std::unique_ptr<TemporaryDir> tempDir;
    std::unique_ptr<TestReportGenerator> generator;
    std::unique_ptr<QFile> target;

    void writeZipReport();
};

ZipXml3ReportGenerator::ZipXml3ReportGenerator(std::unique_ptr<Private> data)
    : d(std::move(data))
{
    qCDebug(traceReportGenerator) << "xml reportdir: " << d->tempDir->path();
    qCDebug(traceReportGenerator) << "zip reportfile: " << d->target->fileName();
}

ZipXml3ReportGenerator::~ZipXml3ReportGenerator() = default;

TestReportGenerator::Result ZipXml3ReportGenerator::create(const QString &path, TestType type,
                                                           int version, QString *resultDir)
{
    if (path.isEmpty())
        return {nullptr, QStringLiteral("report file path cannot be empty")};
    auto data = std::make_unique<Private>();
    data->tempDir = std::make_unique<TemporaryDir>(QDir::tempPath() + QDir::separator() +
                                                   QLatin1String("morvex_zipxml3_"));
    if (!data->tempDir->isValid())
        return {nullptr, data->tempDir->errorString()};
    // Without a buffer, so that a full disk shows in what the zip writer reports.
    data->target = std::make_unique<QFile>();
    const QString error =
        openReportTarget(path, TargetContent::ReplacedAndRead, data->target.get());
    if (!error.isEmpty())
        return {nullptr, QStringLiteral("Could not open report file: %1").arg(error)};
    const Result inner =
        Xml3ReportGenerator::create(data->tempDir->path(), type, version, resultDir);
    if (!inner.error.isEmpty())
        return inner;
    data->generator.reset(inner.generator);
    return {new ZipXml3ReportGenerator(std::move(data)), QString()};
}

void ZipXml3ReportGenerator::generateSummary() {}

void ZipXml3ReportGenerator::doHandleEntry(const TestResult::Entry &entry)
{
    if (!d->generator)
        return;
    d->generator->handleEntry(entry);
    if (entry.type == TestResult::END)
        d->writeZipReport();
}

void ZipXml3ReportGenerator::Private::writeZipReport()
{
    const QString fileName = target->fileName();
    qCDebug(traceReportGenerator) << "writing zip xml3 report to " << fileName;
    generator.reset();
    const QString error = writeZip(tempDir->path(), target.get());
    if (!error.isEmpty()) {
        noteIncompleteReport();
        std::fprintf(stderr, "Failed writing zip xml3 report to %s: %s\n", qUtf8Printable(fileName),
                     qUtf8Printable(error));
    }
    target.reset();
    tempDir.reset();
}

} // namespace Morvex
