#include "runner/signals.h"

#include "support/files.h"
#include "support/processes.h"
#include "support/runnerfixture.h"
#include "test/cancellation.h"

#include <QCoreApplication>
#include <QFile>
#include <QThread>

#include <csignal>
#include <sys/wait.h>
#include <unistd.h>

using namespace Morvex;
using namespace MorvexTest;

namespace {

class InterruptionTest : public RunnerFixture
{
protected:
    // Starts a run whose test case does not end, and waits until it runs.
    void startEndless(QProcess &process, const QStringList &options = {})
    {
        const QString marker = runner.suitePath() + "/tst_a/started";
        QFile::remove(marker);
        runner.addTestCase("tst_a", "file.write('started', ''); for (;;) {}");
        process.setProcessEnvironment(runner.environment);
        process.start(RunnerProcess::program(), options + QStringList(runner.suitePath()));
        while (!QFile::exists(marker) && !process.waitForFinished(10))
            ;
    }

    static pid_t childOf(pid_t pid)
    {
        return readFile(QString("/proc/%1/task/%1/children").arg(pid)).trimmed().toInt();
    }

    static bool isPending(pid_t pid, int signal)
    {
        const QString status = readFile(QString("/proc/%1/status").arg(pid));
        const QString mask = status.section("ShdPnd:", 1).section('\n', 0, 0).trimmed();
        return (mask.toULongLong(nullptr, 16) >> (signal - 1) & 1) != 0;
    }

    static bool hasEnded(pid_t pid)
    {
        for (int i = 0; i < 3000; ++i) {
            if (!isRunning(pid))
                return true;
            QThread::msleep(20);
        }
        return false;
    }
};

} // namespace

TEST_F(InterruptionTest, AnInterruptedRunClosesItsLog)
{
    addPassing({"tst_b"});
    for (const int signal : {SIGINT, SIGTERM}) {
        QProcess process;
        startEndless(process, {"--retry", "2"});
        ::kill(static_cast<pid_t>(process.processId()), signal);
        ASSERT_TRUE(process.waitForFinished(120000));
        const RunnerOutput output = outputOf(process);
        EXPECT_EQ(output.status, 130);
        EXPECT_EQ(RunnerProcess::startsOf(output), QStringList("tst_a"));
        EXPECT_EQ(RunnerProcess::resultsOf(output).filter("FATAL Execution error|").size(), 1);
        EXPECT_TRUE(output.standardOutput.contains("Summary:"));
        EXPECT_TRUE(output.standardError.contains(", interrupted in "));
    }
}

TEST_F(InterruptionTest, ASecondSignalEndsAtOnceAndLeavesNoChild)
{
    QProcess process;
    startEndless(process);
    const auto pid = static_cast<pid_t>(process.processId());
    const pid_t child = childOf(pid);
    ASSERT_GT(child, 0);
    // A stopped child does not follow the request to end.
    ::kill(child, SIGSTOP);
    ::kill(pid, SIGINT);
    // Two that wait would be one.
    while (isPending(pid, SIGINT))
        QThread::msleep(1);
    ::kill(pid, SIGINT);
    ASSERT_TRUE(process.waitForFinished(120000));
    EXPECT_EQ(process.exitCode(), 130);
    EXPECT_TRUE(hasEnded(child));
}

TEST_F(InterruptionTest, AChildDoesNotOutliveAKilledRunner)
{
    QProcess process;
    startEndless(process);
    const pid_t child = childOf(static_cast<pid_t>(process.processId()));
    process.kill();
    process.waitForFinished();
    EXPECT_TRUE(hasEnded(child));
}

// It shares the descriptor by which a request wakes the run up.
TEST_F(InterruptionTest, ASignalToAChildThatHasNoProgramYetEndsTheChildAlone)
{
    Cancellation cancellation;
    int requests = 0;
    QObject::connect(&cancellation, &Cancellation::requested, [&requests] { ++requests; });
    const CancelOnSignals cancelOnSignals(&cancellation);
    const pid_t child = ::fork();
    if (child == 0) {
        ::raise(SIGTERM);
        ::_exit(0);
    }
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGTERM) << status;
    QCoreApplication::processEvents();
    EXPECT_EQ(requests, 0);
}

TEST_F(InterruptionTest, AllEntriesBeforeACrashAreInTheReport)
{
    runner.addTestCase("tst_a", "section('s', function () {\n"
                                "  for (var i = 0; i < 1000; ++i) log.info(i);\n"
                                "  abortProcess();\n});");
    addPassing({"tst_b"});
    const RunnerOutput output = runner.runSuite({});
    const auto lines = RunnerProcess::report(output);
    ASSERT_EQ(lines.size(), 1U + 1 + 1 + 1000 + 1 + 1 + 1 + 1 + 3 + 1);
    for (std::size_t i = 0; i < 1000; ++i)
        ASSERT_TRUE(lines[3 + i].left.endsWith(QString(": %1").arg(i)));
    const QString place = runner.suitePath() + "/tst_a/script.js:2";
    EXPECT_TRUE(lines[1003].left.startsWith(place)) << lines[1003].left.toStdString();
    EXPECT_TRUE(lines[1003].left.contains("SIGABRT")) << lines[1003].left.toStdString();
    EXPECT_TRUE(lines[1003].right.endsWith(place)) << lines[1003].right.toStdString();
    EXPECT_EQ(lines[1004].type, "FATAL");
    EXPECT_EQ(lines[1004].right, "morvexrunner exited abnormally when executing tst_a");
    EXPECT_EQ(lines[1005].left, "End Section: auto-closed dangling section");
    EXPECT_EQ(lines[1006].type, "END_TEST_CASE");
    EXPECT_EQ(RunnerProcess::startsOf(output), (QStringList{"tst_a", "tst_b"}));
}
