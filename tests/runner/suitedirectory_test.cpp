#include "support/runnerprocess.h"
#include "support/test.h"

#include <sys/stat.h>
#include <unistd.h>

using namespace MorvexTest;

TEST(SuiteDirectoryTest, ATestCaseWhoseNameCannotBeReadIsNotLeftOutInSilence)
{
    RunnerProcess runner;
    runner.environment.insert("LC_ALL", "C.UTF-8");
    runner.addTestCase("tst_a", "check.pass('p');");
    const QByteArray directory = runner.suitePath().toLocal8Bit() + "/tst_\xff";
    ASSERT_EQ(::mkdir(directory.constData(), 0700), 0);
    EXPECT_EQ(runner.runSuite({"--list"}).standardError.count(" is left out: its name "), 1);
    EXPECT_EQ(runner.runSuite({"tst_a"}).standardError.count("left out"), 0);
    // Qt would leave it.
    ::rmdir(directory.constData());
}
