#pragma once

#include "test/testresult.h"

#include <QJSEngine>
#include <QJSValue>
#include <QString>

#include <vector>

namespace Morvex {

/// Runs JavaScript and knows where it is. The engine of Qt gives the place of a thrown value only
/// when it is an Error, and that of a running call not at all; so this class uses its private
/// parts.
class ScriptEngine
{
public:
    struct Outcome
    {
        /// The value of the script, or the value that it threw.
        QJSValue value;
        bool hasThrown = false;
        /// Where it was thrown, innermost frame first. Of a syntax error its place.
        std::vector<LineInfo> stack;
    };

    QJSEngine &engine() { return m_engine; }

    /// Runs @p program in the global scope.
    Outcome run(const QString &program, const QString &fileName);

    /// Calls a function of a script without arguments.
    Outcome call(const QJSValue &function);

    /// What the module runner/@p name.mjs exports by default. Its frames are left out of stacks.
    QJSValue internalFunction(const QString &name);

    /// The script's frames at this moment, innermost first; for functions that a script calls.
    std::vector<LineInfo> currentStack() const;

private:
    Outcome outcomeOf(const QJSValue &value);

    QJSEngine m_engine;
    // Of the exception that left a script last: a script that is run by another one, and lets the
    // exception through, is where it came from.
    Outcome m_lastThrown;
};

} // namespace Morvex
