#pragma once

#include "runner/scriptapi.h"
#include "runner/scriptengine.h"
#include "test/testcase.h"

namespace Morvex {

class ApplicationsOnDemand;
struct RunnerOptions;

/// A test case whose body is the file script.js in its directory.
class ScriptTestCase : public TestCase
{
public:
    /// In a suite, the current directory; @p options have to live as long as this object.
    /// @p resultDir is empty when there is none.
    ScriptTestCase(TestResult *result, const QDir &dir, const QString &suiteDir,
                   const QString &resultDir, const RunnerOptions &options);

    void execute() override;

private:
    void runScript(const QString &path, const QString &program);
    [[nodiscard]] QString prepare();
    [[nodiscard]] QString screenshot(TestResult::ResultType type);
    bool hasPassed(const ScriptEngine::Outcome &outcome, const QString &title, const QString &path);
    void addError(const LineInfo &place, const QString &details);

    QString m_suiteDir;
    QString m_resultDir;
    const RunnerOptions &m_options;
    // While the script runs.
    ApplicationsOnDemand *m_applications = nullptr;
};

} // namespace Morvex
