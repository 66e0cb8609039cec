#include "support/temporaryroot.h"

#include <QApplication>
#include <gtest/gtest.h>

// The main function of test programs with windows.
int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    testing::InitGoogleTest(&argc, argv);
    QApplication application(argc, argv);
    const MorvexTest::TemporaryRoot temporary;
    QApplication::setQuitOnLastWindowClosed(false);
    return RUN_ALL_TESTS();
}
