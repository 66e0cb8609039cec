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
    EXPECT_EQ(output.status, 1);
    for (const char *line :
         {"failed: tst_failures\n", "failed: tst_exception\n", "failed: tst_crash\n",
          "failed: tst_timeout\n", "passed when retried: tst_flaky\n",
          "10 test cases, 4 failed, 1 passed when retried, 1 skipped in "})
        EXPECT_TRUE(output.standardError.contains(line)) << line;
    const QStringList results = RunnerProcess::resultsOf(output);
    for (const char *type : {"PASS ", "FAIL ", "XFAIL ", "ERROR ", "FATAL ", "WARNING ",
                             "SKIP_SECTION ", "LOG Start Section: Login"})
        EXPECT_FALSE(results.filter(QRegExp("^" + QString(type))).isEmpty()) << type;
    EXPECT_EQ(RunnerProcess::startsOf(
                  runner.run({"--tags", "nightly", MORVEX_SOURCE_DIR "/examples/demo_suite"})),
              QStringList("tst_tags"));
}
