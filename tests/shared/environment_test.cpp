#include "shared/environment.h"

#include "shared/realpath.h"
#include "shared/system/clock.h"
#include "support/test.h"

#include <QThread>

#include <clocale>

using namespace Morvex;

TEST(EnvironmentTest, TextsAreInTheEncodingOfTheLocaleOutside)
{
    ASSERT_TRUE(std::setlocale(LC_CTYPE, "C.UTF-8"));
    Environment::setVariable("MORVEX_TEST_VALUE", "one");
    Environment::setVariable("MORVEX_TEST_VALUE", "grün");
    EXPECT_EQ(qgetenv("MORVEX_TEST_VALUE"), QByteArray("grün"));
    EXPECT_EQ(Environment::getVariable("MORVEX_TEST_VALUE"), "grün");
    Environment::unsetVariable("MORVEX_TEST_VALUE");
    EXPECT_EQ(Environment::getVariable("MORVEX_TEST_VALUE"), "");
    EXPECT_FALSE(qEnvironmentVariableIsSet("MORVEX_TEST_VALUE"));
}

TEST(EnvironmentTest, TextThatTheLocaleCannotHoldStaysAsItIs)
{
    std::setlocale(LC_CTYPE, "C");
    const std::string message =
        MorvexTest::standardErrorOf([] { EXPECT_EQ(utf8ToLocal8Bit("grün"), "grün"); });
    std::setlocale(LC_CTYPE, "C.UTF-8");
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
