#include "support/files.h"
#include "support/scriptfixture.h"

#include <QDir>
#include <QFile>
#include <QImage>

#include <gtest/gtest.h>

using namespace MorvexTest;

namespace {

const char tablePoint[] = "<VerificationPoint version='5' type='Table'>"
                          "<Verification object='articles'><table><row><cell><text>Bolts</text>"
                          "</cell><cell><text>40</text></cell></row></table></Verification>"
                          "</VerificationPoint>";
const char picturePoint[] = "<VerificationPoint version='5' type='Screenshot'>"
                            "<Verification object='picture' type='PNG'>-</Verification>"
                            "</VerificationPoint>";

QByteArray statePoint(const QByteArray &text, const QByteArray &more = "")
{
    return "<VerificationPoint version='1' type='ObjectProperties'><Verification object='state' "
           "property='text' " +
           more + ">" + text + "</Verification></VerificationPoint>";
}

} // namespace

class ScriptPointsTest : public ScriptFixture
{
};

TEST_F(ScriptPointsTest, PointsAreTakenFromTheTestCaseThenFromTheSuite)
{
    runner.addFile("points/both.xml", statePoint("of the suite"));
    runner.addFile("points/suite.xml", statePoint("3 articles"));
    runner.addFile("tst_s/points/both.xml", statePoint("3 articles"));
    runner.addFile("points/misspelt.xml", "<VerificationPoint version='5' type='Table'/>");
    QStringList lines =
        results("application.start('inventory'); check.point('both');"
                "check.that(check.point('suite'), 'returned'); check.point('misspelt');"
                "check.that(!check.point('none'), 'not there');");
    EXPECT_EQ(lines.takeLast(), "PASS not there|The condition holds.");
    EXPECT_TRUE(lines.takeLast().startsWith("ERROR Verification point file 'none' cannot be "
                                            "opened.|There is no file '"));
    EXPECT_TRUE(
        lines.takeLast().startsWith("WARNING Verification point 'misspelt' checks nothing|"));
    EXPECT_EQ(lines, (QStringList{"PASS both: Object property comparison of 'state.text' passed|"
                                  "'3 articles' and '3 articles' are equal (both)",
                                  "PASS suite: Object property comparison of 'state.text' passed|"
                                  "'3 articles' and '3 articles' are equal (suite)",
                                  "PASS returned|The condition holds."}));
    EXPECT_EQ(output.status, 1);
}

TEST_F(ScriptPointsTest, OptionsOfPointsReachTheVerification)
{
    runner.addFile("points/counted.xml", statePoint("80 pieces"));
    runner.addFile("points/field.xml", statePoint("state", "valueType='DataField'"));
    runner.addFile("data.tsv", "state\n3 articles\nnone\n");
    const QStringList lines = results(
        "application.start('inventory'); check.point('counted', {expectFail: true});\n"
        "check.that(!check.point('counted', {silent: true}), 'silent');\n"
        "var table = data.open('data.tsv'); check.point('field', {record: table.record(0)});\n"
        "find('countStock').click(); check.point('counted', {retry: 60000});\n");
    ASSERT_EQ(lines.size(), 5);
    EXPECT_TRUE(lines[0].startsWith("XFAIL counted: ")) << lines[0].toStdString();
    EXPECT_EQ(lines[1], "PASS silent|The condition holds.");
    EXPECT_TRUE(lines[2].startsWith("PASS field [data.tsv:state:1]: ")) << lines[2].toStdString();
    EXPECT_TRUE(lines[3].startsWith("PASS counted: ")) << lines[3].toStdString();
    EXPECT_TRUE(lines[4].startsWith("WARNING counted: It took ")) << lines[4].toStdString();
}

TEST_F(ScriptPointsTest, AResultShowsTheDesktopWhenItsOptionAsksForIt)
{
    runner.addFile("points/Pass.xml", statePoint("3 articles"));
    runner.addFile("points/Fail.xml", statePoint("other"));
    runner.addFile("points/Error.xml", statePoint("x").replace("'state'", "'nothing'"));
    const QStringList types{"Pass", "Fail", "Error", "Warning"};
    for (const QString &type : types)
        runner.addFile("points/Warning" + type + ".xml", tablePoint);
    const QStringList lines = results(
        "application.start('inventory'); var types = ['Pass', 'Fail', 'Error', 'Warning'];\n"
        "types.forEach(function (asked) { types.forEach(function (type) {\n"
        "  var options = {}; options['screenshotOn' + asked] = true;\n"
        "  check.point(type === 'Warning' ? type + asked : type, options); }); });",
        {"--resultdir", runner.suitePath() + "/results", "--learn"});
    ASSERT_EQ(lines.size(), 16);
    for (int i = 0; i < 16; ++i) {
        EXPECT_TRUE(lines[i].startsWith(types[i % 4].toUpper())) << lines[i].toStdString();
        EXPECT_EQ(lines[i].contains(" (Screenshot in \""), i / 4 == i % 4)
            << types[i / 4].toStdString() << lines[i].toStdString();
    }
}

TEST_F(ScriptPointsTest, LearningMakesPointsOfEachTypeThatDoNotExist)
{
    const QByteArray script =
        "application.start('inventory'); var state = find('state');\n"
        "check.point('p', {object: state, type: 'ObjectProperties',\n"
        "                  properties: ['text', 'enabled', 'size.height', 'margin']});\n"
        "check.point('s', {object: 'picture', type: 'Screenshot'});\n"
        "check.point('t', {object: 'articles', type: 'Table'});\n"
        "check.point('v', {object: 'inventory', type: 'Visual'});\n";
    EXPECT_EQ(results(script).filter("ERROR Verification point file '").size(), 4);
    EXPECT_EQ(results(script, {"--learn"}).filter(" was made from object '").size(), 4);
    EXPECT_EQ(output.status, 0);
    const QStringList lines = results(script);
    EXPECT_EQ(lines.filter(QRegExp("^PASS ")).size(), 7) << lines.join('\n').toStdString();

    const QString point = runner.suitePath() + "/tst_s/points/v.xml";
    const QByteArray before = readFile(point);
    const QStringList failed =
        results("application.start('inventory'); find('name').type('x'); check.point('v');\n"
                "find('state').set('text', 'y'); check.point('p');",
                {"--learn"});
    // That the other one is not learned either needs no word.
    ASSERT_EQ(failed.size(), 2 + 4);
    EXPECT_EQ(failed.filter(QRegExp("^(FAIL|WARNING) ")).size(), 3);
    EXPECT_TRUE(failed[0].startsWith("FAIL v: Visual comparison of object 'inventory' failed|"));
    EXPECT_TRUE(failed[1].startsWith("WARNING Verification point 'v' was not changed|"));
    EXPECT_TRUE(failed[1].contains("Delete '" + point + "' to have it made again."));
    EXPECT_EQ(readFile(point), before);

    const QStringList impossible = results(
        "application.start('inventory');\n"
        "check.point('a', {object: 'none', type: 'Visual'});\n"
        "check.point('b', {object: 'state', type: 'Table'});\n"
        "check.point('c', {object: 'state', type: 'ObjectProperties', properties: ['none']});",
        {"--learn"});
    EXPECT_EQ(impossible.filter("could not be made|").size(), 2);
    EXPECT_EQ(impossible.filter("ERROR b: Invalid object type|").size(), 1);
    EXPECT_EQ(impossible.size(), 3);
    EXPECT_EQ(QDir(runner.suitePath() + "/tst_s/points")
                  .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
              (QStringList{"p.xml", "s.xml", "t.xml", "v.xml"}));
}

TEST_F(ScriptPointsTest, LearningMakesTheNextRunPass)
{
    runner.addFile("points/table.xml", tablePoint);
    runner.addFile("points/picture.xml", picturePoint);
    const QByteArray script =
        "application.start('inventory'); check.point('table'); check.point('picture');";
    const auto types = [](const QStringList &lines) {
        return lines.size() == 2 ? lines[0].section(' ', 0, 0) + " " + lines[1].section(' ', 0, 0)
                                 : lines.join('\n');
    };
    EXPECT_EQ(types(results(script, {"--resultdir", runner.suitePath() + "/results"})),
              "FAIL FAIL");
    const QString failed = "/results/suite/tst_s/picture/failedImages/failed_1.png";
    EXPECT_EQ(QImage(runner.suitePath() + failed).size(), QSize(200, 60));
    EXPECT_TRUE(
        output.standardError.startsWith("picture: the stored picture cannot be read as PNG\n"))
        << output.standardError.constData();
    EXPECT_EQ(types(results(script, {"--learn"})), "WARNING WARNING");
    EXPECT_EQ(output.status, 0);
    EXPECT_TRUE(output.standardError.startsWith("morvexrunner: "))
        << output.standardError.constData();
    EXPECT_EQ(types(results(script)), "PASS PASS");
}

TEST_F(ScriptPointsTest, LearnedFilesKeepTheOrderOfTheirAttributes)
{
    const QByteArray attributes =
        QByteArray(tablePoint)
            .replace("object=", "a='1' b='2' c='3' d='4' e='5' f='6' g='7' h='8' object=");
    QByteArray learned;
    for (int run = 0; run < 3; ++run) {
        runner.addFile("points/table.xml", attributes);
        results("application.start('inventory'); check.point('table');", {"--learn"});
        const QByteArray file = readFile(runner.suitePath() + "/points/table.xml");
        EXPECT_TRUE(learned.isEmpty() || file == learned) << file.constData();
        learned = file;
    }
    EXPECT_NE(learned, attributes);
}

TEST_F(ScriptPointsTest, ATimeoutWhileAComparisonApplicationHangsIsNotItsCrash)
{
    const QDir dir(QFileInfo(runner.suitePath()).path());
    const QString comparator = dir.filePath("prefix/bin/hangs");
    writeFile(comparator, "#!/bin/sh\nsleep 60\n");
    QFile::setPermissions(comparator, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    QFile::link(RunnerProcess::program(), dir.filePath("prefix/bin/morvexrunner"));
    QFile::link(MORVEX_TEST_PREFIX "/lib", dir.filePath("prefix/lib"));
    // The caller's directory counts.
    runner.environment.insert("MORVEX_PREFIX", "prefix");
    runner.addFile("points/picture.xml", picturePoint);
    results("application.start('inventory'); check.point('picture');", {"--learn"});
    QByteArray point = readFile(runner.suitePath() + "/points/picture.xml");
    runner.addFile("points/picture.xml",
                   point.replace("</Verification>", "<Algorithm name='hangs'/></Verification>"));
    EXPECT_EQ(results("application.start('inventory'); check.point('picture');\n"
                      "log.info('goes on');",
                      {"--timeout", "15"}),
              (QStringList{"WARNING The test case is ended while this call is running|",
                           "FATAL Execution error|Execution is terminated due to timeout"}));
}
