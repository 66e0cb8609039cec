#include "runner/scripttestcase.h"

#include "runner/applicationsondemand.h"
#include "runner/failurepause.h"
#include "runner/processend.h"
#include "runner/promises.h"
#include "runner/runneroptions.h"
#include "runner/scriptfile.h"
#include "runner/suitescript.h"
#include "test/report/stacklines.h"
#include "test/testresult.h"

#include <QDir>
#include <QFileInfo>

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

ScriptTestCase::ScriptTestCase(TestResult *result, const QDir &dir, const QString &suiteDir,
                               const QString &resultDir, const RunnerOptions &options)
    : TestCase(result, dir)
    , m_suiteDir(suiteDir)
    , m_resultDir(resultDir)
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
                        place);
}

// What has to be there before the script runs. Returns an error text, empty on success.
QString ScriptTestCase::prepare()
{
    QString error;
    // A suite names the file of its object map also when it has none.
    if (!m_options.aut.isEmpty() ||
        (!m_options.objectMap.isEmpty() && QFileInfo::exists(m_options.objectMap)))
        m_applications->get(&error);
    return error;
}

QString ScriptTestCase::screenshot(TestResult::ResultType type)
{
    ApplicationAccess *applications = m_applications->existing();
    return applications ? applications->screenshot(type) : QString();
}

void ScriptTestCase::runScript(const QString &path, const QString &program)
{
    ScriptEngine engine;
    const ProcessEndWatch processEndWatch(result(), engine);
    const QString testCaseDir = testCaseDirectory().path();
    ApplicationsOnDemand applications(
        {&m_options, result(), &engine, path, testCaseDir, m_suiteDir, m_resultDir});
    m_applications = &applications;
    const QString error = prepare();
    if (!error.isEmpty()) {
        addError(LineInfo(path, 0), error);
        return;
    }
    ScriptApi api(&engine, &applications,
                  {result(), testCaseDir, m_suiteDir, m_resultDir, m_options.scriptArguments,
                   m_options.snoozeFactor,
                   [this](TestResult::ResultType type) { return screenshot(type); }});
    const NamesFileError namesError = api.defineNames();
    if (!namesError.text.isEmpty()) {
        result()->addResult(TestResult::ERROR, QStringLiteral("Cannot run the test case"),
                            namesError.text, namesError.place);
        return;
    }
    api.install();
    SuiteScript suite(&engine, m_suiteDir);
    const QString title = QStringLiteral("Script error");
    if (!hasPassed(suite.load(), title, suite.path()))
        return;
    if (hasPassed(suite.setUp(), title + QLatin1String(" in setUp"), suite.path()))
        hasPassed(engine.run(program, path), title, path);
    hasPassed(suite.tearDown(), title + QLatin1String(" in tearDown"), suite.path());
    if (applications.existing())
        applications.existing()->finish();
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
    ApplicationAccess *applications = m_applications->existing();
    if (!applications || !applications->reportThrown(thrown, details, stack))
        result()->addError(title + screenshot(TestResult::ERROR), details, stack);
    pauseAfter(TestResult::ERROR);
    return false;
}

} // namespace Morvex
