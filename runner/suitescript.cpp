#include "runner/suitescript.h"

#include "runner/scriptfile.h"

#include <QDir>
#include <QFileInfo>

namespace Morvex {
namespace {

ScriptEngine::Outcome failed(const QString &text, const LineInfo &place)
{
    return {QJSValue(text), true, {place}};
}

} // namespace

SuiteScript::SuiteScript(ScriptEngine *engine, const QString &suiteDir)
    : m_engine(engine)
    , m_path(QDir(suiteDir).filePath(QStringLiteral("suite.js")))
{
}

ScriptEngine::Outcome SuiteScript::load()
{
    if (!QFileInfo::exists(m_path))
        return {};
    const ScriptFile script = readScriptFile(m_path);
    if (!script.error.isEmpty())
        return failed(script.error, LineInfo(m_path, script.errorLine));
    ScriptEngine::Outcome outcome = m_engine->run(script.text, m_path);
    if (!outcome.hasThrown)
        outcome = function(QStringLiteral("setUp"), &m_setUp);
    if (!outcome.hasThrown)
        outcome = function(QStringLiteral("tearDown"), &m_tearDown);
    return outcome;
}

ScriptEngine::Outcome SuiteScript::setUp()
{
    return m_setUp.isCallable() ? m_engine->call(m_setUp) : ScriptEngine::Outcome();
}

ScriptEngine::Outcome SuiteScript::tearDown()
{
    return m_tearDown.isCallable() ? m_engine->call(m_tearDown) : ScriptEngine::Outcome();
}

// Taken now: a script may have a function of that name for itself.
ScriptEngine::Outcome SuiteScript::function(const QString &name, QJSValue *function)
{
    *function = m_engine->engine().globalObject().property(name);
    if (function->isUndefined() || function->isCallable())
        return {};
    return failed(QStringLiteral("TypeError: %1 has to be a function").arg(name),
                  LineInfo(m_path, 1));
}

} // namespace Morvex
