#include "runner/enginewatch.h"

namespace Morvex {

EngineWatch::EngineWatch(QJSEngine *engine, std::chrono::milliseconds limit)
    : m_engine(engine)
    , m_thread([this, limit] { watch(limit); })
{
}

EngineWatch::~EngineWatch()
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_isDone = true;
    }
    m_changed.notify_one();
    m_thread.join();
    m_engine->setInterrupted(false);
}

bool EngineWatch::hasInterrupted() const
{
    return m_engine->isInterrupted();
}

void EngineWatch::watch(std::chrono::milliseconds limit)
{
    std::unique_lock<std::mutex> lock(m_mutex);
    if (!m_changed.wait_for(lock, limit, [this] { return m_isDone; }))
        m_engine->setInterrupted(true);
}

} // namespace Morvex
