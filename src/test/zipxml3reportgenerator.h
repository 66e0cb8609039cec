#pragma once

#include "morvex_export.h"
#include "test/testreportgenerator.h"

#include <memory>

class QFile;

namespace Morvex {

class TemporaryDir;

/// The result directory of the xml3 report as one zip file, which is written at the end of the run.
/// A run that does not reach its end leaves an empty file.
class MORVEX_EXPORT ZipXml3ReportGenerator : public TestReportGenerator
{
public:
    /// The directory of @p path has to exist. The result directory is a temporary one.
    static Result create(const QString &path, TestType type, int version, QString *resultDir);
    ~ZipXml3ReportGenerator() override;

    /// Does nothing.
    void generateSummary() override;

protected:
    void doHandleEntry(const TestResult::Entry &entry) override;

private:
    ZipXml3ReportGenerator(std::unique_ptr<TemporaryDir> tempDir,
                           std::unique_ptr<TestReportGenerator> generator,
                           std::unique_ptr<QFile> target);

    void writeZipReport();

    // All three are gone once the zip file is written.
    std::unique_ptr<TemporaryDir> m_tempDir;
    std::unique_ptr<TestReportGenerator> m_generator;
    std::unique_ptr<QFile> m_target;
};

} // namespace Morvex
