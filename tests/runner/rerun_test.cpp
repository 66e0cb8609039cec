#include "support/runnerfixture.h"

#include <QDir>
#include <QFile>

using namespace MorvexTest;

namespace {

class RerunTest : public RunnerFixture
{
protected:
    // A test case that fails until its file "works" exists.
    void addMendable(const QString &name)
    {
        runner.addTestCase(name, "check.that(file.exists('works'), 'm');");
    }
};

} // namespace

TEST_F(RerunTest, JustTheFailedTestCasesRunAgain)
{
    addPassing({"tst_a"});
    addMendable("tst_b");
    addMendable("tst_c");
    const RunnerOutput first = runner.runSuite({});
    EXPECT_EQ(first.status, 1);
    EXPECT_TRUE(first.standardError.contains("failed: tst_b\nmorvexrunner: failed: tst_c\n"));
    EXPECT_TRUE(first.standardError.contains("morvexrunner --rerun-failed " +
                                             runner.suitePath().toUtf8() + "\n"));
    runner.addFile("tst_b/works", "");
    // What failed is that of a suite, whatever it is called.
    ASSERT_TRUE(QFile::link(runner.suitePath(), runner.suitePath() + "/../link"));
    EXPECT_EQ(RunnerProcess::startsOf(runner.run({"--rerun-failed", "link"})),
              (QStringList{"tst_b", "tst_c"}));
    EXPECT_EQ(RunnerProcess::startsOf(runner.runSuite({"--rerun-failed"})), (QStringList{"tst_c"}));
    runner.addFile("tst_c/works", "");
    EXPECT_EQ(runner.runSuite({"--rerun-failed"}).status, 0);
    const RunnerOutput nothing = runner.runSuite({"--rerun-failed"});
    EXPECT_EQ(nothing.status, 0);
    EXPECT_EQ(nothing.standardError,
              "morvexrunner: no test case failed in the last run, nothing to do\n");
}

TEST_F(RerunTest, FailedTestCasesThatWereNotReachedStayOnTheList)
{
    addMendable("tst_a");
    addMendable("tst_b");
    runner.runSuite({});
    EXPECT_EQ(RunnerProcess::startsOf(runner.runSuite({"--rerun-failed", "--stop-on-fail"})),
              QStringList("tst_a"));
    EXPECT_EQ(RunnerProcess::startsOf(runner.runSuite({"--rerun-failed"})),
              (QStringList{"tst_a", "tst_b"}));
    QDir(runner.suitePath() + "/tst_a").removeRecursively();
    const RunnerOutput output = runner.runSuite({"--rerun-failed"});
    EXPECT_EQ(RunnerProcess::startsOf(output), QStringList("tst_b"));
    EXPECT_TRUE(output.standardError.contains("the failed test case 'tst_a' no longer exists"));
}

TEST_F(RerunTest, TheRerunCommandCanBePastedWhateverTheNamesAre)
{
    runner.addTestCase("tst_new\nline 'x' %41", "check.that(file.exists('works'), 'm');");
    const RunnerOutput first = runner.run(
        {"--envvar", "A=b c", "--reportgen", "null", runner.suitePath() + "/../suite/."});
    const QByteArray marker = "run just the failed ones again: ";
    const QByteArray command =
        first.standardError.mid(first.standardError.indexOf(marker) + marker.size()).trimmed();
    runner.addFile("tst_new\nline 'x' %41/works", "");
    const RunnerOutput again = runBy("/bin/sh", {"-c", command});
    EXPECT_EQ(again.status, 0) << command.constData() << again.standardError.constData();
    EXPECT_TRUE(again.standardError.contains("1 test case, 0 failed"));
}

TEST_F(RerunTest, TheSettingsDirectoryIsThatOfTheCaller)
{
    addMendable("tst_a");
    runner.environment.insert("MORVEX_USER_SETTINGS_DIR", "relative");
    EXPECT_EQ(runner.runSuite({}).status, 1);
    EXPECT_EQ(RunnerProcess::startsOf(runner.runSuite({"--rerun-failed"})), QStringList("tst_a"));
    EXPECT_FALSE(QFile::exists(runner.suitePath() + "/relative"));
    // One that can't be written is a warning.
    runner.addFile("tst_a/works", "");
    runner.environment.insert("MORVEX_USER_SETTINGS_DIR", runner.suitePath() + "/suite.conf/x");
    const RunnerOutput output = runner.runSuite({});
    EXPECT_EQ(output.status, 0);
    EXPECT_TRUE(output.standardError.contains("morvexrunner: warning: cannot keep the failed"));
}
