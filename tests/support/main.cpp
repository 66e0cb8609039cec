#include "support/temporaryroot.h"

#include <QCoreApplication>

#include <csignal>
#include <gtest/gtest.h>

// minizip keeps the header of a file that it could not add; nobody outside of it can free it.
extern "C" Q_DECL_EXPORT const char *__lsan_default_suppressions()
{
    return "leak:zipOpenNewFileInZip4_64\n";
}

int main(int argc, char **argv)
{
    // Shells ignore it in what they run in the background, and so would the runs that are tested.
    std::signal(SIGINT, SIG_DFL);
    // Death tests run the test program again; forking one with Qt threads in it may hang.
    testing::GTEST_FLAG(death_test_style) = "threadsafe";
    testing::InitGoogleTest(&argc, argv);
    QCoreApplication application(argc, argv);
    const MorvexTest::TemporaryRoot temporary;
    return RUN_ALL_TESTS();
}
