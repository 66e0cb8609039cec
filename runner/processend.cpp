#include "runner/processend.h"

#include "runner/messages.h"
#include "runner/scriptengine.h"
#include "shared/clock.h"
#include "test/testresult.h"

#include <cstdio>
#include <cstdlib>
#include <pthread.h>
#include <unistd.h>

namespace Morvex {
namespace {

struct
{
    TestResult *result = nullptr;
    const ScriptEngine *engine = nullptr;
    pthread_t thread = {};
} watched;

void handleExit()
{
    TestResult *result = watched.result;
    if (!result)
        return;
    // An exit within this one ends the process as well.
    watched.result = nullptr;
    // The log belongs to the main thread.
    if (::pthread_equal(::pthread_self(), watched.thread))
        result->addResult(currentLocalTime(), TestResult::FATAL,
                          QStringLiteral("The application ended the process"), QString(),
                          watched.engine->currentStack(), QString(), -1);
    std::fflush(nullptr);
    ::_exit(ExitUnusable);
}

} // namespace

ProcessEndWatch::ProcessEndWatch(TestResult *result, const ScriptEngine &engine)
{
    watched = {result, &engine, ::pthread_self()};
    std::atexit(handleExit);
    std::at_quick_exit(handleExit);
}

ProcessEndWatch::~ProcessEndWatch()
{
    watched.result = nullptr;
}

} // namespace Morvex
