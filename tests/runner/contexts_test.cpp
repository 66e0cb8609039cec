#include "support/files.h"
#include "support/scriptfixture.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

using namespace MorvexTest;

namespace {

const QByteArray start = "var app = application.start('" MORVEX_AWKWARD_PROGRAM "');\n";

} // namespace

using ContextsTest = ScriptFixture;

TEST_F(ContextsTest, ADeathIsOneWarningWhenItIsCaughtAndElseOneFatal)
{
    const QString crash = " The application has crashed by signal 11 (Segmentation fault)|";
    const QByteArray tryCrash = start + "try { find('crash').click(); } catch (e) {}\n";
    const QByteArray crashUnseen =
        start + "application.start('/bin/sh', '-c',\n"
                "  'kill -6 ' + app.processId + '; exec ' + '" MORVEX_AWKWARD_PROGRAM "');\n"
                "waitFor(() => !app.isRunning());";
    const QString unseen = "FATAL The application has crashed by signal 6 (Aborted)|"
                           "No call of the script ran into this.";
    const QString atEnd = "FATAL The application has crashed by signal 6 (Aborted)|"
                          "This was when it was asked to end.";
    const struct
    {
        QByteArray script;
        QStringList lines;
    } rows[] = {
        {tryCrash +
             "check.pass('on'); application.start('" MORVEX_AWKWARD_PROGRAM "');\n"
             "find('print').click(); check.equal(application.output(), 'of the application\\n');",
         {"PASS on|", "WARNING" + crash + "The script has caught this and goes on.",
          "PASS Verification|Got expected 'of the application\\n'."}},
        {tryCrash, {"WARNING" + crash + "The script has caught this and goes on."}},
        {start + "find('crash').click(); check.pass('never');", {"FATAL" + crash}},
        {crashUnseen + "check.that(application.current().isRunning());",
         {"PASS Verification|The condition holds.", unseen}},
        {crashUnseen + "application.stop(app); check.pass('on');", {unseen, "PASS on|"}},
        // To quit is no death, unless the script wants to go on.
        {start + "find('quit').click(); check.that(!app.isRunning());",
         {"PASS Verification|The condition holds."}},
        {start + "find('quit').click(); find('print').click();",
         {"FATAL The application has ended with status 0|"}},
        {start +
             "find('crashAtExit').click(); find('quit').click(); waitFor(() => !app.isRunning());",
         {unseen}},
        {start + "find('crashAtExit').click(); application.stop(); check.pass('on');",
         {atEnd, "PASS on|"}},
        {start + "find('crashAtExit').click();", {atEnd}},
        {"application.start('/bin/sh', '-c', '\"$0\"; exit $?', '" MORVEX_AWKWARD_PROGRAM
         "'); find('crashAtExit').click();",
         {"FATAL The application has ended; the program that started it has ended with status "
          "134, as a shell does after signal 6 (Aborted)|This was when it was asked to end."}},
        {start + "find('exit').click();", {"FATAL The application has ended with status 0|"}},
    };
    for (const auto &row : rows) {
        QStringList lines = results(row.script);
        // The place of the script differs.
        for (QString &line : lines)
            line = line.section("\\nA core was dumped", 0, 0).section("|Error: ", 0, 0) +
                   (line.contains("|Error: ") ? "|" : "");
        EXPECT_EQ(lines, row.lines) << row.script.constData();
    }
    // The runner itself asks for the usage.
    EXPECT_TRUE(results(crashUnseen, {"--coverage"}).contains(unseen));
}

TEST_F(ContextsTest, NamesAreLookedUpInTheCurrentOneAndObjectsStayInTheirOwn)
{
    EXPECT_EQ(
        results(start +
                "var state = application.start('" MORVEX_INVENTORY_PROGRAM "');\n"
                "var own = find('state'); application.setCurrent(app);\n"
                "log.info([app === application.current(), application.contexts().length,\n"
                "  find('state', 0).exists(), own.exists(), find('print').exists()]);\n"
                "own.set('text', 'set'); find('name', 0); find('print').click();\n"
                "check.equal(own.get('text'), 'set'); check.equal(app.output().length, 19);\n"
                "try { find('print').drag(own); } catch (error) { log.info(error.message); }\n"
                "application.setCurrent();"
                "application.stop(state); log.info([state.isRunning(), "
                "application.contexts().length]);\n"
                "own.exists();"),
        (QStringList{"LOG [true,2,false,true,true]|", "PASS Verification|Got expected 'set'.",
                     "PASS Verification|Got expected 19.",
                     "LOG print: it can't be dragged to an object of another application|",
                     "LOG [false,1]|"}));
}

TEST_F(ContextsTest, ProcessesThatTheApplicationStartsAreContextsWhenTheyAreHooked)
{
    const QByteArray script = start + "find('another').click();\n"
                                      "var other = application.waitForApplication(60000);\n"
                                      "log.info(other.name, other.processId !== app.processId);\n"
                                      "find('crash').exists();";
    EXPECT_EQ(results(script, {"--hook-subprocesses"}), QStringList("LOG awkward_program|true"));
}

TEST_F(ContextsTest, TheSettingsOfTheSuiteReachTheApplication)
{
    runner.addFile("home/.config/seeded", "");
    runner.addFile("work/here", "");
    runner.addFile("launch",
                   "#!/bin/sh\necho $1$DESKTOP_SESSION $HOME/.config/*; ls; shift\nexec \"$@\"\n");
    runner.environment.insert("DESKTOP_SESSION", "gnome");
    QFile::setPermissions(runner.suitePath() + "/launch",
                          QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    runner.addFile("suite.conf", "AUT = " MORVEX_AWKWARD_PROGRAM "\nCWD = work\n"
                                 "APPLICATION_HOME = home\nIMPLICITAUTSTART = 0\nLAUNCHER = " +
                                     runner.suitePath().toUtf8() +
                                     "/launch\nLAUNCHER_ARGUMENTS = word\n");
    const QByteArray script = "var app = application.start();\n"
                              "log.info(app.output().replace(/\\/[^ ]*home/, '')); ";
    EXPECT_EQ(results(script), QStringList("LOG word /.config/seeded\\nhere\\n|"));
    runner.addTestCase("tst_s", "log.info(application.start().name);");
    output = runner.run({runner.suitePath(), "--aut", MORVEX_INVENTORY_PROGRAM});
    EXPECT_TRUE(output.standardOutput.contains("script.js:1: inventory"));
    runner.addFile("suite.conf", "CALL_TIMEOUT = 2\nAPPLICATION_HOME = nowhere\n");
    runner.addFile("whitelist.txt", "# none\n");
    // One that hangs is not asked for a picture.
    const QStringList lines =
        results(start + "application.start('/bin/sh', '-c',\n"
                        "  'kill -STOP ' + app.processId + '; exec ' + '" MORVEX_INVENTORY_PROGRAM
                        "'); application.setCurrent(app); find('sleep', 0);",
                {"--use-whitelist", "--resultdir", runner.suitePath() + "/results"});
    for (const char *warning : {"is not a directory: '", "'whitelist.txt' of the suite names none"})
        EXPECT_TRUE(output.standardError.contains(warning)) << output.standardError.constData();
    ASSERT_EQ(lines.size(), 2);
    EXPECT_TRUE(lines.value(0).startsWith("LOG The application does not answer|"));
    EXPECT_TRUE(
        lines.value(1).contains("has not answered for 2 seconds: its process has been stopped"));
}
