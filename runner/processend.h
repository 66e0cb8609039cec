#pragma once

#include <memory>

class QSocketNotifier;

namespace Morvex {

class ScriptEngine;
class TestResult;

/// As long as it lives, a SIGTERM that comes while a call of the script waits is a WARNING in the
/// log, with the place in the script; the result has no report generator then. One object at a
/// time, on the main thread; nothing is owned.
class ProcessEndWatch
{
public:
    ProcessEndWatch(TestResult *result, const ScriptEngine &engine);
    ~ProcessEndWatch();

    ProcessEndWatch(const ProcessEndWatch &) = delete;
    ProcessEndWatch &operator=(const ProcessEndWatch &) = delete;

private:
    std::unique_ptr<QSocketNotifier> m_notifier;
};

bool isTerminationRequested();

/// Ends this process when a SIGTERM has come, for calls that wait without turning the event loop.
void serveTermination();

/// Waits, ending this process when a SIGTERM comes. No event is handled: the script would go on
/// within its own call.
void pauseScript(int milliseconds);

} // namespace Morvex
