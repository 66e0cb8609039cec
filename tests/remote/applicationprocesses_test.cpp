#include "objectmodel/class.h"
#include "objectmodel/property.h"
#include "remote/remoteapplicationfixture.h"
#include "support/processes.h"

#include <QElapsedTimer>

#include <csignal>
#include <sys/wait.h>
#include <unistd.h>

using namespace Morvex;
using namespace MorvexTest;

using ApplicationProcessesTest = RemoteApplicationFixture;

TEST_F(ApplicationProcessesTest, NothingIsLeftOfAnApplicationAndWhatItStarted)
{
    auto application = start({MORVEX_AWKWARD_PROGRAM});
    ASSERT_NE(application, nullptr) << error.toStdString();
    EXPECT_EQ(temporaryDirectories().size(), 1);
    EXPECT_EQ(application->inspector()->findNamespace("None"), nullptr);
    EXPECT_EQ(click(application.get(), "leave"), QString());
    const SharedPtr<Object> window = application->inspector()->findObject("awkward", &error);
    ASSERT_TRUE(window);
    const SharedPtr<Object> child = window->objectClass()->property("child")->get(window);
    ASSERT_TRUE(child);
    const pid_t processes[] = {static_cast<pid_t>(application->processId()),
                               child->value().toInt()};
    for (const pid_t process : processes)
        EXPECT_TRUE(isRunning(process));
    application.reset();
    for (const pid_t process : processes)
        EXPECT_FALSE(isRunning(process));
    EXPECT_EQ(temporaryDirectories(), QStringList());
    // Objects may outlive their application.
    EXPECT_EQ(window->objectClass(), nullptr);
    EXPECT_EQ(window->valueText(), "(the application has been stopped)");
}

TEST_F(ApplicationProcessesTest, NothingIsLeftWhenAProcessIsKilled)
{
    const struct
    {
        bool isWatcher;
        bool isTestCase;
    } rows[] = {{true, false}, {false, true}, {true, true}};
    for (const auto &row : rows) {
        int ends[2];
        ASSERT_EQ(::pipe(ends), 0);
        const pid_t testCase = ::fork();
        if (testCase == 0) {
            auto application = start(
                {"/bin/sh", "-c", "mkdir -p \"$HOME/$(printf 'd/%.0s' $(seq 500))\"; exec \"$0\"",
                 MORVEX_AWKWARD_PROGRAM});
            pid_t processes[] = {0, 0, 0};
            if (application) {
                click(application.get(), "leave");
                const auto window = application->inspector()->findObject("awkward", nullptr);
                const auto child = window->objectClass()->property("child")->get(window);
                processes[2] = child->value().toInt();
                processes[0] = static_cast<pid_t>(application->processId());
                processes[1] = parentOf(processes[0]);
            }
            // 0 would be all processes of the test run.
            if (row.isWatcher && processes[1] > 1)
                ::kill(processes[1], SIGKILL);
            [[maybe_unused]] const ssize_t written = ::write(ends[1], processes, sizeof processes);
            while (row.isTestCase)
                ::pause();
            application.reset();
            ::_exit(0);
        }
        pid_t processes[3] = {0, 0, 0};
        ASSERT_EQ(::read(ends[0], processes, sizeof processes), ssize_t(sizeof processes));
        if (row.isTestCase)
            ::kill(testCase, SIGKILL);
        EXPECT_EQ(::waitpid(testCase, nullptr, 0), testCase);
        EXPECT_NE(processes[2], 0);
        QElapsedTimer timer;
        timer.start();
        const auto isLeft = [&] {
            return isRunning(processes[0]) || isRunning(processes[1]) || isRunning(processes[2]) ||
                   !temporaryDirectories().isEmpty();
        };
        while (isLeft() && timer.elapsed() < 30000)
            ::usleep(5000);
        EXPECT_FALSE(isLeft()) << row.isWatcher << row.isTestCase;
        ::close(ends[0]);
        ::close(ends[1]);
    }
}
