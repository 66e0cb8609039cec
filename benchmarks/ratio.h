#pragma once

#include <chrono>
#include <functional>

namespace MorvexBenchmark {

inline double secondsOf(const std::function<void()> &work)
{
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

/// Adds up the times of a piece of work and of the same work at its limit, measured in turns so
/// that both see the same machine.
class Ratio
{
public:
    /// The seconds that the work took.
    double measure(const std::function<void()> &work, const std::function<void()> &limit)
    {
        const double seconds = secondsOf(work);
        m_work += seconds;
        m_limit += secondsOf(limit);
        return seconds;
    }

    double value() const { return m_work / m_limit; }

private:
    double m_work = 0;
    double m_limit = 0;
};

} // namespace MorvexBenchmark
