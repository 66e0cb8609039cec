#pragma once

#include <algorithm>
#include <chrono>
#include <functional>
#include <limits>

namespace MorvexBenchmark {

inline double secondsOf(const std::function<void()> &work)
{
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

/// The shortest times of a piece of work and of the same work at its limit, measured in turns: what
/// else the machine does only makes them longer.
class Ratio
{
public:
    /// The seconds that the work took.
    double measure(const std::function<void()> &work, const std::function<void()> &limit)
    {
        const double seconds = secondsOf(work);
        m_work = std::min(m_work, seconds);
        m_limit = std::min(m_limit, secondsOf(limit));
        return seconds;
    }

    double value() const { return m_work / m_limit; }

private:
    double m_work = std::numeric_limits<double>::max();
    double m_limit = std::numeric_limits<double>::max();
};

} // namespace MorvexBenchmark
