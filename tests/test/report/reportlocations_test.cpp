#include "test/report/reportlocations.h"

#include "support/runs.h"
#include "support/test.h"

using namespace Morvex;
using namespace MorvexTest;

TEST(ReportLocationsTest, AFileThatComesDuringTheRunIsFoundThroughItsLink)
{
    const QTemporaryDir dir;
    const QString suite = QDir(dir.path()).canonicalPath() + "/suite";
    QDir().mkpath(suite + "/points");
    const QString link = dir.path() + "/link";
    TestResult::Entry start = plainEntry(TestResult::START);
    start.line = LineInfo(suite, -1);
    ReportLocations locations(TestReportGenerator::TEST_SUITE, QString());
    locations.update(start);

    EXPECT_EQ(locations.scriptFile(link + "/VP1"), "file://" + (link + "/VP1").toStdString());
    QFile::link(suite + "/points", link);
    writeFile(suite + "/points/VP1", "x");
    EXPECT_EQ(locations.scriptFile(link + "/VP1"), "x-testsuite:/points/VP1");
}

TEST(ReportLocationsTest, ANewRunForgetsTheDirectoriesOfTheOneBefore)
{
    const QTemporaryDir dir;
    const QString root = QDir(dir.path()).canonicalPath();
    writeFile(root + "/a/script.js", "x");
    ReportLocations locations(TestReportGenerator::TEST_SUITE, QString());
    TestResult::Entry start = plainEntry(TestResult::START);
    for (const auto &[suite, expected] :
         {std::pair("/a", "x-testsuite:/script.js"), std::pair("", "x-testsuite:/a/script.js")}) {
        start.line = LineInfo(root + suite, -1);
        locations.update(start);
        EXPECT_EQ(locations.scriptFile(root + "/a/script.js"), expected);
    }
}
