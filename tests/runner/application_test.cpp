#include "support/files.h"
#include "support/scriptfixture.h"
#include "support/xmldocument.h"

#include <QDir>
#include <QFile>
#include <QImage>

#include <gtest/gtest.h>

using namespace MorvexTest;

namespace {

const char startAwkward[] = "application.start('" MORVEX_AWKWARD_PROGRAM "'); ";

} // namespace

class ApplicationTest : public ScriptFixture
{
};

TEST_F(ApplicationTest, ScriptsUseAnApplication)
{
    const QByteArray awkward = startAwkward;
    const struct
    {
        QByteArray script;
        QStringList lines;
    } rows[] = {
        {"application.start('inventory');\n"
         "find('name').type('Screws'); find('count').set('value', 12);\n"
         "find(\"{type='QPushButton' text='&Add'}\").click();\n"
         "check.equal(find('inventory').get('totalCount'), 92);\n"
         "check.equal(find('picture').get('size.width'), 200);\n"
         "check.equal(find('name').get('echoMode'), 'Normal');\n"
         "check.equal(find('add').get('enabled'), false);\n"
         "var name = find('name'); application.stop(); application.start('inventory');\n"
         "log.info([find('nothing', 0).exists(), name.exists(), find('name').exists()]);",
         {"PASS Verification|Got expected 92.", "PASS Verification|Got expected 200.",
          "PASS Verification|Got expected 'Normal'.", "PASS Verification|Got expected 'false'.",
          "LOG [false,false,true]|"}},
        {"snooze(0.01); Promise.resolve().then(function () {\n"
         "application.start('inventory'); log.info(find('state').exists()); });",
         {"LOG true|"}},
        // The application has more to do when the script ends.
        {"application.start('inventory'); find('countStock').click();\n"
         "Promise.resolve(find('state').get('text')).then(function (text) {\n"
         "return text; }).then(function (text) { log.info(text); });",
         {"LOG Counting|"}},
        {"application.start('inventory'); log.info(find('name'), [find('count')]);\n"
         "log.info('a ' + find('name')); check.equal(find('name'), find('name'));\n"
         "check.equal(find('name'), find('count'));",
         {"LOG name|[\"count\"]", "LOG a name|", "PASS Verification|Got expected 'name'.",
          "FAIL Verification|Expected 'count', got 'name'."}},
        {"application.start('inventory'); var all = findAll({type: 'QSpinBox'});\n"
         "log.info(all.length > 0 && all.every(function (box) { return box.exists(); }));\n"
         "log.info(find('name').properties.objectName, find('inventory').children.length > 3);\n"
         "find('name').screenshot('name.png'); log.info(file.exists('name.png'));",
         {"LOG true|", "LOG name|true", "LOG true|"}},
        {"application.start('inventory'); find('countStock').click();\n"
         "check.equal(() => find('state').get('text') !== 'Counting', true, 'a', {retry: 9000});\n"
         "check.that(() => false, 'b', {retry: 1});\n"
         "log.info(waitFor(() => 0, 1), waitFor(() => find('name').exists()));\n"
         "find('name').waitFor('enabled', true, 0); find('nothing', 0).waitUntilGone();",
         {"PASS a|Got expected 'true'.", "FAIL b|The condition does not hold.", "LOG 0|true"}},
        // Processes of the application may end.
        {awkward + "find('fork').click(); check.pass('after');", {"PASS after|"}},
        {awkward + "var w = find('awkward'); w.set('level', 3);\n"
                   "log.info(w.get('level'), ['short', 'byte', 'char', 'long', 'huge', 'float']\n"
                   "  .map(function (size) { return w.get(size + 'Number'); }));",
         {"LOG 3|[-5,200,65,5000000000,6000000000,0.1]"}},
        {awkward + "var r = find('ratio'); r.set('value', 0.333); log.info(r.get('value'));\n"
                   "var w = find('awkward'); w.set('windowOpacity', 0.1);\n"
                   "w.set('byteNumber', 255); w.set('hugeNumber', 9000000000);\n"
                   "find('day').set('date', '2024-02-29');\n"
                   "find('day').set('dateTime', '2024-02-29T00:00:00');",
         {"LOG 0.33|"}},
    };
    for (const auto &row : rows)
        EXPECT_EQ(results(row.script), row.lines) << row.script.constData();
}

TEST_F(ApplicationTest, WhatCantBeDoneEndsTheScriptWithTheReason)
{
    const QByteArray start = "application.start('inventory'); ";
    const QByteArray awkward = startAwkward;
    const struct
    {
        QByteArray script;
        const char *error;
    } rows[] = {
        {"find('name', 0).get('text')", "Error: no application was started"},
        {"application.start('nothing')", "Error: application.start: there is no application "
                                         "'nothing' in "},
        {"application.start('script.js')", "script.js' is not a program that may be run"},
        {"application.start()", "Error: application.start: no application was named"},
        {start + "find('nothing', 0).click()", "Error: There is no object {name='nothing'}."},
        {start + "find('name').get('colour')", "Error: name: there is no property 'colour'"},
        {start + "find('count').set('value', 'x')",
         "Error: count: property 'value' doesn't take this value"},
        {start + "find('count').set('value', 100000)",
         "Error: count: property 'value' doesn't take 100000, it is "},
        {start + "find('count').set('value', 4294967298)",
         "'value' takes a whole number from -2147483648 to 2147483647, not 4294967298"},
        {awkward + "find('awkward').set('byteNumber', -1)", "a whole number from 0 to 255, not -1"},
        {awkward + "find('awkward').set('hugeNumber', Infinity)",
         "a whole number from 0 to 18446744073709551615, not inf"},
        {awkward + "find('ratio').set('value', 100)", "'value' doesn't take 100, it is 99.99"},
        {awkward + "find('awkward').set('windowOpacity', 7)", "doesn't take 7, it is 1"},
        {awkward + "find('day').set('date', '2031-01-01')",
         "'date' doesn't take 2031-01-01, it is 2030-12-31"},
        {awkward + "find('secret').waitFor('text', 'x', 0)",
         "property 'text', which is hidden, is not what it was to be"},
        {start + "find('name').set('visible', true); find('name').set('maxLength', 3);"
                 "find('name').set('text', 'abc'); find('name').set('text', 'abcd')",
         "Error: name: property 'text' doesn't take this value, it has not changed"},
        {start + "var n = find('name'); application.stop(); n.type('x')",
         "Error: name: the application has been stopped"},
        {start + "find('name', -1)", "TypeError: a time has to be a whole number of milliseconds"},
        {"check.point('a', {delay: '5'})", "to 2147483647, not 5 (string)"},
        {"check.point('a', {retry: 2e12})", "to 2147483647, not 2000000000000 (number)"},
        {"find()", "TypeError: a name has to be a text"},
        {start + "find('name').get()", "TypeError: a property has to have a name"},
        {start + "find('name').set('', 1)", "TypeError: a property has to have a name"},
        {start + "find('name').set('text', undefined)",
         "TypeError: set takes a property and its value"},
        {start + "find('count').set('value', 4.5)", "'value' takes a whole number, not 4.5"},
        {start + "find('name').set('visible', 2)", "'visible' takes true or false"},
        {start + "find('name').wheel(1, 5, 5)", "TypeError: wheel takes the number of steps"},
        {start + "find('name').drag({x: 1, y: 1}, 5)", "TypeError: drag takes options in an"},
        {start + "find('name').drag({x: 1, y: 1}, {x: 2, y: 2, via: '3'})",
         "TypeError: option 'via' of drag"},
        {start + "find('name').click('a', 1)", "TypeError: click takes nothing"},
        {start + "find('name').click(1, 1, 1)", "TypeError: click takes nothing"},
        {start + "find('name').click({button: 'wrong'})", "TypeError: option 'button' has to be"},
        {start + "find('name').waitFor('maxLength', 3, 0)", "property 'maxLength' is 32767, not 3"},
        {start + "find('name').waitUntilGone(0)", "Error: name is still there"},
        {"check.equal(1, 1, 'm', {retry: 5})", "TypeError: option 'retry' needs a function"},
        {start + "application.stop(); find('name', 0).click()",
         "Error: the application has been stopped"},
        {"check.point('a', {Retry: 5})", "TypeError: unknown option 'Retry'"},
        {"check.point('a', {object: 'a'})", "TypeError: option 'type' has to be one of Object"},
        {"check.point('a', {type: 'Visual'})", "TypeError: a name has to be a text or an object"},
        {"check.point('a', {object: 'a', type: 'ObjectProperties'})",
         "TypeError: option 'properties' has to be an array of names"},
        {"check.point('a', {record: {}})", "TypeError: option 'record' has to be a record"},
    };
    for (const auto &row : rows) {
        const QStringList lines = results(row.script);
        ASSERT_EQ(lines.size(), 1) << row.script.constData();
        EXPECT_TRUE(lines[0].startsWith("ERROR Script error|")) << lines[0].toStdString();
        EXPECT_TRUE(lines[0].contains(row.error)) << lines[0].toStdString();
    }
}

TEST_F(ApplicationTest, ATimeoutNamesTheCallThatDidNotComeBack)
{
    const QStringList lines =
        results(QByteArray(startAwkward) + "\nfunction wait() { find('nothing', 60000); }\nwait();",
                {"--timeout", "15"});
    EXPECT_EQ(lines, (QStringList{"WARNING The test case is ended while this call is running|",
                                  "FATAL Execution error|Execution is terminated due to timeout"}));
    EXPECT_EQ(RunnerProcess::report(output)[2].left.section(": ", 0, 0),
              runner.suitePath() + "/tst_s/script.js:2");
    // The child knows of it.
    for (const bool isLimited : {true, false})
        EXPECT_EQ(results("application.start('/bin/sh', '-c', 'echo $MORVEX_DEADLINE; exec "
                          "\"$0\"', '" MORVEX_AWKWARD_PROGRAM
                          "'); log.info(application.output() > 0);",
                          {"--timeout", isLimited ? "1000" : "0"}),
                  QStringList(isLimited ? "LOG true|" : "LOG false|"));
}

TEST_F(ApplicationTest, WhatTheApplicationPrintsStaysOutOfTheReport)
{
    results(QByteArray(startAwkward) + "find('print').click();");
    EXPECT_FALSE(output.standardOutput.contains("of the application"));
    EXPECT_TRUE(output.standardError.contains("of the application\n"));
}

TEST_F(ApplicationTest, FailuresHaveAPictureBesideThemUpToTheLimitOfTheSuite)
{
    const QByteArray script = "check.fail('before'); application.start('inventory');\n"
                              "check.pass('p'); check.fail('f'); log.error('e');\n"
                              "check.fail('late'); log.warning('w'); throw 'thrown';";
    const QStringList withResults{"--resultdir", runner.suitePath() + "/results"};
    const auto pictured = [](const QStringList &lines) {
        QStringList messages;
        for (const QString &line : lines.filter(" (Screenshot in \""))
            messages += line.section(" (", 0, 0);
        return messages;
    };
    EXPECT_EQ(pictured(results(script)), QStringList());
    const QStringList lines = results(script, withResults);
    EXPECT_EQ(pictured(lines),
              (QStringList{"FAIL f", "ERROR e", "FAIL late", "ERROR Script error"}));
    EXPECT_FALSE(QImage(lines[2].section('"', 1, 1)).isNull());
    runner.addFile("suite.conf", "VERSION = 3\nFAILURE_SCREENSHOTS = 2\n");
    EXPECT_EQ(pictured(results(script, withResults)), (QStringList{"FAIL f", "ERROR e"}));
    EXPECT_EQ(results(QByteArray(startAwkward) +
                          "try { find('crash').click(); } catch (error) {} check.fail('f');",
                      withResults)
                  .filter("FAIL "),
              QStringList("FAIL f (Screenshot taken from the desktop is invalid)|"));
    runner.addFile("suite.conf", "VERSION = 3\nFAILURE_SCREENSHOTS = many\n");
    EXPECT_EQ(runner.runSuite({}).status, 2);
}

TEST_F(ApplicationTest, SymbolicNamesComeFromTheObjectMapOfTheSuite)
{
    runner.addFile("suite.conf", "VERSION = 3\nOBJECTMAP = names\n");
    runner.addFile("names", ":State\t{name='state' type='QLabel'}\n");
    const QByteArray script = "application.start('inventory');"
                              "check.equal(find(':State').get('text'), '3 articles');";
    EXPECT_EQ(results(script), QStringList("PASS Verification|Got expected '3 articles'."));
    QFile::remove(runner.suitePath() + "/names");
    EXPECT_TRUE(results("application.start('inventory'); find(':State', 0).get('text');")
                    .value(0)
                    .contains("The file '" + runner.suitePath() + "/names' does not exist."));
    runner.addFile("names", ":State\t{name}\n");
    EXPECT_TRUE(results(script).value(0).startsWith("ERROR Cannot run the test case|"));
}

TEST_F(ApplicationTest, AnApplicationOfTheSuiteIsStartedBeforeTheScript)
{
    runner.addFile("suite.conf", "VERSION = 3\nAUT = inventory\nIMPLICITAUTSTART = 1\n");
    EXPECT_EQ(results("check.equal(find('state').get('text'), '3 articles');"),
              QStringList("PASS Verification|Got expected '3 articles'."));
    // Blanks and backslashes in its path.
    const QString copy = runner.suitePath() + "/a\\b c/d";
    QDir().mkpath(QFileInfo(copy).path());
    QFile::copy(MORVEX_TEST_PREFIX "/lib/applications/inventory", copy);
    runner.addFile("suite.conf", "AUT = \"" + copy.toUtf8() + "\" -x\n");
    EXPECT_EQ(results("check.that(find('state').exists());").size(), 1);
    EXPECT_EQ(output.status, 0);
    runner.addFile("suite.conf", "VERSION = 3\nAUT = nothing\nIMPLICITAUTSTART = 1\n");
    EXPECT_TRUE(results("check.pass('never');")
                    .value(0)
                    .startsWith("ERROR Cannot run the test case|there is no application"));
}

TEST_F(ApplicationTest, CoverageAddsUpWhatAllTestCasesDid)
{
    runner.addTestCase("tst_more", "application.start('inventory'); find('count').type('1');");
    const QString dir = runner.suitePath() + "/results";
    results("application.start('inventory'); find('name').type('Screws'); find('add').click(); "
            "application.stop(); check.fail('again');",
            {"--coverage", "--retry", "1", "--resultdir", dir});
    EXPECT_TRUE(
        output.standardError.contains("\nmorvexrunner: UI coverage of Inventory: 42.9 % (3 of 7)\n"
                                      "morvexrunner: UI coverage: 42.9 % (3 of 7)\n"))
        << output.standardError.constData();
    EXPECT_TRUE(output.standardOutput.contains("UI coverage"));
    for (const char *attachment : {"tst_s/uicoverage.xml", "tst_s/uicoverage_2.xml"}) {
        const XmlDocument ui(readFile(dir + "/attachments/" + attachment));
        EXPECT_EQ(ui.value("string(//element[@class='QLineEdit \"name\"']//coverage)"), "6");
    }
    EXPECT_FALSE(readFile(dir + "/attachments/tst_more/uicoverage.xml").isEmpty());
    const QByteArray page = readFile(dir + "/attachments/uicoverage.html");
    EXPECT_TRUE(output.standardOutput.contains("attachments/uicoverage.html"));
    EXPECT_EQ(page.count(">choose never<"), 8) << page.constData();
    EXPECT_EQ(page.count(">click 2<"), 1);
    results("check.pass('none');", {"--coverage", "--testcase", "tst_s"});
    EXPECT_TRUE(output.standardError.contains("UI coverage: there was nothing to use"));
}
