#include "test/report/junittestcase.h"

#include "test/report/junitshared.h"
#include "test/report/sectionkind.h"

namespace Morvex {
namespace {

bool isResultType(TestResult::ResultType type)
{
    return isJUnitFailure(type) || isJUnitError(type) || type == TestResult::PASS ||
           type == TestResult::XFAIL;
}

} // namespace

void JUnitTestCase::add(const TestResult::Entry &entry, std::size_t place)
{
    const TestResult::ResultType type = entry.type;
    isLeftOut |= type == TestResult::SKIP_SECTION && entry.info == SectionKind::testCase;
    results += isResultType(type) ? 1 : 0;
    failures += isJUnitFailure(type) ? 1 : 0;
    errors += isJUnitError(type) ? 1 : 0;
    entries.push_back(place);
}

void JUnitTestCase::takeOver(JUnitTestCase &section)
{
    milliseconds += section.milliseconds;
    entries.insert(entries.end(), section.entries.begin(), section.entries.end());
    section.entries = {};
}

QString JUnitTestCase::failureMessage() const
{
    if (errors > 0)
        return QStringLiteral("Test had %1 failures or errors").arg(failures + errors);
    return QStringLiteral("Test had %1 failures").arg(failures);
}

} // namespace Morvex
