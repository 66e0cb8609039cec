#pragma once

#include "runner/scriptapi.h"
#include "runner/scriptengine.h"
#include "test/testcase.h"

namespace Morvex {

class FailureScreenshots;
class ScriptApplication;

/// A test case whose body is the file script.js in its directory.
class ScriptTestCase : public TestCase
{
public:
    struct Options
    {
        QString suiteDir;
        QString resultDir;
        QStringList scriptArguments;
        double snoozeFactor = 0;
        /// The name and the arguments of an application that is started before the script; may be
        /// empty.
        QStringList application;
        /// Empty when the suite has none.
        QString objectMap;
    };

    ScriptTestCase(TestResult *result, const QDir &dir, const Options &options);

    void execute() override;

private:
    void runScript(const QString &path, const QString &program);
    [[nodiscard]] QString prepare(ScriptApplication *application) const;
    bool hasPassed(const ScriptEngine::Outcome &outcome, const QString &title, const QString &path);
    void addError(const LineInfo &place, const QString &details);

    Options m_options;
    // While the script runs.
    FailureScreenshots *m_screenshots = nullptr;
};

} // namespace Morvex
