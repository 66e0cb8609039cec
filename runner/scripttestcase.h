#pragma once

#include "runner/applications.h"
#include "runner/scriptapi.h"
#include "runner/scriptengine.h"
#include "test/testcase.h"

namespace Morvex {

class ApplicationDeaths;
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
        Applications::Settings applications;
        /// Whether that of the suite is started before the script.
        bool isApplicationStarted = false;
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
    ApplicationDeaths *m_deaths = nullptr;
    FailureScreenshots *m_screenshots = nullptr;
};

} // namespace Morvex
