#include "support/environmentguard.h"

#include <QtGlobal>

namespace MorvexTest {

EnvironmentGuard::EnvironmentGuard(const char *name, const QByteArray &value)
    : m_name(name)
    , m_wasSet(qEnvironmentVariableIsSet(name))
    , m_before(qgetenv(name))
{
    if (value.isNull())
        qunsetenv(name);
    else
        qputenv(name, value);
}

EnvironmentGuard::~EnvironmentGuard()
{
    if (m_wasSet)
        qputenv(m_name, m_before);
    else
        qunsetenv(m_name);
}

} // namespace MorvexTest
