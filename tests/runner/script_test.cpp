#include "support/scriptfixture.h"
#include "support/test.h"

using namespace MorvexTest;

using ScriptTest = ScriptFixture;

TEST_F(ScriptTest, ChecksAndTheirTexts)
{
    EXPECT_EQ(
        results("check.that(1, 'm'); check.that(0, 'm'); check.that(true);\n"
                "check.equal('a', 'a', 'm'); check.equal('a', 'b', 'm');\n"
                "check.equal(1, 2, 'm'); check.equal(0.5, 0.5, 'm');\n"
                "check.equal(5, '5', 'm'); check.equal(NaN, NaN, 'm');\n"
                "check.equal({b: 1, a: [2]}, {a: [2], b: 1}, 'm');\n"
                "check.equal([1, {x: 2}], [1, {x: 3}], 'm'); check.equal(null, undefined, 'm');\n"
                "check.pass('p', 'd'); check.fail('f');"),
        (QStringList{"PASS m|The condition holds.", "FAIL m|The condition does not hold.",
                     "PASS Verification|The condition holds.", "PASS m|Got expected 'a'.",
                     "FAIL m|Expected 'b', got 'a'.", "FAIL m|Expected 2, got 1.",
                     "PASS m|Got expected '0.5'.",
                     "FAIL m|Expected '5 (string)', got '5 (number)'.",
                     "PASS m|Got expected 'NaN'.", "PASS m|Got expected '{\"a\":[2],\"b\":1}'.",
                     "FAIL m|Expected '[1,{\"x\":3}]', got '[1,{\"x\":2}]'.",
                     "FAIL m|Expected 'undefined', got 'null'.", "PASS p|d", "FAIL f|"}));
    EXPECT_EQ(output.status, 1);
}

TEST_F(ScriptTest, DifferentValuesAreNotEqualHoweverTheyAreWrapped)
{
    const std::pair<const char *, std::vector<const char *>> rows[] = {
        {"FAIL m|Expected ",
         {"new Set([1]), new Set([2])", "new Map([[1, 2]]), new Map()",
          "new Map([[1, {a: 2}]]), new Map([[1, {a: 3}]])", "new Error('a'), new Error('b')",
          "new Error('a'), new TypeError('a')", "/a/, /b/", "new Date(5), {}",
          "new Date(5), new Date(6)", "new Array(3), []", "new Number(1), new Number(2)",
          "new ArrayBuffer(3), new ArrayBuffer(9)", "new Uint8Array([1]), new Uint8Array([2])",
          "[], {}", "{a: undefined}, {b: undefined}", "{a: NaN}, {a: null}",
          "function () {}, function () {}"}},
        {"PASS m|",
         {"new Set([1, {a: 2}]), new Set([{a: 2}, 1])", "new Map([[1, [2]]]), new Map([[1, [2]]])",
          "new Date(5), new Date(5)", "new Error('a'), new Error('a')", "/a/g, /a/g",
          "new Uint8Array([1]), new Uint8Array([1])", "{a: undefined}, {a: undefined}"}},
    };
    for (const auto &[outcome, pairs] : rows) {
        QByteArray script;
        for (const char *values : pairs)
            script += "check.equal(" + QByteArray(values) + ", 'm');\n";
        const QStringList lines = results(script);
        ASSERT_EQ(lines.size(), int(pairs.size()));
        for (int i = 0; i < lines.size(); ++i)
            EXPECT_TRUE(lines[i].startsWith(outcome)) << pairs[std::size_t(i)];
    }
}

TEST_F(ScriptTest, WhatAScriptDoesNotUseIsNotLoadedForIt)
{
    EXPECT_EQ(results("function isLoaded() {\n"
                      "  return file.read('/proc/self/maps').indexOf('libQt5Gui') >= 0; }\n"
                      "waitFor(function () { return true; });\n"
                      "log.info(isLoaded()); application.contexts(); log.info(isLoaded());"),
              (QStringList{"LOG false|", "LOG true|"}));
}

TEST_F(ScriptTest, PromisesAreKeptBeforeTheTestCaseEnds)
{
    EXPECT_EQ(results("Promise.resolve(1).then(function (v) { check.equal(v, 2, 'm');\n"
                      "  return v; }).then(function (v) { log.info('then'); });"),
              (QStringList{"FAIL m|Expected 2, got 1.", "LOG then|"}));
}

TEST_F(ScriptTest, ExpectedFailuresAndMisspelledOptions)
{
    EXPECT_EQ(results("check.that(false, 'm', {expectFail: true});"),
              QStringList("XFAIL m|The condition does not hold."));
    EXPECT_EQ(output.status, 0);
    EXPECT_EQ(results("check.equal(1, 1, 'm', {expectFail: true});"),
              QStringList("XPASS m|Got expected 1."));
    EXPECT_EQ(output.status, 1);
    EXPECT_EQ(results("check.that(false, 'm', {expectfail: true});").value(0).section("\\n", 0, 0),
              "ERROR Script error|TypeError: unknown option 'expectfail'");
}

TEST_F(ScriptTest, LogEntriesHaveTheirTypesWhateverIsLogged)
{
    EXPECT_EQ(
        results("log.info('i', 'd'); log.warning({a: 1}); log.error(undefined, null);\n"
                "log.fatal('f'); var q = Object.create(null); q.q = q; log.info(q);\n"
                "log.info(new Map([[1, 2]])); log.info(/a/); log.info(Symbol('s'));\n"
                "String = null; Object.keys = null; log.info('still here');"),
        (QStringList{"LOG i|d", "WARNING {\"a\":1}|", "ERROR |", "FATAL f|", "LOG [object Object]|",
                     "LOG Map [[1,2]]|", "LOG /a/|", "LOG Symbol(s)|", "LOG still here|"}));
}

TEST_F(ScriptTest, SectionsEndWhateverHappensInThem)
{
    EXPECT_EQ(results("try { section('s', 'd', function () { throw new Error('x'); }); }\n"
                      "catch (e) { log.info(e.message); }\n"
                      "check.equal(section('t', function () { return 7; }), 7, 'm');\n"
                      "startSection('u', 'v'); endSection(); endSection();")
                  .filter(QRegExp("^(LOG|PASS)")),
              (QStringList{"LOG Start Section: s|d (section)", "LOG End Section: s|d (section)",
                           "LOG x|", "LOG Start Section: t| (section)",
                           "LOG End Section: t| (section)", "PASS m|Got expected 7.",
                           "LOG Start Section: u|v (section)", "LOG End Section: u|v (section)"}));
    EXPECT_TRUE(output.standardOutput.contains("there are no started result sections"));
}

TEST_F(ScriptTest, WhateverIsThrownIsAnErrorWithItsPlace)
{
    const std::tuple<const char *, const char *, int> rows[] = {
        {"\nfunction f() {\n  throw 5;\n}\nf();", "5", 3},
        {"throw undefined;", "undefined", 1},
        {"throw null;", "null", 1},
        {"throw '';", "(a value without a text)", 1},
        {"throw {};", "[object Object]", 1},
        {"throw new RangeError('deep');", "RangeError: deep", 1},
        {"\n\nmissing();", "ReferenceError: missing is not defined", 3},
        {"log.info('a');\nvar x = ;", "SyntaxError: ", 2},
        {"check.that(", "SyntaxError: ", 1},
        {"function f() { f(); }\nf();", "RangeError: Maximum call stack size exceeded.", 1},
    };
    for (const auto &[script, text, line] : rows) {
        results(script);
        const auto lines = RunnerProcess::report(output);
        ASSERT_EQ(lines.size(), 5U) << script;
        EXPECT_EQ(lines[2].type, "ERROR");
        EXPECT_EQ(lines[2].left,
                  runner.suitePath() + QString("/tst_s/script.js:%1: Script error").arg(line));
        EXPECT_EQ(lines[2].right.indexOf(text), 0) << lines[2].right.toStdString();
        EXPECT_EQ(output.status, 1);
    }
}

TEST_F(ScriptTest, AnExceptionKeepsTheStackOfTheIncludedFile)
{
    runner.addFile("lib.js", "function helper() {\n    throw 'out';\n}\nvar answer = 42;\n");
    EXPECT_EQ(results("include('lib.js');\ncheck.equal(answer, 42, 'm');\nhelper();").value(1),
              "ERROR Script error|out\\n  at " + runner.suitePath() + "/lib.js:2\\n  at " +
                  runner.suitePath() + "/tst_s/script.js:3");
    runner.addFile("bad.js", "\n\nthrow 'at once';\n");
    EXPECT_EQ(results("try { include('bad.js'); } catch (e) { log.info(e); }\ninclude('bad.js');"),
              (QStringList{"LOG at once|", "ERROR Script error|at once\\n  at " +
                                               runner.suitePath() + "/bad.js:3" + "\\n  at " +
                                               runner.suitePath() + "/tst_s/script.js:2"}));
    runner.addFile("tst_s/self.js", "include('self.js');");
    EXPECT_EQ(results("include('./self.js');").value(0).section("\\n", 0, 0),
              "ERROR Script error|Error: include: 'self.js' includes itself");
    EXPECT_EQ(results("include('script.js');").value(0).section("\\n", 0, 0),
              "ERROR Script error|Error: include: 'script.js' includes itself");
}

TEST_F(ScriptTest, FilesAreFoundInTheTestCaseThenInTheSuite)
{
    runner.addFile("both.txt", "suite");
    runner.addFile("tst_s/both.txt", "case");
    runner.addFile("suite.txt", "suite gr\xc3\xbcn");
    EXPECT_EQ(results("log.info(file.read('both.txt')); log.info(file.read('suite.txt'));\n"
                      "file.write('new.txt', 'n'); file.write('suite.txt', 's');\n"
                      "log.info(file.exists('new.txt') + ' ' + file.exists('none'));\n"
                      "log.info(file.exists('') + ' ' + file.exists());\n"
                      "try { file.read('none'); } catch (e) { log.info(e.message); }\n"
                      "try { file.write('no/dir/f', ''); } catch (e) { log.info('refused'); }"),
              (QStringList{"LOG case|", QString::fromUtf8("LOG suite grün|"), "LOG true false|",
                           "LOG false false|", "LOG cannot read 'none': No such file or directory|",
                           "LOG refused|"}));
    EXPECT_EQ(readFile(runner.suitePath() + "/tst_s/new.txt"), "n");
    EXPECT_EQ(readFile(runner.suitePath() + "/suite.txt"), "s");
}

TEST_F(ScriptTest, APointWhoseTableCannotBeReadFailsBeforeItIsCompared)
{
    runner.addFile("points/t.xml", "<VerificationPoint version='5' type='Table'>"
                                   "<Verification object='t'/></VerificationPoint>");
    EXPECT_EQ(results("log.info(check.point('t'));"),
              (QStringList{"ERROR Verification point 't' failed|The table in '" +
                               runner.suitePath() + "/points/t.xml' can't be read.",
                           "LOG false|"}));
}

TEST_F(ScriptTest, AttachmentsAreCopiedIntoTheResultDirectory)
{
    runner.addFile("tst_s/a.txt", "content");
    const QString resultDir = runner.suitePath() + "/../results";
    EXPECT_EQ(results("attach('a.txt', 'title'); attach('a.txt');\n"
                      "try { attach('none'); } catch (e) { log.info(e.message); }",
                      {"--resultdir", resultDir}),
              (QStringList{
                  "ATTACHMENT title|" + QDir::cleanPath(resultDir) + "/attachments/tst_s/a.txt",
                  "ATTACHMENT a_2.txt|" + QDir::cleanPath(resultDir) + "/attachments/tst_s/a_2.txt",
                  "LOG attach: there is no file 'none'|"}));
    EXPECT_EQ(readFile(resultDir + "/attachments/tst_s/a_2.txt"), "content");
    EXPECT_EQ(results("attach('a.txt');"),
              QStringList("ATTACHMENT a.txt|" + runner.suitePath() + "/tst_s/a.txt"));
}

TEST_F(ScriptTest, TheEnvironmentAndTheArgumentsReachTheScript)
{
    runner.addFile("env", "# comment\n\nFROM_FILE=gr\xc3\xbcn = x\nBOTH=file\n");
    EXPECT_EQ(
        results("log.info(env('FROM_FILE'), env('BOTH'));\n"
                "log.info(env('NOT_SET'), Array.isArray(scriptArguments) ? scriptArguments : '');\n"
                "log.info(env('MORVEX_SUITE_DIR'));",
                {"--envvars", runner.suitePath() + "/env", "--envvar", "BOTH=option",
                 "--scriptargs", "a b", "--x"}),
        (QStringList{QString::fromUtf8("LOG grün = x|option"), "LOG |[\"a b\",\"--x\"]",
                     "LOG suite|"}));
}

TEST_F(ScriptTest, PausesAreStretchedByTheirFactor)
{
    EXPECT_EQ(results("var start = Date.now(); snooze(0.1); snooze(-1);\n"
                      "check.that(Date.now() - start >= 290, 'm');",
                      {"--snoozeFactor", "3"}),
              QStringList("PASS m|The condition holds."));
}

TEST_F(ScriptTest, TextsOfFilesAreWholeAndNoneIsEmptiedByMistake)
{
    const QStringList lines =
        results("file.write('f', 'a\\0b'); check.equal(file.read('f'), 'a\\0b');\n"
                "try { file.write('f'); } catch (error) { log.info(file.read('f').length); }\n"
                "try { snooze('x'); } catch (error) { log.info(error.name); }");
    EXPECT_TRUE(lines.value(0).startsWith("PASS "));
    EXPECT_EQ(lines.mid(1), (QStringList{"LOG 3|", "LOG TypeError|"}));
}

TEST_F(ScriptTest, TestCasesThatCannotBeRunAreErrors)
{
    runner.addFile("tst_bdd/test.feature", "Feature: x");
    runner.addFile("tst_bdd/script.js", "check.pass('never');");
    runner.addFile("tst_empty/nothing", "");
    runner.addFile("tst_zero/script.js", QByteArray("check.pass('p');\n\0\0", 19));
    runner.addFile("tst_zero_inside/script.js", "include('lib.js');");
    runner.addFile("lib.js", QByteArray("\0", 1));
    const RunnerOutput run = runner.runSuite({});
    EXPECT_EQ(RunnerProcess::resultsOf(run).filter(QRegExp("^(ERROR|PASS)")),
              (QStringList{"ERROR Cannot run the test case|Behaviour driven test cases (*.feature) "
                           "can't be run yet.",
                           "ERROR Cannot run the test case|There is no script.js in '" +
                               runner.suitePath() + "/tst_empty'.",
                           "ERROR Cannot run the test case|'" + runner.suitePath() +
                               "/tst_zero/script.js' has a zero byte in line 2. It is damaged, or "
                               "its text is not UTF-8.",
                           "ERROR Script error|Error: include: '" + runner.suitePath() +
                               "/lib.js' has a zero byte in line 1. It is damaged, or its text is "
                               "not UTF-8.\\n  at " +
                               runner.suitePath() + "/tst_zero_inside/script.js:1"}));
    EXPECT_EQ(run.status, 1);
}

TEST_F(ScriptTest, TheSuiteSetsUpAndTearsDownAroundEachScriptHoweverItEnds)
{
    const QByteArray both = "function help() { log.info('help'); }\n"
                            "function setUp() { log.info('up'); }\n"
                            "function tearDown() { log.info('down'); }\n";
    const QStringList up{"LOG up|"};
    const QStringList down{"LOG down|"};
    const QString place = "\\n  at " + runner.suitePath();
    const std::tuple<QByteArray, QByteArray, QStringList> rows[] = {
        {both, "help(); function tearDown() { log.info('of the script'); }",
         up + QStringList("LOG help|") + down},
        {both, "check.fail('f');", up + QStringList("FAIL f|") + down},
        {both, "Promise.resolve().then(help);\nthrow 5;",
         up + QStringList{"LOG help|", "ERROR Script error|5" + place + "/tst_s/script.js:2"} +
             down},
        {both + "setUp = function () {\n  throw 'no';\n}", "log.info('never');",
         QStringList("ERROR Script error in setUp|no" + place + "/suite.js:5") + down},
        {both + "function tearDown() { help(); missing(); }", "",
         up + QStringList{"LOG help|",
                          "ERROR Script error in tearDown|ReferenceError: missing is not defined" +
                              place + "/suite.js:4"}},
        {both + "throw 'all';",
         "log.info('never');",
         {"ERROR Script error|all" + place + "/suite.js:4"}},
        {"var setUp = 1;",
         "log.info('never');",
         {"ERROR Script error|TypeError: setUp has to be a function" + place + "/suite.js:1"}},
    };
    for (const auto &[suite, script, lines] : rows) {
        runner.addFile("suite.js", suite);
        EXPECT_EQ(results(script), lines) << script.constData();
    }
}

TEST_F(ScriptTest, AnObjectGivesItsPropertiesAsValuesAndAsTextsWhereTheseSayMore)
{
    EXPECT_EQ(results("application.start('inventory'); const all = find('count').properties;\n"
                      "log.info([all.objectName, all.maximum, all.wrapping, typeof all.size]);"),
              QStringList("LOG [\"count\",9999,false,\"string\"]|"));
}
