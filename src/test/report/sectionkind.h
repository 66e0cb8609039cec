#pragma once

#include <QLatin1String>
#include <QString>

namespace Morvex {

// The kinds of sections, as TestResult::Entry::info and the reports have them.

namespace SectionKind {

const QLatin1String testSuite("testsuite");
/// Also of the section by which a suite says that it left a test case out.
const QLatin1String testCase("testcase");
/// Made by a script.
const QLatin1String userSection("section");
const QLatin1String feature("feature");
const QLatin1String scenario("scenario");
const QLatin1String scenarioOutline("scenariooutline");
const QLatin1String row("row");
const QLatin1String step("step");

} // namespace SectionKind

/// Whether the kind is that of scenarios and their outlines, which count their retries.
inline bool isScenario(const QString &kind)
{
    return kind.startsWith(SectionKind::scenario);
}

/// Whether the section may be an attempt of several: a scenario, or a row of an outline's examples.
/// Narrower rules ask for a scenario alone, since a row is repeated with the outline that it is in.
inline bool isRepeatable(const QString &kind)
{
    return isScenario(kind) || kind.startsWith(SectionKind::row);
}

} // namespace Morvex
