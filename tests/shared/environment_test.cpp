#include "shared/environment.h"

#include "shared/clock.h"
#include "shared/realpath.h"
#include "shared/settings.h"
#include "support/environmentguard.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QThread>

#include <clocale>
#include <gtest/gtest.h>

using namespace Morvex;
using MorvexTest::EnvironmentGuard;

TEST(EnvironmentTest, AVariableThatIsNotSetReadsAsEmpty)
{
    Environment::unsetVariable("MORVEX_TEST_VALUE");
    EXPECT_EQ(Environment::getVariable("MORVEX_TEST_VALUE"), "");
    Environment::setVariable("MORVEX_TEST_VALUE", "one");
    Environment::setVariable("MORVEX_TEST_VALUE", "two");
    EXPECT_EQ(Environment::getVariable("MORVEX_TEST_VALUE"), "two");
    Environment::unsetVariable("MORVEX_TEST_VALUE");
    EXPECT_FALSE(qEnvironmentVariableIsSet("MORVEX_TEST_VALUE"));
}

TEST(EnvironmentTest, TextsAreInTheEncodingOfTheLocaleOutside)
{
    ASSERT_TRUE(std::setlocale(LC_CTYPE, "C.UTF-8"));
    Environment::setVariable("MORVEX_TEST_VALUE", "grün");
    EXPECT_EQ(qgetenv("MORVEX_TEST_VALUE"), QByteArray("grün"));
    EXPECT_EQ(Environment::getVariable("MORVEX_TEST_VALUE"), "grün");
    Environment::unsetVariable("MORVEX_TEST_VALUE");
}

TEST(EnvironmentTest, TextThatTheLocaleCannotHoldStaysAsItIs)
{
    std::setlocale(LC_CTYPE, "C");
    testing::internal::CaptureStderr();
    const std::string converted = utf8ToLocal8Bit("grün");
    const std::string message = testing::internal::GetCapturedStderr();
    std::setlocale(LC_CTYPE, "C.UTF-8");
    EXPECT_EQ(converted, "grün");
    EXPECT_EQ(message.substr(0, 7), "iconv: ");
}

TEST(ClockTest, StampsFollowTheClock)
{
    for (int i = 0; i < 50; ++i) {
        const QDateTime before = QDateTime::currentDateTime();
        const QDateTime now = currentLocalTime();
        EXPECT_LE(before, now);
        EXPECT_LE(now, QDateTime::currentDateTime());
        EXPECT_EQ(now.timeSpec(), Qt::LocalTime);
        QThread::usleep(300);
    }
}

TEST(RealPathTest, ResolvesLinksAndLeavesWhatDoesNotExist)
{
    QTemporaryDir dir;
    const QString base = realPath(dir.path());
    ASSERT_TRUE(QDir(base).mkpath("a/b"));
    ASSERT_TRUE(QFile::link(base + "/a/b", base + "/link"));
    EXPECT_EQ(realPath(base + "/link/../b"), base + "/a/b");
    EXPECT_EQ(realPath("no/such/file"), "no/such/file");
    EXPECT_EQ(realPath("."), realPath(QDir::currentPath()));
}

TEST(SettingsTest, TheSettingsDirectoryIsCreatedWhereTheUserWantsIt)
{
    QTemporaryDir dir;
    const QString wanted = dir.filePath("deep/er");
    const EnvironmentGuard home("HOME", dir.path().toLocal8Bit());
    {
        const EnvironmentGuard guard("MORVEX_USER_SETTINGS_DIR", wanted.toLocal8Bit());
        EXPECT_EQ(Settings::morvexSettingsDir(), wanted);
        EXPECT_TRUE(QDir(wanted).exists());
    }
    const EnvironmentGuard guard("MORVEX_USER_SETTINGS_DIR", QByteArray());
    EXPECT_EQ(Settings::morvexSettingsDir(), dir.filePath(".morvex"));
    EXPECT_TRUE(QDir(dir.filePath(".morvex")).exists());
}
