#pragma once

namespace Morvex {

class ScriptEngine;
class TestResult;

/// As long as it lives, a call of exit, which must not pass for the end of the test case, is a
/// FATAL in the log and gives this process the status ExitUnusable. One object at a time, on the
/// main thread; nothing is owned.
class ProcessEndWatch
{
public:
    ProcessEndWatch(TestResult *result, const ScriptEngine &engine);
    ~ProcessEndWatch();

    ProcessEndWatch(const ProcessEndWatch &) = delete;
    ProcessEndWatch &operator=(const ProcessEndWatch &) = delete;
};

} // namespace Morvex
