#include "support/runnerprocess.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace MorvexTest;

TEST(DemoSuiteTest, ShowsEachKindOfResult)
{
    QTemporaryDir marker;
    RunnerProcess runner;
    runner.environment.insert("TMPDIR", marker.path());
    const RunnerOutput output = runner.run({"--skip", "tst_skipped", "--timeout", "2", "--retry",
                                            "1", MORVEX_SOURCE_DIR "/examples/demo_suite"});
    EXPECT_TRUE(output.standardError.contains(
        "10 test cases, 4 failed, 1 passed when retried, 1 skipped in "));
    const QStringList results = RunnerProcess::resultsOf(output);
    for (const char *type : {"PASS ", "FAIL ", "XFAIL ", "ERROR ", "FATAL ", "WARNING "})
        EXPECT_FALSE(results.filter(QRegExp("^" + QString(type))).isEmpty()) << type;
}
