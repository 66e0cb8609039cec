#include "remote/processfacts.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace Morvex;

TEST(ProcessFactsTest, AProcessThatHasEndedDoesNotRunAlsoBeforeItsParentKnows)
{
    EXPECT_TRUE(ProcessFacts(::getpid()).isRunning());
    const pid_t child = ::fork();
    if (child == 0)
        ::_exit(0);
    siginfo_t info = {};
    ASSERT_EQ(::waitid(P_PID, id_t(child), &info, WEXITED | WNOWAIT), 0);
    EXPECT_FALSE(ProcessFacts(child).isRunning());
    ASSERT_EQ(::waitpid(child, nullptr, 0), child);
    EXPECT_FALSE(ProcessFacts(child).isRunning());
}
