#include "objectmodel/class.h"
#include "objectmodel/property.h"
#include "remote/remoteapplicationfixture.h"
#include "remote/remotecontext.h"
#include "remote/remotesession.h"
#include "support/files.h"
#include "support/processes.h"

#include <QElapsedTimer>
#include <QFile>
#include <QSet>
#include <QStandardPaths>

#include <gtest/gtest.h>

#include <csignal>
#include <unistd.h>

using namespace Morvex;
using namespace MorvexTest;

using RemoteApplicationTest = RemoteApplicationFixture;

TEST_F(RemoteApplicationTest, TheEndOfTheOutputIsKeptWhateverTheApplicationDoesToIt)
{
#if defined(NDEBUG) && !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
    const QByteArray size = "2200000000";
#else
    const QByteArray size = "5000000";
#endif
    options.timeout = 200000;
    auto application = start({"/bin/sh", "-c",
                              "mkdir \"$HOME/d\"; touch \"$HOME/d/f\"; chmod 0 \"$HOME/d\";"
                              "yes | head -c " +
                                  size +
                                  "; printf end; echo warning >&2;"
                                  "exec \"$0\" >&- 2>&-",
                              MORVEX_AWKWARD_PROGRAM});
    ASSERT_NE(application, nullptr) << error.toStdString();
    EXPECT_EQ(application->standardOutput(), QString("y\n").repeated(524288).mid(3) + "end");
    EXPECT_EQ(application->standardError(), "warning\n");
    EXPECT_EQ(click(application.get(), "print"), QString());
    application.reset();
    EXPECT_EQ(temporaryDirectories(), QStringList());
}

TEST_F(RemoteApplicationTest, WhatStartsButCantBeTestedSaysWhy)
{
    const struct
    {
        QStringList command;
        const char *error;
    } rows[] = {
        {{"/nowhere/program"}, "cannot start '/nowhere/program': No such file or directory"},
        {{"/bin/sh", "-c", "exit 3"}, "'/bin/sh' ended with status 3 before it could be tested"},
        {{"/bin/sh", "-c", "kill -9 $$"}, "'/bin/sh' ended by signal 9 (Killed) before"},
        {{"/bin/sleep", "60"},
         "'/bin/sleep' gives no access to its windows within 3 seconds; it "
         "is running: no Qt is loaded"},
        {{MORVEX_QUICK_PROGRAM, "return"},
         "ended with status 5 before it could be tested; the white list does not name "
         "'quick_program'"},
        {{MORVEX_AWKWARD_PROGRAM, "return"}, "ended with status 5"},
        {{MORVEX_AWKWARD_PROGRAM, "sleep"}, "does not run within 10 seconds"},
    };
    options.whiteList = QStringList{"awkward_program", "other"};
    for (const auto &row : rows) {
        // It has to come as far as that, however slow the machine is.
        const bool hasQt = row.command.contains("sleep");
        options.timeout = hasQt ? 10000 : row.command.contains("60") ? 3000 : 60000;
        EXPECT_EQ(start(row.command), nullptr) << row.error;
        EXPECT_TRUE(error.contains(row.error)) << error.toStdString();
        EXPECT_EQ(temporaryDirectories(), QStringList()) << row.error;
    }
}

TEST_F(RemoteApplicationTest, AnAgentThatCantBeLoadedSaysWhy)
{
    const QString agent = dir.filePath("prefix/lib/agent/");
    writeFile(agent + "generic/morvexagent.so", "no library");
    for (const QString file : {"morvexpreload.so", "morvexwatcher"})
        QFile::link(MORVEX_TEST_PREFIX "/lib/agent/" + file, agent + file);
    options.command = QStringList{MORVEX_AWKWARD_PROGRAM, "return"};
    options.prefix = dir.filePath("prefix");
    EXPECT_EQ(RemoteApplication::start(options, &error), nullptr);
    EXPECT_TRUE(error.contains("ended with status 5 before it could be tested; its standard "
                               "error ends with 'the agent can't be loaded: " +
                               agent + "generic/morvexagent.so: "))
        << error.toStdString();
}

TEST_F(RemoteApplicationTest, AProgramThatLinksTheAgentIsUsedWhateverElseGetsIntoIt)
{
    const QStringList kept{"/usr/bin/env", "-u", "LD_PRELOAD", "-u", "QT_PLUGIN_PATH"};
    for (const QStringList &command : {kept, QStringList()}) {
        auto application = start(command + QStringList{MORVEX_QUICK_PROGRAM});
        ASSERT_NE(application, nullptr) << error.toStdString();
        RemoteInspector *inspector = application->inspector();
        // Items of Qt Quick are found by a library of the installation.
        EXPECT_TRUE(inspector->waitForObject("{name='label' container='inView'}", 60000, &error))
            << error.toStdString();
        EXPECT_TRUE(inspector->findObject("{name='window' hasClipboard='true'}", &error))
            << error.toStdString();
        EXPECT_EQ(application->contexts().size(), 1);
    }
}

TEST_F(RemoteApplicationTest, ItemsOfQtQuickAreUsedInAWindowAndInAWidget)
{
    auto application = start({MORVEX_QUICK_PROGRAM});
    ASSERT_NE(application, nullptr) << error.toStdString();
    RemoteInspector *inspector = application->inspector();
    inspector->callFunction("takeClicked", {}, &error);
    for (const QString top : {"inView", "inWidget"}) {
        const auto call = [&](const char *function, const QString &item,
                              const QVariantList &arguments) {
            const auto found = inspector->waitForObject(
                QString("{name='%1' container='%2'}").arg(item, top), 60000, &error);
            return found ? inspector->callFunction(function, QVariantList{found->id()} + arguments,
                                                   &error)
                         : QVariant();
        };
        for (const char *item : {"whole", "label", "half"}) {
            call("clickObject", item, {});
            EXPECT_EQ(error, "") << item;
        }
        call("clickObject", "half", {70, 20});
        EXPECT_TRUE(error.contains("is covered by {name='cover'")) << error.toStdString();
        EXPECT_TRUE(inspector->findObject(
            QString("{name='%1' clicked='whole whole half '}").arg(top), &error))
            << error.toStdString();
        QString names;
        for (const QVariant &clicked : inspector->callFunction("takeClicked", {}, &error).toList())
            names += clicked.toList().value(1).toString().section('\'', 1, 1) + ' ';
        EXPECT_EQ(names, "whole whole half ");
        call("typeText", "input", {"abc"});
        EXPECT_TRUE(inspector->findObject("{text='abc' window={name='window'}}", &error) ||
                    top == "inView")
            << error.toStdString();
        // A window needs a display for one.
        EXPECT_EQ(call("grabObjectScreenshot", "whole", {}).isValid(), top == "inWidget")
            << error.toStdString();
    }
}

TEST_F(RemoteApplicationTest, ObjectsOfQtQuickAreFoundByTheNamesThatAreMadeForThem)
{
    auto application = start({MORVEX_QUICK_PROGRAM});
    ASSERT_NE(application, nullptr) << error.toStdString();
    RemoteInspector *inspector = application->inspector();
    inspector->waitForObject("{name='label' container='inView'}", 60000, &error);
    QSet<int> ids;
    for (const QVariant &line : inspector->callFunction("nameTree", {}, &error).toList()) {
        const int id = line.toList().value(0).toInt();
        const QString name = line.toList().value(2).toString();
        EXPECT_FALSE(ids.contains(id)) << name.toStdString();
        ids.insert(id);
        const auto found = inspector->findObject(name, &error);
        EXPECT_EQ(found ? found->id() : 0, id) << name.toStdString() << error.toStdString();
    }
    const auto first = inspector->findObject("{title?='Items*' occurrence='1'}", &error);
    EXPECT_TRUE(first && first->valueText() == "{title='Items' type='QQuickView'}")
        << error.toStdString();
    EXPECT_TRUE(inspector->findObject("{title='dialog' container='inView'}", &error))
        << error.toStdString();
}

TEST_F(RemoteApplicationTest, AProgramMayBeStartedByAnother)
{
    options.variables = QStringList{"LD_PRELOAD=", "QT_QPA_GENERIC_PLUGINS=nothing"};
    // Also one that keeps the plugin of the agent from being found.
    for (const char *script :
         {"exec \"$0\"", "\"$0\"; true", "setsid \"$0\" & exit 0", "\"$1\" paths"}) {
        auto application =
            start({"/bin/sh", "-c", script, MORVEX_INVENTORY_PROGRAM, MORVEX_AWKWARD_PROGRAM});
        ASSERT_NE(application, nullptr) << script << ": " << error.toStdString();
        EXPECT_TRUE(application->inspector()->waitForObject("{type='QPushButton' occurrence='1'}",
                                                            60000, &error))
            << error.toStdString();
        EXPECT_EQ(application->contexts().size(), 1);
        const auto process = static_cast<pid_t>(application->processId());
        application.reset();
        EXPECT_FALSE(isRunning(process)) << script;
    }
}

TEST_F(RemoteApplicationTest, TheEndOfAnApplicationIsReportedAsWhatItWas)
{
    const struct
    {
        const char *starter;
        const char *button;
        const char *error;
    } rows[] = {
        {"exec \"$0\"", "crash", "the application has crashed by signal 11 (Segmentation fault)"},
        {"\"$0\"; exit $?", "crash",
         "the application has ended; the program that started it has ended with status 139, as a "
         "shell does after signal 11 (Segmentation fault)"},
        {"exec \"$0\"", "exit", "the application has ended with status 0"},
        {"exec \"$0\"", "quit", "the application has ended with status 0"},
    };
    for (const auto &row : rows) {
        auto application = start({"/bin/sh", "-c", row.starter, MORVEX_AWKWARD_PROGRAM});
        ASSERT_NE(application, nullptr) << error.toStdString();
        RemoteInspector *inspector = application->inspector();
        const SharedPtr<Object> window = inspector->waitForObject("awkward", 60000, &error);
        ASSERT_TRUE(window);
        click(application.get(), row.button);
        EXPECT_EQ(inspector->findObject("awkward", &error), SharedPtr<Object>());
        EXPECT_EQ(error, row.error);
        EXPECT_EQ(inspector->failure(), row.error);
        EXPECT_EQ(window->objectClass(), nullptr);
        EXPECT_EQ(inspector->globalClass()->methods("grabWidget"), nullptr);
        EXPECT_FALSE(application->isRunning());
    }
}

TEST_F(RemoteApplicationTest, ACallThatIsNotAnsweredIsAnErrorAndTheNextOneMayBe)
{
    QString stack;
    options.hangs = [&stack](const QString &text) { stack = text; };
    auto application = start({MORVEX_AWKWARD_PROGRAM});
    ASSERT_NE(application, nullptr) << error.toStdString();
    RemoteInspector *inspector = application->inspector();
    ASSERT_EQ(click(application.get(), "print"), QString());
    const SharedPtr<Object> window = inspector->findObject("awkward", &error);
    ASSERT_TRUE(window);
    inspector->session().setBound(1500);
    EXPECT_EQ(click(application.get(), "sleep"),
              "the application has not answered for 1.5 seconds: it hangs, or is busy");
#ifndef __SANITIZE_ADDRESS__
    // The debugger may take too long for the libraries of a sanitizer.
    const bool hasDebugger = !QStandardPaths::findExecutable("gdb").isEmpty();
    EXPECT_EQ(stack.contains("sleep"), hasDebugger) << stack.toStdString();
#endif
    inspector->session().setBound(100);
    ::kill(static_cast<pid_t>(application->processId()), SIGSTOP);
    EXPECT_EQ(window->objectClass(), nullptr);
    EXPECT_EQ(inspector->failure(),
              "the application has not answered for 0.1 seconds: its process has been stopped");
    EXPECT_EQ(stack, "Its process has been stopped.");
    ::kill(static_cast<pid_t>(application->processId()), SIGCONT);
    EXPECT_TRUE(application->isRunning());
    inspector->session().setBound(30000);
    // The late answer is not taken for that of this one.
    EXPECT_EQ(inspector->callFunction("nothing", {}, &error), QVariant());
    EXPECT_EQ(error, "there is no function 'nothing'");
    EXPECT_EQ(inspector->failure(), QString());
}

TEST_F(RemoteApplicationTest, AnApplicationThatStartsItselfAgainIsTheSame)
{
    auto application = start({MORVEX_AWKWARD_PROGRAM});
    ASSERT_NE(application, nullptr) << error.toStdString();
    const SharedPtr<Object> before = application->inspector()->findObject("awkward", &error);
    ASSERT_TRUE(before);
    const auto process = static_cast<pid_t>(application->processId());
    EXPECT_EQ(click(application.get(), "restart"), "the application has started itself again");
    const SharedPtr<Object> after =
        application->inspector()->waitForObject("awkward", 60000, &error);
    ASSERT_TRUE(after) << error.toStdString();
    EXPECT_EQ(application->processId(), process);
    EXPECT_EQ(after->objectClass()->name(), "AwkwardWindow");
    EXPECT_EQ(before->objectClass(), nullptr);
    EXPECT_EQ(application->contexts().size(), 1);
}

TEST_F(RemoteApplicationTest, FurtherProcessesAreContextsWhenTheyAreWanted)
{
    for (const bool isHooked : {false, true}) {
        options.hooksSubProcesses = isHooked;
        auto application = start({MORVEX_AWKWARD_PROGRAM});
        ASSERT_NE(application, nullptr) << error.toStdString();
        ASSERT_EQ(click(application.get(), "another"), QString());
        std::shared_ptr<RemoteContext> other;
        QElapsedTimer timer;
        timer.start();
        while (!other && timer.elapsed() < 20000) {
            ::usleep(5000);
            const QList<std::shared_ptr<RemoteContext>> contexts = application->contexts();
            other = isHooked ? contexts.value(1)
                             : application->attach("awkward_program", QDeadlineTimer(20000));
            EXPECT_EQ(contexts.size() > 1, isHooked && other);
        }
        ASSERT_NE(other, nullptr);
        EXPECT_NE(other->processId(), application->processId());
        EXPECT_EQ(application->contexts(), (QList<std::shared_ptr<RemoteContext>>{
                                               application->contexts().constFirst(), other}));
        EXPECT_TRUE(other->inspector()->waitForObject("crash", 60000, &error));
        const SharedPtr<Object> button = other->inspector()->findObject("crash", &error);
        other->inspector()->callFunction("clickObject", {button->id()}, &error);
        EXPECT_EQ(other->end(), "the application has crashed by signal 11 (Segmentation fault)");
        EXPECT_TRUE(application->isRunning());
    }
}

TEST_F(RemoteApplicationTest, ADialogThatRunsALoopOfItsOwnIsUsedToItsEnd)
{
    auto application = start({MORVEX_AWKWARD_PROGRAM});
    ASSERT_NE(application, nullptr) << error.toStdString();
    RemoteInspector *inspector = application->inspector();
    // A child that it forks is not the application, also when it goes on as if it were.
    ASSERT_EQ(click(application.get(), "forkOn"), QString());
    ASSERT_EQ(click(application.get(), "exec"), QString());
    EXPECT_EQ(click(application.get(), "close"), QString());
    EXPECT_FALSE(inspector->findObject("dialog", nullptr));
    EXPECT_EQ(click(application.get(), "print"), QString());
}

TEST_F(RemoteApplicationTest, AProgramThatChangesUnderTheCallsIsUsedAllTheSame)
{
    auto application = start({MORVEX_AWKWARD_PROGRAM});
    ASSERT_NE(application, nullptr) << error.toStdString();
    RemoteInspector *inspector = application->inspector();
    const SharedPtr<Object> button = inspector->waitForObject("delete", 60000, &error);
    ASSERT_TRUE(button);
    EXPECT_EQ(click(application.get(), "delete"), QString());
    EXPECT_EQ(button->objectClass(), nullptr);
    EXPECT_EQ(click(application.get(), "windows"), QString());
    EXPECT_EQ(click(application.get(), "change"), QString());
    EXPECT_EQ(click(application.get(), "print"), QString());
    EXPECT_FALSE(inspector->waitForObject("{name='changing' occurrence='200'}", 0, &error));
    EXPECT_TRUE(error.contains("There are 100 objects")) << error.toStdString();
    EXPECT_EQ(inspector->failure(), QString());
}

TEST_F(RemoteApplicationTest, WhatIsTooLargeToBeSentIsAnErrorOfItsCallAlone)
{
    auto application = start({MORVEX_AWKWARD_PROGRAM});
    ASSERT_NE(application, nullptr) << error.toStdString();
    RemoteInspector *inspector = application->inspector();
    QVariantList many;
    for (int i = 0; i < 2000001; ++i)
        many += true;
    EXPECT_EQ(inspector->callFunction("nothing", {many}, &error), QVariant());
    EXPECT_TRUE(error.contains("too large")) << error.toStdString();
    const SharedPtr<Object> window = inspector->findObject("awkward", &error);
    ASSERT_TRUE(window) << error.toStdString();
    EXPECT_FALSE(window->objectClass()->property("many")->get(window));
    EXPECT_EQ(inspector->failure(), "the answer is too large to be sent");
}
