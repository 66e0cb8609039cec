#include "test/dummyrunnerinterface.h"

#include "test/nullreportgenerator.h"
#include "test/testresult.h"

#include <gtest/gtest.h>

using namespace Morvex;

TEST(DummyRunnerInterfaceTest, AnswersWithNothingAndKeepsOnlyItsLogAndItsScenarios)
{
    TestResult log(new NullReportGenerator);
    DummyRunnerInterface runner(&log);
    EXPECT_EQ(runner.currentTestResult(), &log);
    runner.scenarioIndices().push_back(3);
    EXPECT_EQ(runner.scenarioIndices(), std::vector<unsigned int>{3});
    runner.setResultDirectory("/somewhere");
    EXPECT_EQ(runner.resultDirectory(), QString());
    EXPECT_EQ(runner.recordScreen(runner.defaultApplicationContext(), nullptr).error,
              "Not implemented in dummy runner");
    EXPECT_EQ(runner.connectToDefaultMorvexServer(nullptr), -1);
    const SharedPtr<ApplicationContext> context =
        runner.startApplication("a", "host", 1, 1, nullptr);
    ASSERT_TRUE(context);
    EXPECT_NE(context, runner.startApplication("a", "host", 1, 1, nullptr));
    EXPECT_EQ(context->id, -1);
    EXPECT_EQ(context->port, -1);
    EXPECT_EQ(runner.waitForObject("a", true, 60000), SharedPtr<Object>());
}
