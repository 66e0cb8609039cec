#include "runner/scripttestcase.h"

#include "runner/applicationdeaths.h"
#include "runner/failurepause.h"
#include "runner/failurescreenshots.h"
#include "runner/processend.h"
#include "runner/promises.h"
#include "runner/scriptapplication.h"
#include "runner/scriptcontexts.h"
#include "runner/scriptfile.h"
#include "runner/scriptverification.h"
#include "runner/suitescript.h"
#include "runner/uicoverage.h"
#include "test/report/stacklines.h"
#include "test/testresult.h"

#include <QDir>

namespace Morvex {
namespace {

// Why a test case can't be run at all; empty when it can.
[[nodiscard]] QString whyNotRunnable(const QDir &dir)
{
    if (!dir.entryList({QStringLiteral("*.feature")}).isEmpty())
        return QStringLiteral("Behaviour driven test cases (*.feature) can't be run yet.");
    if (!dir.exists(QStringLiteral("script.js")))
        return QStringLiteral("There is no script.js in '%1'.").arg(dir.path());
    return {};
}

QString thrownText(const QJSValue &value)
{
    // What a script throws may have a toString that throws in turn.
    const QString text = value.toString();
    return text.isEmpty() ? QStringLiteral("(a value without a text)") : text;
}

} // namespace

ScriptTestCase::ScriptTestCase(TestResult *result, const QDir &dir, const Options &options)
    : TestCase(result, dir)
    , m_options(options)
{
}

void ScriptTestCase::execute()
{
    const QDir dir = testCaseDirectory();
    const QString path = dir.filePath(QStringLiteral("script.js"));
    const QString error = whyNotRunnable(dir);
    if (!error.isEmpty()) {
        addError(LineInfo(path, 0), error);
        return;
    }
    const ScriptFile script = readScriptFile(path);
    if (script.error.isEmpty())
        runScript(path, script.text);
    else
        addError(LineInfo(path, script.errorLine), script.error);
}

void ScriptTestCase::addError(const LineInfo &place, const QString &details)
{
    result()->addResult(TestResult::ERROR, QStringLiteral("Cannot run the test case"), details,
                        place, QString(), -1);
}

// Returns an error text, empty on success.
QString ScriptTestCase::prepare(ScriptApplication *application) const
{
    if (!m_options.objectMap.isEmpty()) {
        const QString error = application->loadObjectMap(m_options.objectMap);
        if (!error.isEmpty())
            return error;
    }
    return m_options.isApplicationStarted ? application->start({}) : QString();
}

void ScriptTestCase::runScript(const QString &path, const QString &program)
{
    ScriptEngine engine;
    const ProcessEndWatch processEndWatch(result(), engine);
    const QStringList searchDirs{testCaseDirectory().path(), m_options.suiteDir};
    Applications applications(searchDirs, m_options.applications);
    ScriptRunner runner(result(), path, m_options.resultDir, &applications);
    ApplicationDeaths deaths(&applications, result(), &runner, &engine);
    ScriptApplication application(&applications);
    const QString error = prepare(&application);
    if (!error.isEmpty()) {
        addError(LineInfo(path, 0), error);
        return;
    }
    const auto keepUsage = [&] {
        attachUsage(result(), testCaseDirectory().dirName(), m_options.resultDir,
                    applications.countError());
    };
    application.setBeforeStart([&deaths] { deaths.reportCaught(); });
    application.setBeforeStop([&](int context) {
        deaths.reportBeforeStop(context);
        keepUsage();
        // One that has died meanwhile.
        deaths.reportBeforeStop(context);
    });
    m_deaths = &deaths;
    FailureScreenshots screenshots(runner, [&application] { return application.wasStarted(); });
    m_screenshots = &screenshots;
    ScriptVerification verification(&engine, &application, result(), runner, searchDirs);
    ScriptContexts contexts(&applications);
    ScriptApi api(&engine, {result(), testCaseDirectory().path(), m_options.suiteDir,
                            m_options.resultDir, m_options.scriptArguments, m_options.snoozeFactor,
                            [&screenshots](TestResult::ResultType type) {
                                return screenshots.textFor(type);
                            }});
    const NamesFileError namesError = api.defineNames();
    if (!namesError.text.isEmpty()) {
        result()->addResult(TestResult::ERROR, QStringLiteral("Cannot run the test case"),
                            namesError.text, namesError.place, QString(), -1);
        return;
    }
    api.install(&application, &contexts, &verification);
    SuiteScript suite(&engine, m_options.suiteDir);
    const QString title = QStringLiteral("Script error");
    if (!hasPassed(suite.load(), title, suite.path()))
        return;
    if (hasPassed(suite.setUp(), title + QLatin1String(" in setUp"), suite.path()))
        hasPassed(engine.run(program, path), title, path);
    hasPassed(suite.tearDown(), title + QLatin1String(" in tearDown"), suite.path());
    deaths.reportRest(path);
    application.forEachContext(keepUsage);
    deaths.reportRest(path);
    deaths.stopAll(path);
}

// Logs what was thrown, after what promises had left to do.
bool ScriptTestCase::hasPassed(const ScriptEngine::Outcome &outcome, const QString &title,
                               const QString &path)
{
    keepPromises();
    if (!outcome.hasThrown)
        return true;
    std::vector<LineInfo> stack = outcome.stack;
    if (stack.empty())
        stack.emplace_back(path, 0);
    const QString thrown = thrownText(outcome.value);
    const QString details = (QStringList{thrown} + stackLines(stack)).join(QLatin1Char('\n'));
    if (!m_deaths->reportThrown(thrown, details, stack))
        result()->addError(title + m_screenshots->textFor(TestResult::ERROR), details, stack);
    pauseAfter(TestResult::ERROR);
    return false;
}

} // namespace Morvex
