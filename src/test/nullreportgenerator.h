#pragma once

#include "morvex_export.h"
#include "test/testreportgenerator.h"

namespace Morvex {

/// Writes nothing, but counts like all formats.
class MORVEX_EXPORT NullReportGenerator : public TestReportGenerator
{
public:
    static Result create() { return {new NullReportGenerator, QString()}; }

    void generateSummary() override {}

protected:
    void doHandleEntry(const TestResult::Entry &) override {}
};

} // namespace Morvex
