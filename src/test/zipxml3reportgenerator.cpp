#include "test/zipxml3reportgenerator.h"

#include "shared/temporarydir.h"
#include "shared/trace.h"
#include "shared/zipfile.h"
#include "test/openreportfile.h"
#include "test/xml3reportgenerator.h"

#include <QDir>
#include <QFile>

#include <cstdio>

namespace Morvex {
namespace {

QString writeZip(const QString &sourceDir, QFile *target)
{
    ZipFile zip(target);
    const QString error = zip.addDirectoryContents(QDir(sourceDir));
    const QString closeError = zip.close();
    return error.isEmpty() ? closeError : error;
}

} // namespace

ZipXml3ReportGenerator::ZipXml3ReportGenerator(std::unique_ptr<TemporaryDir> tempDir,
                                               std::unique_ptr<TestReportGenerator> generator,
                                               std::unique_ptr<QFile> target)
    : m_tempDir(std::move(tempDir))
    , m_generator(std::move(generator))
    , m_target(std::move(target))
{
    qCDebug(traceReportGenerator) << "xml reportdir: " << m_tempDir->path();
    qCDebug(traceReportGenerator) << "zip reportfile: " << m_target->fileName();
}

ZipXml3ReportGenerator::~ZipXml3ReportGenerator()
{
    // Its file lies in the temporary directory.
    m_generator.reset();
}

TestReportGenerator::Result ZipXml3ReportGenerator::create(const QString &path, TestType type,
                                                           int version, QString *resultDir)
{
    if (path.isEmpty())
        return {nullptr, QStringLiteral("report file path cannot be empty")};
    auto tempDir = std::make_unique<TemporaryDir>(QDir::tempPath() + QDir::separator() +
                                                  QLatin1String("morvex_zipxml3_"));
    if (!tempDir->isValid())
        return {nullptr, tempDir->errorString()};
    // Unbuffered, so that a full disk shows in what the zip writer is told.
    auto target = std::make_unique<QFile>(path);
    if (!target->open(QIODevice::ReadWrite | QIODevice::Truncate | QIODevice::Unbuffered))
        return {nullptr,
                QStringLiteral("Could not open report file: %1").arg(target->errorString())};
    const Result inner = Xml3ReportGenerator::create(tempDir->path(), type, version, resultDir);
    if (!inner.error.isEmpty())
        return inner;
    std::unique_ptr<TestReportGenerator> generator(inner.generator);
    return {new ZipXml3ReportGenerator(std::move(tempDir), std::move(generator), std::move(target)),
            QString()};
}

void ZipXml3ReportGenerator::generateSummary() {}

void ZipXml3ReportGenerator::doHandleEntry(const TestResult::Entry &entry)
{
    if (!m_generator)
        return;
    m_generator->handleEntry(entry);
    if (entry.type == TestResult::END)
        writeZipReport();
}

void ZipXml3ReportGenerator::writeZipReport()
{
    const QString fileName = m_target->fileName();
    qCDebug(traceReportGenerator) << "writing zip xml3 report to " << fileName;
    m_generator.reset();
    const QString error = writeZip(m_tempDir->path(), m_target.get());
    if (!error.isEmpty()) {
        noteIncompleteReport();
        std::fprintf(stderr, "Failed writing zip xml3 report to %s: %s\n", qUtf8Printable(fileName),
                     qUtf8Printable(error));
    }
    m_target.reset();
    m_tempDir.reset();
}

} // namespace Morvex
