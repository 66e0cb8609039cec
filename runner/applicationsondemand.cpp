#include "runner/applicationsondemand.h"

#include "runner/runnerlibrary.h"

namespace Morvex {

ApplicationsOnDemand::ApplicationsOnDemand(const ApplicationAccess::TestCase &testCase)
    : m_testCase(testCase)
{
}

ApplicationAccess *ApplicationsOnDemand::get(QString *error)
{
    if (m_access)
        return m_access.get();
    const RunnerLibrary *library = runnerLibrary(error);
    if (!library)
        return nullptr;
    m_access = library->makeApplicationAccess(m_testCase);
    *error = m_access->prepare();
    if (!error->isEmpty())
        m_access.reset();
    return m_access.get();
}

} // namespace Morvex
