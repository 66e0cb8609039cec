#pragma once

#include "runner/scriptrunner.h"

#include <QString>

#include <functional>

namespace Morvex {

/// Pictures of the desktop with what fails in a script, stored in the result directory; there are
/// none without one. No more than the suite wants are made in an attempt.
class FailureScreenshots
{
public:
    /// There are none as long as @p isWanted says no: the desktop has nothing to do with a script
    /// that uses no application.
    FailureScreenshots(const ScriptRunner &runner, const std::function<bool()> &isWanted);

    /// Returns the text to add to the message of a result of this type; empty for none.
    [[nodiscard]] QString textFor(TestResult::ResultType type);

private:
    ScriptRunner m_runner;
    std::function<bool()> m_isWanted;
    int m_rest = 0;
};

/// Sets how many the test cases started by this process make in an attempt, by the text of the
/// setting of the suite. Returns an error text, empty on success.
[[nodiscard]] QString setFailureScreenshots(const QString &setting);

} // namespace Morvex
