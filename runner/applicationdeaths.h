#pragma once

#include "runner/applications.h"
#include "test/testresult.h"

#include <QString>

#include <vector>

namespace Morvex {

class RunnerInterface;
class ScriptEngine;

/// Logs how applications of a test case have ended or hang. A death that the script has caught is a
/// WARNING, any other one a FATAL, each with a picture of the display if there is one.
class ApplicationDeaths
{
public:
    /// Nothing is owned.
    ApplicationDeaths(Applications *applications, TestResult *result, RunnerInterface *runner,
                      const ScriptEngine *engine);
    ~ApplicationDeaths();

    ApplicationDeaths(const ApplicationDeaths &) = delete;
    ApplicationDeaths &operator=(const ApplicationDeaths &) = delete;

    /// Logs those that a call of the script has met, because it goes on.
    void reportCaught();

    /// Whether what has ended the script is a death, which is logged then. @p details are those of
    /// the entry.
    bool reportThrown(const QString &thrown, const QString &details,
                      const std::vector<LineInfo> &stack);

    /// Logs those in the application of a context, which is about to be stopped by the script.
    void reportBeforeStop(int context);

    /// Logs all that are left, at the end of the script @p path.
    void reportRest(const QString &path);

    /// Stops all applications and logs those that crash by that.
    void stopAll(const QString &path);

private:
    void reportCrashAtEnd(const QString &text, const std::vector<LineInfo> &stack);
    void reportHanging(const QString &stack);
    void addCaught(const Applications::Death &death);
    void addUnmet(const Applications::Death &death, const std::vector<LineInfo> &stack);
    QString picture(TestResult::ResultType type);

    Applications *m_applications;
    TestResult *m_result;
    RunnerInterface *m_runner;
    const ScriptEngine *m_engine;
};

} // namespace Morvex
