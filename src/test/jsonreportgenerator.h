#pragma once

#include "morvex_export.h"
#include "test/testreportgenerator.h"

#include <iosfwd>
#include <memory>
#include <string>

namespace Morvex {

/// The run as one JSON document, "results.json" in the result directory, written as a stream: only
/// the closers of the open values are held. The document is complete once generateSummary was
/// called or the generator no longer exists.
class MORVEX_EXPORT JsonReportGenerator : public TestReportGenerator
{
public:
    /// Major and minor number of the format, in the high and the low byte.
    enum Version : unsigned short { Version1_0 = 0x100, Version1_1 = 0x101, Version1_2 = 0x102 };

    static Result create(const QString &path, TestType type, unsigned short version,
                         QString *resultDir);
    ~JsonReportGenerator() override;

    /// Closes all values that are open.
    void generateSummary() override;

protected:
    JsonReportGenerator(std::unique_ptr<std::ostream> stream, const QString &resultDir,
                        TestType type, unsigned short version);

    /// Begins the document, at START. An override writes what comes before it, to stream().
    virtual void init();
    void doHandleEntry(const TestResult::Entry &entry) override;

    std::ostream &stream();

private:
    struct Private;

    std::unique_ptr<Private> d;
};

} // namespace Morvex
