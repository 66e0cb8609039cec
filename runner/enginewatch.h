#pragma once

#include <QJSEngine>

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

namespace Morvex {

/// Interrupts what an engine runs once a time is over: a script that never ends would otherwise
/// block its caller for ever. Interrupting is the only thing that its thread does.
class EngineWatch
{
public:
    /// @p engine is not owned and has to outlive this object.
    EngineWatch(QJSEngine *engine, std::chrono::milliseconds limit);
    ~EngineWatch();

    EngineWatch(const EngineWatch &) = delete;
    EngineWatch &operator=(const EngineWatch &) = delete;

    /// Whether the time was over before the engine was done.
    bool hasInterrupted() const;

private:
    void watch(std::chrono::milliseconds limit);

    QJSEngine *m_engine;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_isDone = false;
    std::thread m_thread;
};

} // namespace Morvex
