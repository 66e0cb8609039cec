#pragma once

#include <algorithm>
#include <chrono>
#include <ctime>
#include <functional>
#include <limits>

namespace MorvexBenchmark {

inline double secondsOf(const std::function<void()> &work)
{
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

/// The time that this thread computed: of work that waits for nothing, also while others compute.
inline double computedSecondsOf(const std::function<void()> &work)
{
    const auto now = [] {
        timespec time{};
        clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
        return double(time.tv_sec) + double(time.tv_nsec) / 1e9;
    };
    const double start = now();
    work();
    return now() - start;
}

/// The shortest times of a piece of work and of the same work at its limit, measured in turns: what
/// else the machine does only makes them longer.
class Ratio
{
public:
    using Clock = double (*)(const std::function<void()> &);

    explicit Ratio(Clock clock = secondsOf)
        : m_clock(clock)
    {
    }

    /// The seconds that the work took.
    double measure(const std::function<void()> &work, const std::function<void()> &limit)
    {
        const double seconds = m_clock(work);
        m_work = std::min(m_work, seconds);
        m_limit = std::min(m_limit, m_clock(limit));
        return seconds;
    }

    double value() const { return m_work / m_limit; }

private:
    Clock m_clock;
    double m_work = std::numeric_limits<double>::max();
    double m_limit = std::numeric_limits<double>::max();
};

} // namespace MorvexBenchmark
