#include "test/quillbasereportgenerator.h"

#include "test/upload/quillbaseprivate.h"
#include "test/upload/uploadaddress.h"
#include "test/upload/videofilename.h"
#include "test/upload/videooutput.h"

#include <memory>

namespace Morvex {

QuillbaseReportGenerator::QuillbaseReportGenerator(QuillbasePrivate *data)
    : d(data)
{
}

QuillbaseReportGenerator::~QuillbaseReportGenerator()
{
    QuillbasePrivate::shutDown(d);
}

TestReportGenerator::Result QuillbaseReportGenerator::create(const QString &url, TestType type)
{
    QUrl parsed;
    QString error = parseUploadUrl(url, &parsed);
    if (!error.isEmpty())
        return {nullptr, error};
    std::unique_ptr<QuillbaseReportGenerator> generator(
        new QuillbaseReportGenerator(new QuillbasePrivate(parsed, type)));
    error = QStringLiteral("Unknown error");
    if (!generator->connect(&error))
        return {nullptr, error};
    return {generator.release(), QString()};
}

bool QuillbaseReportGenerator::connect(QString *error)
{
    if (!d->startThread()) {
        *error = QStringLiteral("Quill Base report generator startup error");
        return false;
    }
    return d->startConnection(error);
}

void QuillbaseReportGenerator::generateSummary() {}

QIODeviceResult QuillbaseReportGenerator::videoOutput(const QString &path)
{
    auto *output = new VideoOutput(d, makeFileName(path, true).toUtf8());
    d->video = output;
    return {output, QString()};
}

void QuillbaseReportGenerator::doHandleEntry(const TestResult::Entry &entry)
{
    switch (entry.type) {
    case TestResult::END:
    case TestResult::END_TEST_CASE:
        d->sendAndWaitForAnswer(entry);
        break;
    case TestResult::STARTVIDEOCAPTURE:
        d->send(entry, d->video ? d->video->relay() : nullptr);
        break;
    default:
        d->send(entry, nullptr);
        break;
    }
}

} // namespace Morvex
