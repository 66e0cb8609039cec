#include "test/testsuite.h"

#include "test/suite/childarguments.h"
#include "test/suite/suiterun.h"
#include "test/testcaseprocess.h"

#include <QProcess>

// The part of TestSuite that starts child processes.

namespace Morvex {

void TestSuite::run(const QString &host, int port, TestResult *result, const QStringList &testCases,
                    const QString &resultDir, double snoozeFactor, unsigned int timeoutSeconds,
                    bool stopOnFail, unsigned int retryCount, unsigned int randomSeed,
                    const QStringList &envVars, bool interactive)
{
    SuiteRun(*this, result,
             {host, port, resultDir, snoozeFactor, timeoutSeconds, stopOnFail, retryCount,
              randomSeed, envVars, interactive})
        .run(testCases);
}

bool TestSuite::runTestCase(const QString &testCase, const QString &host, int port,
                            TestResult *result, const QString &resultDir, double snoozeFactor,
                            unsigned int timeoutSeconds, int retriesLeft, int retryOption,
                            const QStringList &envVars, bool interactive)
{
    SuiteRun attempt(
        *this, result,
        {host, port, resultDir, snoozeFactor, timeoutSeconds, false, 0, 0, envVars, interactive});
    return attempt.runAttempt(testCase, retriesLeft, retryOption).code !=
           TestCaseProcess::CANCELLED;
}

void TestSuite::record(bool disableEventCompression, bool useWaitFor, bool useScriptedObjectMap,
                       const QString &testCase, const QStringList &testData, const QString &host,
                       int port, const QStringList &envVars)
{
    SuiteRun::setSuiteDirVariable(*this);
    const RecordOptions options{
        host, port, testData, disableEventCompression, useWaitFor, useScriptedObjectMap, envVars};
    QProcess::startDetached(TestCaseProcess::program(),
                            ChildArguments(*this).forRecording(testCase, options));
}

} // namespace Morvex
