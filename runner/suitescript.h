#pragma once

#include "runner/scriptengine.h"

namespace Morvex {

/// The file suite.js of a suite. Its functions setUp and tearDown are for each test case, and its
/// other functions and variables for the scripts. A suite has no need of any of them.
class SuiteScript
{
public:
    /// @p engine is not owned and has to outlive this object.
    SuiteScript(ScriptEngine *engine, const QString &suiteDir);

    const QString &path() const { return m_path; }

    /// Runs the file, if it is there. Comes before the next two, which do nothing without it.
    ScriptEngine::Outcome load();

    ScriptEngine::Outcome setUp();
    ScriptEngine::Outcome tearDown();

private:
    ScriptEngine::Outcome function(const QString &name, QJSValue *function);

    ScriptEngine *m_engine;
    QString m_path;
    QJSValue m_setUp;
    QJSValue m_tearDown;
};

} // namespace Morvex
