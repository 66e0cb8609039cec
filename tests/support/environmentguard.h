#pragma once

#include <QByteArray>

namespace MorvexTest {

/// Sets an environment variable, and at the end of its life puts it back as it was.
class EnvironmentGuard
{
public:
    /// A null value unsets the variable.
    EnvironmentGuard(const char *name, const QByteArray &value);
    ~EnvironmentGuard();

    EnvironmentGuard(const EnvironmentGuard &) = delete;
    EnvironmentGuard &operator=(const EnvironmentGuard &) = delete;

private:
    const char *m_name;
    bool m_wasSet;
    QByteArray m_before;
};

} // namespace MorvexTest
