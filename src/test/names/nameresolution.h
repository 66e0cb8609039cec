#pragma once

#include <QHash>
#include <QSet>
#include <QString>

namespace Morvex {

/// What the names of an object map came to, and those that are being resolved, while one call from
/// outside runs: names may share what they refer to, and refer to each other in a circle.
struct NameResolution
{
    /// A call. What is known ends with the outermost one.
    class Scope
    {
    public:
        explicit Scope(NameResolution *resolution)
            : m_resolution(resolution)
        {
            ++m_resolution->m_depth;
        }

        ~Scope()
        {
            if (--m_resolution->m_depth == 0)
                *m_resolution = {};
        }

        Scope(const Scope &) = delete;
        Scope &operator=(const Scope &) = delete;

    private:
        NameResolution *m_resolution;
    };

    /// Of names to the code that refers to them.
    QHash<QString, QString> resolved;
    QSet<QString> underWay;

private:
    int m_depth = 0;
};

} // namespace Morvex
