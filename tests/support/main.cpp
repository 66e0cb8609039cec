#include <QCoreApplication>
#include <gtest/gtest.h>

int main(int argc, char **argv)
{
    // Death tests run the test program anew; forking one with Qt threads in it may hang.
    testing::GTEST_FLAG(death_test_style) = "threadsafe";
    testing::InitGoogleTest(&argc, argv);
    QCoreApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
