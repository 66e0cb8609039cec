#pragma once

#include "test/testreportgenerator.h"

#include <vector>

namespace MorvexTest {

/// A format that keeps what it is given.
class RecordingGenerator : public Morvex::TestReportGenerator
{
public:
    void generateSummary() override { ++summaries; }

    std::vector<Morvex::TestResult::Entry> entries;
    int summaries = 0;

protected:
    void doHandleEntry(const Morvex::TestResult::Entry &entry) override
    {
        entries.push_back(entry);
    }
};

} // namespace MorvexTest
