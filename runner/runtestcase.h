#pragma once

#include "test/testreportgenerator.h"

#include <QString>

#include <functional>

namespace Morvex {

class TestResult;
struct RunnerOptions;

/// Makes the report that the options name. Stores the directory of its results, if it has one.
using ReportMaker =
    std::function<TestReportGenerator::Result(const RunnerOptions &options, QString *resultDir)>;

/// Called when the test case has ended and before the run does, with the directory of results.
using RunEnd = std::function<void(TestResult *result, const QString &resultDir)>;

/// Runs one test case of the suite in the current directory, in this process, and returns the exit
/// status.
int runTestCase(const RunnerOptions &options, const ReportMaker &makeReport, const RunEnd &atEnd);

/// What begins the name of the one report of a process that a suite runs a test case in.
QString reportStreamPrefix();

/// Whether a run of a suite has started this process for a test case and reads its report.
bool isReportStreamed(const RunnerOptions &options);

/// The same for such a process.
int runTestCaseOfSuite(const RunnerOptions &options);

} // namespace Morvex
