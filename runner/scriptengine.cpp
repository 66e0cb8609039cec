#include "runner/scriptengine.h"

#include "runner/compiledscripts.h"
#include "runner/resources.h"

#include <QUrl>

#include <private/qjsvalue_p.h>
#include <private/qv4context_p.h>
#include <private/qv4engine_p.h>
#include <private/qv4functionobject_p.h>
#include <private/qv4scopedvalue_p.h>
#include <private/qv4script_p.h>

namespace Morvex {
namespace {

// Of each end of a stack that overflowed.
const std::ptrdiff_t framesKept = 25;

// The script functions of this program are modules: those that were compiled with it have their
// bare names as sources, others have the addresses of its resources.
bool isInternal(const QV4::StackFrame &frame)
{
    return frame.source.endsWith(QLatin1String(".mjs")) &&
           !frame.source.startsWith(QLatin1String("file:"));
}

LineInfo lineOf(const QV4::StackFrame &frame)
{
    const QUrl url(frame.source);
    return LineInfo(url.isLocalFile() ? url.toLocalFile() : frame.source, frame.line);
}

// Whether the exception came through a function of ours, as from an included script.
bool isPassedOn(const QV4::StackTrace &trace)
{
    return !trace.isEmpty() && isInternal(trace.constFirst());
}

std::vector<LineInfo> linesOf(const QV4::StackTrace &trace)
{
    std::vector<LineInfo> lines;
    for (const QV4::StackFrame &frame : trace) {
        // A frame without a line is a function of the engine or of ours.
        if (frame.line > 0 && !isInternal(frame))
            lines.push_back(lineOf(frame));
    }
    if (static_cast<std::ptrdiff_t>(lines.size()) > 2 * framesKept)
        lines.erase(lines.begin() + framesKept, lines.end() - framesKept);
    return lines;
}

} // namespace

ScriptEngine::Outcome ScriptEngine::run(const QString &program, const QString &fileName)
{
    m_lastThrown = Outcome();
    QV4::ExecutionEngine *v4 = m_engine.handle();
    const QString source = QUrl::fromLocalFile(fileName).toString();
    QV4::Scope scope(v4);
    QV4::ScopedValue result(scope);
    QV4::Script script(v4->rootContext(), QV4::Compiler::ContextType::Global, program, source);
    script.inheritContext = true;
    script.parse();
    if (!v4->hasException)
        result = script.run();
    return outcomeOf(QJSValue(v4, result->asReturnedValue()));
}

ScriptEngine::Outcome ScriptEngine::call(const QJSValue &function)
{
    m_lastThrown = Outcome();
    QV4::ExecutionEngine *v4 = m_engine.handle();
    QV4::Scope scope(v4);
    QV4::ScopedFunctionObject called(scope, QJSValuePrivate::convertedToValue(v4, function));
    QV4::ScopedValue result(scope);
    if (called)
        result = called->call(v4->globalObject, nullptr, 0);
    return outcomeOf(QJSValue(v4, result->asReturnedValue()));
}

// Of the exception that there may be instead of the value.
ScriptEngine::Outcome ScriptEngine::outcomeOf(const QJSValue &value)
{
    QV4::ExecutionEngine *v4 = m_engine.handle();
    Outcome outcome;
    outcome.value = value;
    outcome.hasThrown = v4->hasException;
    if (outcome.hasThrown) {
        QV4::StackTrace trace;
        outcome.value = QJSValue(v4, v4->catchException(&trace));
        const bool isOfIncluded = isPassedOn(trace) && m_lastThrown.hasThrown &&
                                  m_lastThrown.value.strictlyEquals(outcome.value);
        outcome.stack = isOfIncluded ? m_lastThrown.stack : linesOf(trace);
        m_lastThrown = outcome;
    }
    return outcome;
}

QJSValue ScriptEngine::internalFunction(const QString &name)
{
    useCompiledScripts();
    const QJSValue module = m_engine.importModule(resourcePath(name + QLatin1String(".mjs")));
    const QJSValue function = module.property(QStringLiteral("default"));
    if (!function.isCallable())
        qFatal("The module %s is broken: %s", qUtf8Printable(name),
               qUtf8Printable(module.toString()));
    return function;
}

std::vector<LineInfo> ScriptEngine::currentStack() const
{
    return linesOf(m_engine.handle()->stackTrace());
}

} // namespace Morvex
