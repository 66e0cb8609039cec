#include "support/reports.h"

#include "support/files.h"
#include "test/testreportgeneratorfactory.h"

#include <QDir>
#include <QTemporaryDir>

namespace MorvexTest {

using namespace Morvex;

QByteArray reportOf(const char *keyword, const std::function<void(TestResult &)> &log)
{
    QTemporaryDir dir;
    const QString path = dir.filePath("report.xml");
    QString resultDir;
    const auto created = TestReportGeneratorFactory::create(
        {QString(keyword) + ',' + path}, &resultDir, TestReportGenerator::TEST_SUITE);
    if (!created.generator)
        qFatal("%s", qUtf8Printable(created.error));
    {
        TestResult result(created.generator);
        log(result);
    }
    return readFile(path);
}

QByteArray reportOf(const char *keyword, const SampleRun &run)
{
    return reportOf(keyword, [&run](TestResult &result) { logRun(run, result); });
}

QByteArray reportOf(const char *keyword, const TestResult::Entry &entry)
{
    return reportOf(keyword, [&entry](TestResult &result) {
        result.start("suite_a", QDir("/suite"), "", "");
        result.processEntry(entry);
        result.completed();
    });
}

TestResult::Entry entryOf(TestResult::ResultType type, const QString &message,
                          const QString &details)
{
    TestResult::Entry entry;
    entry.time = QDateTime(QDate(2024, 3, 1), QTime(12, 0, 0));
    entry.type = type;
    entry.message = message;
    entry.details = details;
    return entry;
}

} // namespace MorvexTest
