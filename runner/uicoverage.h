#pragma once

#include "shared/browserelement.h"

#include <QString>
#include <QTemporaryDir>

namespace Morvex {

class TestResult;

// What --coverage does. The process that was asked for it makes a directory, whose name the test
// cases have in MORVEX_COVERAGE; each attempt of a test case leaves a file there.

/// Begins to count in the application of this process when coverage is wanted.
void startUsageCount();

/// Leaves what was counted, and attaches it when there is a result directory. Does nothing when no
/// coverage is wanted or no application was started; a failure is a warning in the log.
void attachUsage(TestResult *result, const QString &testCase, const QString &resultDir);

/// The coverage of all test cases that run while it lives.
class UiCoverage
{
public:
    UiCoverage();
    ~UiCoverage();

    UiCoverage(const UiCoverage &) = delete;
    UiCoverage &operator=(const UiCoverage &) = delete;

    /// Adds up what the test cases have left.
    void collect();
    /// Attaches a page of the collected tree to the run when there is a result directory.
    void attachPage(TestResult *result, const QString &resultDir) const;
    /// The percentage, and that of each window, the least covered first.
    void print() const;

private:
    QTemporaryDir m_dir;
    BrowserElement m_root;
};

} // namespace Morvex
