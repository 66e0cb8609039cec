#include "runner/scriptengine.h"

#include <QUrl>

#include <private/qv4context_p.h>
#include <private/qv4engine_p.h>
#include <private/qv4scopedvalue_p.h>
#include <private/qv4script_p.h>

namespace Morvex {
namespace {

// Of each end of a stack that overflowed.
const std::ptrdiff_t framesKept = 25;

const QLatin1String internalSource("morvex:internal");

LineInfo lineOf(const QV4::StackFrame &frame)
{
    const QUrl url(frame.source);
    return LineInfo(url.isLocalFile() ? url.toLocalFile() : frame.source, frame.line);
}

// Whether the exception came through a function of ours, as from an included script.
bool isPassedOn(const QV4::StackTrace &trace)
{
    return !trace.isEmpty() && trace.constFirst().source == internalSource;
}

std::vector<LineInfo> linesOf(const QV4::StackTrace &trace)
{
    std::vector<LineInfo> lines;
    for (const QV4::StackFrame &frame : trace) {
        // A frame without a line is a function of the engine or of ours.
        if (frame.line > 0 && frame.source != internalSource)
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
    const QString source =
        fileName == internalSource ? fileName : QUrl::fromLocalFile(fileName).toString();
    QV4::Scope scope(v4);
    QV4::ScopedValue result(scope);
    QV4::Script script(v4->rootContext(), QV4::Compiler::ContextType::Global, program, source);
    script.inheritContext = true;
    script.parse();
    if (!v4->hasException)
        result = script.run();

    Outcome outcome;
    QV4::StackTrace trace;
    outcome.hasThrown = v4->hasException;
    if (outcome.hasThrown)
        result = v4->catchException(&trace);
    outcome.value = QJSValue(v4, result->asReturnedValue());
    if (outcome.hasThrown) {
        const bool isOfIncluded = isPassedOn(trace) && m_lastThrown.hasThrown &&
                                  m_lastThrown.value.strictlyEquals(outcome.value);
        outcome.stack = isOfIncluded ? m_lastThrown.stack : linesOf(trace);
        m_lastThrown = outcome;
    }
    return outcome;
}

QJSValue ScriptEngine::runInternal(const QString &program)
{
    return run(program, internalSource).value;
}

std::vector<LineInfo> ScriptEngine::currentStack() const
{
    return linesOf(m_engine.handle()->stackTrace());
}

} // namespace Morvex
