#pragma once

#include "morvex_export.h"
#include "test/testreportgenerator.h"

namespace Morvex {

class QuillbasePrivate;

/// Sends each entry, with its files and videos, to a result server while the tests run. A thread of
/// its own talks to the server; this one waits for it, so that a slow server slows the tests
/// instead of letting memory grow. A server that fails ends the upload, never the run.
///
/// To be used on the thread of the application object: the waits at the end of a test case and of
/// the run turn its event loop.
class MORVEX_EXPORT QuillbaseReportGenerator : public TestReportGenerator
{
public:
    /// Connects to the server that @p url names: an address of http or https with the path
    /// `<prefix>/project/<project-name>` and the query items `token`, `batch` and any number of
    /// `label`.
    static Result create(const QString &url, TestType type);
    /// Reports the end to the server and waits for it to confirm that all has arrived.
    ~QuillbaseReportGenerator() override;

    /// Does nothing: the server counts.
    void generateSummary() override;

    /// A device whose bytesWritten says what the server has confirmed. Its writes return 0.
    QIODeviceResult videoOutput(const QString &path) override;

protected:
    void doHandleEntry(const TestResult::Entry &entry) override;

private:
    explicit QuillbaseReportGenerator(QuillbasePrivate *data);

    [[nodiscard]] bool connect(QString *error);

    QuillbasePrivate *d;
};

} // namespace Morvex
