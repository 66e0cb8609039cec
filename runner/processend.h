#pragma once

#include <memory>

class QSocketNotifier;

namespace Morvex {

class ScriptEngine;
class TestResult;

/// As long as it lives, the log reports an end of this process that is not that of the test
/// case, with the place in the script. A call of exit is a FATAL and gives the status ExitUnusable,
/// a call of _exit can't be noticed; a SIGTERM that comes while a call of the script turns the
/// event loop is a WARNING. The result has no report generator then. One object at a time, on the
/// main thread; nothing is owned.
class ProcessEndWatch
{
public:
    ProcessEndWatch(TestResult *result, const ScriptEngine &engine);
    ~ProcessEndWatch();

    ProcessEndWatch(const ProcessEndWatch &) = delete;
    ProcessEndWatch &operator=(const ProcessEndWatch &) = delete;

private:
    void listen();

    std::unique_ptr<QSocketNotifier> m_notifier;
};

/// For calls that wait without turning the event loop: ends this process when a SIGTERM has come,
/// as the event loop would.
void serveTermination();

} // namespace Morvex
