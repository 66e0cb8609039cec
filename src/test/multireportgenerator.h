#pragma once

#include "morvex_export.h"
#include "test/testreportgenerator.h"

#include <list>

namespace Morvex {

/// Hands each entry to several generators, each with counters and sections of its own.
class MORVEX_EXPORT MultiReportGenerator : public TestReportGenerator
{
public:
    /// Takes ownership of the generators.
    explicit MultiReportGenerator(const std::list<TestReportGenerator *> &generators);
    ~MultiReportGenerator() override;

    void generateSummary() override;

    /// A device that writes to the devices of all members; the first error of a member ends it.
    QIODeviceResult videoOutput(const QString &path) override;

protected:
    void doHandleEntry(const TestResult::Entry &entry) override;

private:
    std::list<TestReportGenerator *> m_generators;
};

} // namespace Morvex
