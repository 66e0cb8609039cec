#pragma once

#include "morvex_export.h"
#include "test/testreportgenerator.h"

#include <QByteArray>

#include <cstdio>
#include <memory>

namespace Morvex {

/// The console report: one line an entry, written and flushed as it arrives.
class MORVEX_EXPORT StdoutReportGenerator : public TestReportGenerator
{
public:
    /// Writes to standard output.
    StdoutReportGenerator();
    /// Closes @p stream at the end when it @p owns it.
    StdoutReportGenerator(std::FILE *stream, bool owns);
    ~StdoutReportGenerator() override;

    /// @p path may be empty or "/dev/stdout" for standard output and "/dev/stderr" for standard
    /// error. A file that holds something, or is being written, is left alone: the next free number
    /// goes into the name.
    static Result create(const QString &path);

    void generateSummary() override;

protected:
    void doHandleEntry(const TestResult::Entry &entry) override;

private:
    struct Private;

    void writeLine(const TestResult::Entry &entry);
    void writeAtOnce(const QByteArray &line);
    void flush();
    void reportFailure();

    std::FILE *m_stream;
    bool m_ownsStream;
    std::unique_ptr<Private> d;
};

/// Whether CLICOLOR_FORCE, the kind of the stream and CLICOLOR, in this order, ask for colours.
MORVEX_EXPORT bool canUseConsoleColor(std::FILE *stream);

} // namespace Morvex
