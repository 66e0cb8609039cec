#pragma once

#include "shared/browserelement.h"

#include <QString>
#include <QTemporaryDir>

namespace Morvex {

class TestResult;

// What --coverage does. The process that was asked for it makes a directory, whose name the test
// cases have in MORVEX_COVERAGE; each attempt of a test case leaves a file there.

/// Begins to count in the current application when coverage is wanted. Returns an error text, empty
/// on success.
[[nodiscard]] QString startUsageCount();

/// Leaves what was counted, and attaches it when there is a result directory. Does nothing when no
/// coverage is wanted or no application was started; a failure is a warning in the log, and so is
/// `startError`, why nothing was counted in the current application, which is empty when it was.
void attachUsage(TestResult *result, const QString &testCase, const QString &resultDir,
                 const QString &startError);

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
