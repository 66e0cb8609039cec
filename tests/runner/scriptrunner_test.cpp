#include "runner/applications.h"
#include "runner/scriptrunner.h"
#include "support/environmentguard.h"

#include <QDir>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <csignal>

using namespace Morvex;
using namespace MorvexTest;

class ScriptRunnerTest : public testing::Test
{
protected:
    SharedPtr<ApplicationContext> start(const QString &command)
    {
        return runner.startApplication(command, "localhost", 0, 20000, &error);
    }

    EnvironmentGuard prefix{"MORVEX_PREFIX", MORVEX_TEST_PREFIX};
    EnvironmentGuard platform{"QT_QPA_PLATFORM", "offscreen"};
    Applications applications{{}, {}};
    ScriptRunner runner{nullptr, "suite/tst_a/script.js", {}, &applications};
    QString error;
};

TEST_F(ScriptRunnerTest, ApplicationsAreStartedAndSwitched)
{
    EXPECT_FALSE(runner.startApplication("x", "other.host", 0, 100, &error));
    EXPECT_TRUE(error.contains("'other.host'"));
    error.clear();
    const auto first = start("\"" MORVEX_AWKWARD_PROGRAM "\" word");
    ASSERT_TRUE(first) << error.toStdString();
    const auto second = start("inventory");
    ASSERT_TRUE(second) << error.toStdString();
    EXPECT_EQ(runner.defaultApplicationContext()->id, second->id);
    EXPECT_EQ(runner.applicationContextList().size(), 2);
    runner.setApplicationContext(runner.applicationContext("awkward_program"));
    EXPECT_EQ(runner.defaultApplicationContext()->id, first->id);
    EXPECT_TRUE(runner.waitForObject("print", true, 60000));
    runner.detachFromApplication(first);
    EXPECT_FALSE(runner.defaultApplicationContext());
    EXPECT_FALSE(runner.waitForObject("print", true, 0));
    EXPECT_TRUE(runner.isRunning(first));
}

TEST_F(ScriptRunnerTest, ProcessesOfALauncherAreFound)
{
    QTemporaryDir dir;
    const auto context = runner.startLauncher(
        "sh -c", {}, 0, 20000,
        {{"arguments", QStringList{"\"$0\" & exec \"$0\"", MORVEX_AWKWARD_PROGRAM}},
         {"cwd", dir.path()},
         {"environment", QVariantMap{{"COLOUR", "green = blue"}}}},
        &error);
    ASSERT_TRUE(context) << error.toStdString();
    EXPECT_EQ(runner.currentWorkingDirectory(context), QDir(dir.path()).canonicalPath());
    EXPECT_EQ(runner.environmentVariable(context, "COLOUR"), "green = blue");
    EXPECT_FALSE(runner.waitForApplicationLaunch(0, &error));
    const auto other = runner.attachToApplication("awkward_program", {}, 0, 20000, &error);
    ASSERT_TRUE(other) << error.toStdString();
    EXPECT_NE(other->processId, context->processId);
    EXPECT_FALSE(runner.attachToApplication("nothing", {}, 0, 0, &error));
}

TEST_F(ScriptRunnerTest, ALaunchIsWaitedForWhereSubprocessesAreHooked)
{
    Applications::Settings settings;
    settings.hooksSubProcesses = true;
    Applications hooked({}, settings);
    ScriptRunner other(nullptr, "suite/tst_a/script.js", {}, &hooked);
    const auto first = other.startLauncher(
        "sh -c", {}, 0, 20000,
        {{"arguments", QStringList{"\"$0\" & exec \"$0\"", MORVEX_AWKWARD_PROGRAM}}}, &error);
    ASSERT_TRUE(first) << error.toStdString();
    const auto launched = other.waitForApplicationLaunch(60000, &error);
    ASSERT_TRUE(launched) << error.toStdString();
    EXPECT_NE(launched->processId, first->processId);
    EXPECT_EQ(other.defaultApplicationContext()->id, launched->id);
}

TEST_F(ScriptRunnerTest, TheSystemKnowsFactsOfAContext)
{
    const auto context = start(MORVEX_AWKWARD_PROGRAM);
    ASSERT_TRUE(context) << error.toStdString();
    EXPECT_EQ(runner.hostForContext(context), "127.0.0.1");
    EXPECT_EQ(runner.osName(context).toLower(), QSysInfo::kernelType());
    EXPECT_GT(runner.usedMemory(context), 1000000U);
    EXPECT_LT(runner.totalTime(context), 600000U);
    EXPECT_EQ(runner.processId(context), context->processId);
    EXPECT_FALSE(runner.isFrozen(context, 10000));
    ::kill(static_cast<pid_t>(context->processId), SIGSTOP);
    EXPECT_TRUE(runner.isFrozen(context, 50));
    EXPECT_TRUE(runner.isRunning(context));
    ::kill(static_cast<pid_t>(context->processId), SIGKILL);
    while (runner.isRunning(context))
        runner.snooze(0.01);
    EXPECT_EQ(runner.usedMemory(context), 0U);
    EXPECT_FALSE(runner.isFrozen(context, 50));
}

TEST_F(ScriptRunnerTest, ObjectsAndItemsAreWaitedFor)
{
    ASSERT_TRUE(start("inventory")) << error.toStdString();
    EXPECT_TRUE(runner.waitForObjectExists("add", false, 60000));
    // There is nothing to add yet.
    EXPECT_FALSE(runner.waitForObject("add", true, 50));
    const SharedPtr<Object> articles = runner.waitForObject("articles", true, 60000);
    ASSERT_TRUE(articles);
    EXPECT_TRUE(runner.waitForObject(articles, true, 0));
    EXPECT_TRUE(runner.waitForObjectItem("articles", {}, "Bolts", 60000));
    EXPECT_TRUE(runner.waitForObjectItem({}, articles, 0, 1, 60000));
    EXPECT_FALSE(runner.waitForObjectItem({}, articles, "Nothing", 50));
    // In the application that the object is of.
    ASSERT_TRUE(start(MORVEX_AWKWARD_PROGRAM)) << error.toStdString();
    EXPECT_TRUE(runner.waitForObjectItem({}, articles, "Bolts", 60000));
}

TEST_F(ScriptRunnerTest, WhatAnApplicationPrintsIsRead)
{
    const auto context = runner.startLauncher(
        "sh -c", {}, 0, 20000,
        {{"arguments", QStringList{"echo out; echo err >&2; exec \"$0\"", MORVEX_AWKWARD_PROGRAM}}},
        &error);
    ASSERT_TRUE(context) << error.toStdString();
    EXPECT_EQ(runner.readStdout(context), "out\n");
    EXPECT_EQ(runner.readStderr(context), "err\n");
}
