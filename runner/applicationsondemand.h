#pragma once

#include "runner/applicationaccess.h"

#include <memory>

namespace Morvex {

/// The access of a test case to applications, which is made when it is first asked for.
class ApplicationsOnDemand
{
public:
    explicit ApplicationsOnDemand(const ApplicationAccess::TestCase &testCase);

    /// Prepared; null with an error text when that is not possible. @p error must not be null.
    ApplicationAccess *get(QString *error);

    /// Null before it was asked for.
    ApplicationAccess *existing() const { return m_access.get(); }

private:
    ApplicationAccess::TestCase m_testCase;
    std::unique_ptr<ApplicationAccess> m_access;
};

} // namespace Morvex
