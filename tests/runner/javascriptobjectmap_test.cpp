#include "runner/javascriptobjectmap.h"

#include "support/runnerprocess.h"
#include "support/test.h"

#include <unistd.h>

using namespace Morvex;
using namespace MorvexTest;

namespace {

const char marker[] = "// MORVEX_INSERT_OBJECT_NAMES_HERE\n";

class JavaScriptObjectMapTest : public testing::Test
{
protected:
    JavaScriptObjectMapTest()
        : path(dir.filePath("names.js"))
    {
    }
    ~JavaScriptObjectMapTest() override { ObjectMap::install(nullptr); }

    // What a recording of these objects makes of a file with this content.
    QByteArray saved(const QByteArray &content, const QStringList &objects)
    {
        writeFile(path, content);
        JavaScriptObjectMap map(path);
        for (const QString &object : objects)
            map.getSymbolicName(object, true);
        EXPECT_TRUE(map.save()) << map.saveError().toStdString();
        EXPECT_TRUE(map.createdNames().isEmpty());
        return readFile(path);
    }

    QTemporaryDir dir;
    QString path;
};

} // namespace

TEST_F(JavaScriptObjectMapTest, EachObjectGetsOneDefinitionUnderANameOfItsOwn)
{
    JavaScriptObjectMap map(path);
    const std::pair<const char *, const char *> cases[] = {
        {"{text='Save As...' type='QPushButton'}", "names.saveAs"},
        {"{type='QPushButton' text='Save As...'}", "names.saveAs"},
        {"{text='Save as'}", "names.saveAs_2"},
        {"{text='save as'}", "names.saveAs_3"},
        {"{text='Größe 2'}", "names.größe2"},
        {"{text='保存'}", "names.保存"},
        {"{text='\u0939\u093f\u0928\u094d\u0926\u0940'}",
         "names[\"\u0939\u093f\u0928\u094d\u0926\u0940\"]"},
        {"{text='class'}", "names.class"},
        {"{text='constructor'}", "names.constructor"},
        {"{text='2nd'}", "names._2nd"},
        {"{text='...'}", "names.ellipsis"},
        {"{text='5'}", "names.number5"},
        {"{text='E&xit && q&uit'}", "names.exitQuit"},
        {"{text='>>'}", "names.greater"},
        {"{text='<p>See <a href=\"x\">more</a>'}", "names.seeMore"},
        {"{text='\u2022'}", "names.object"},
        {"{text='It was a long way to the words of this text'}",
         "names.itWasALongWayToTheWordsOfThisText"},
        {"SWT", "names.SWT"},
        {"{text='OK' window={text='Dialog'}}", "names.ok"},
        {"{text='Dialog'}", "names.dialog"},
        {":unknown \"name\"", R"(":unknown \"name\"")"},
    };
    for (int pass = 0; pass < 2; ++pass) {
        for (const auto &[object, expression] : cases)
            EXPECT_EQ(map.getSymbolicName(object, true), expression);
        EXPECT_EQ(map.createdNames().size(), pass == 0 ? 19 : 0);
        ASSERT_TRUE(map.save());
        EXPECT_EQ(map.error().toString(), "");
    }
    EXPECT_EQ(map.getSymbolicName(":saveAs", true), "names.saveAs");
    EXPECT_TRUE(readFile(path).contains(
        "names.dialog = {text: \"Dialog\"};\nnames.ok = {text: \"OK\", window: names.dialog};\n"));
    EXPECT_EQ(map.getScriptedSymbolicNames().mid(0, 2), QStringList({"saveAs", "saveAs_2"}));
}

TEST_F(JavaScriptObjectMapTest, AnObjectIsKnownInWhateverWordsAndOrderTheFileDefinesIt)
{
    writeFile(path, "names.a = {text: 'a', window: {text: 'W'}};\n"
                    "names.w = {text: 'W'};\nnames.b = {window: names.w, text: 'b'};\n");
    JavaScriptObjectMap map(path);
    EXPECT_EQ(map.getSymbolicName("{text='a' window={text='W'}}", true), "names.a");
    EXPECT_EQ(map.getSymbolicName("{text='a' window=':w'}", true), "names.a");
    EXPECT_EQ(map.getSymbolicName("{text='b' window={text='W'}}", true), "names.b");
    EXPECT_TRUE(map.createdNames().isEmpty());
}

TEST_F(JavaScriptObjectMapTest, NamesAreAddedWithoutALossOfWhatAFileHolds)
{
    const QStringList save{"{text='Save'}"};
    const QByteArray definition = "names.save = {text: \"Save\"};\n";
    const QByteArray comment = "// " + definition;
    const std::tuple<QByteArray, QByteArray, QByteArray> cases[] = {
        {"", "// Names of the objects", definition + marker},
        {" \n\t\n", "// Names of the objects", definition + marker},
        {QByteArray("// mine\n") + marker + "names.z = {a: 1};", "// mine\n" + definition + marker,
         "names.z = {a: 1};\n"},
        {"// mine", "// mine\n//\n// NOTE: No line ending in", comment},
        {"// MORVEX_INSERT_OBJECT_NAMES_HERE \n",
         "// MORVEX_INSERT_OBJECT_NAMES_HERE \n//\n// NOTE", comment},
        {QByteArray("\xef\xbb\xbfnames.a = {b: 'c'};\r\n") + marker, "names.a = {b: 'c'};\n",
         definition + marker},
        {definition + marker, definition + marker, definition + marker},
    };
    for (const auto &[before, start, end] : cases) {
        const QByteArray after = saved(before, save);
        EXPECT_TRUE(after.startsWith(start)) << after.toStdString();
        EXPECT_TRUE(after.endsWith(end)) << after.toStdString();
    }
}

// Nobody may write through a link to a directory that does not exist, not even root.
TEST_F(JavaScriptObjectMapTest, WhatCanNotBeSavedIsKeptBesideEarlierCopies)
{
    ASSERT_EQ(::symlink("none/names.js", qPrintable(path)), 0);
    for (const char *end : {".unsaved", ".unsaved_2"}) {
        const QString copy = path + end;
        JavaScriptObjectMap map(path);
        map.getSymbolicName("{text='Save'}", true);
        EXPECT_FALSE(map.save());
        EXPECT_TRUE(map.saveError().contains('\'' + copy + '\'')) << map.saveError().toStdString();
        EXPECT_TRUE(readFile(copy).contains("\nnames.save = {text: \"Save\"};\n"));
        EXPECT_EQ(map.unsavedCode(), "");
    }
    const QByteArray zero("names.a\0 = 'b';", 15);
    ASSERT_TRUE(QFile::remove(path));
    writeFile(path, zero);
    EXPECT_NE(JavaScriptObjectMap(path).saveOrKeep(), "");
    EXPECT_EQ(readFile(path), zero);
    EXPECT_TRUE(QFileInfo::exists(path + ".unsaved_3"));

    const JavaScriptObjectMap nowhere("/proc/none/names.js");
    EXPECT_FALSE(nowhere.save());
    EXPECT_NE(nowhere.unsavedCode(), "");
}

TEST_F(JavaScriptObjectMapTest, AFileThatCanNotBeUsedSaysWhereAndWhy)
{
    const struct
    {
        QByteArray content;
        int line;
        const char *part;
        std::chrono::milliseconds limit = longestNamesFileRun;
    } cases[] = {
        {"\n\nnames.a = ;", 3, "SyntaxError"},
        {"names.a = {text: 'x'};\nnames.a = {text: 'y'};", 2, "defined twice"},
        {"names.a = {window: names.b};", 1, "no name 'b' above"},
        {"names.a = {};", 1, "without properties"},
        {"names.a = {text: null};", 1, "value of 'text'"},
        {"names.a = {'a b': 'c'};", 1, "can't be a property"},
        {QByteArray("// a\nnames.a\0 = 'b';", 20), 2, "zero byte"},
        {"names.a = {'a@b': 'c'};", 1, "not a valid name"},
        {"names.a = 'b';\nnames.b = {window: wildcard('x')};", 2, "not a valid name"},
        {"names.a = '{bad';", 1, "not a valid name"},
        {"\n// \xff", 2, "not UTF-8"},
        {"while (true) ;", 0, "still running after 0.5 seconds", std::chrono::milliseconds(500)},
        {"names.a = {text: env('HOME')};", 1, "env is not defined"},
    };
    for (const auto &each : cases) {
        writeFile(path, each.content);
        const JavaScriptObjectMap map(path, each.limit);
        const NamesFileError error = map.error();
        EXPECT_TRUE(error.text.contains(each.part)) << error.text.toStdString();
        EXPECT_EQ(error.place.lineNumber(), each.line) << error.text.toStdString();
        EXPECT_EQ(error.place.fileName(), path);
        QString dump;
        EXPECT_FALSE(map.scriptedNamesDump(&dump));
        EXPECT_EQ(dump, "");
    }
}

TEST_F(JavaScriptObjectMapTest, NamesOfAnObjectMapFollowTheirReferencesToAnyLengthAndRound)
{
    const int length = 10000;
    ObjectMap legacy;
    for (int i = 0; i < length; ++i)
        legacy.insert(QStringLiteral(":n%1").arg(i),
                      ObjectName(QStringLiteral("{text='%1' window=':n%2'}")
                                     .arg(QString::number(i), QString::number(i + 1))));
    legacy.insert(":n10000", ObjectName("{text='x' window=':n9999' parent=':gone'}"));
    legacy.insert(":N1", ObjectName("{text='other'}"));
    legacy.insert(":last", ObjectName("{text='last' window=':n1'}"));

    JavaScriptObjectMap map(path);
    QMap<QString, QString> migrated;
    for (const QString &name : legacy.names().keys())
        map.migrateName(legacy, name, migrated);
    EXPECT_EQ(map.createdNames().size(), length + 3);
    EXPECT_EQ(map.danglingReferences(), QStringList(":gone"));
    ASSERT_TRUE(map.save());
    ASSERT_EQ(map.error().toString(), "");
    QString dump;
    ASSERT_TRUE(map.scriptedNamesDump(&dump));
    EXPECT_EQ(migrated.value(":N1"), "n1");
    EXPECT_EQ(migrated.value(":n1"), "n1_2");
    EXPECT_TRUE(dump.contains(":last\t{text='last' window=':n1_2'}\n"));

    ObjectMap::install(&legacy);
    JavaScriptObjectMap resolved(dir.filePath("resolved.js"));
    EXPECT_EQ(resolved.getSymbolicName(":last", false), "names.last");
    EXPECT_EQ(resolved.createdNames().size(), length + 1);
    ASSERT_TRUE(resolved.save());
    EXPECT_EQ(resolved.error().toString(), "");
}

TEST_F(JavaScriptObjectMapTest, AMigratedNameNeverFitsAnotherObject)
{
    RunnerProcess runner;
    runner.addFile("objects.map", ":A\t{text='OK' window={text='Dialog'}}\n"
                                  ":B\t{x='1' window=':save'}\n"
                                  ":Dialog\t{text='Other'}\n"
                                  ":Save\t{text='Save'}\n");
    const QString names = runner.suitePath() + "/names.js";
    for (int pass = 0; pass < 2; ++pass) {
        EXPECT_EQ(runner.runSuite({"--migrate-names"}).status, 0);
        const QByteArray code = readFile(names);
        EXPECT_TRUE(code.contains("\nnames.dialog = {text: \"Dialog\"};\n"
                                  "names.a = {text: \"OK\", window: names.dialog};\n"
                                  "names.b = {window: \":save\", x: \"1\"};\n"
                                  "names.dialog_2 = {text: \"Other\"};\n"
                                  "names.save = {text: \"Save\"};\n// MORVEX"))
            << code.toStdString();
    }
}

TEST_F(JavaScriptObjectMapTest, ANameWithinAMigratedNameIsNotFoundByTheKeysOfTheFile)
{
    RunnerProcess runner;
    runner.addFile("names.js", QByteArray("names.main = {type: 'Other'};\n"
                                          "names.inner = {type: 'X', window: names.main};\n"
                                          "names.ok = {text: 'Yes', window: names.main};\n") +
                                   marker);
    runner.addFile("objects.map", ":btn\t{text='b' container={type='X' window=':main'}}\n"
                                  ":ok\t{text='Yes' window=':main'}\n"
                                  ":main\t{type='QMainWindow'}\n"
                                  ":padded\t{text=' Yes ' container=':ok'}\n");
    EXPECT_EQ(runner.runSuite({"--migrate-names"}).status, 0);
    const QByteArray code = readFile(runner.suitePath() + "/names.js");
    EXPECT_TRUE(code.contains("\nnames.main_2 = {type: \"QMainWindow\"};\n")) << code.toStdString();
    EXPECT_FALSE(code.contains("container: names.inner}")) << code.toStdString();
    EXPECT_TRUE(code.contains("{text: \"Yes\", window: names.main_2};\n")) << code.toStdString();
    // What refers to others, within a name too, is known the next time.
    EXPECT_EQ(runner.runSuite({"--migrate-names"}).status, 0);
    EXPECT_EQ(readFile(runner.suitePath() + "/names.js"), code);
}

TEST_F(JavaScriptObjectMapTest, ASerializedMapKeepsItsNames)
{
    JavaScriptObjectMap map(path);
    map.getSymbolicName("{text='dropped'}", true);
    map.fromLegacyRepresentation(":Save As\t{text='Save'}\n:B\t{text='b' window=':Save As'}\n");
    ASSERT_TRUE(map.save());
    const QByteArray code = readFile(path);
    EXPECT_TRUE(code.contains("names[\"Save As\"] = {text: \"Save\"};\n"
                              "names.B = {text: \"b\", window: names[\"Save As\"]};\n"))
        << code.toStdString();
    EXPECT_FALSE(code.contains("dropped"));
}

TEST_F(JavaScriptObjectMapTest, RealNamesSurviveTheWayThroughTheFile)
{
    const QStringList objects{
        "{text='it\\'s a \\\\ \"\n\t\u2028'}", "{text?='Save*' size.width~='1\\\\d'}",
        "{text='\u202eabc' __proto__='x'}",    "plain 'text'",
        "{window={text='W' parent={a='1'}}}",
    };
    JavaScriptObjectMap map(path);
    QStringList expressions;
    for (const QString &object : objects)
        expressions += map.getSymbolicName(object, true);
    ASSERT_TRUE(map.save());
    ASSERT_EQ(map.error().toString(), "");
    for (int i = 0; i < objects.size(); ++i)
        EXPECT_EQ(map.getSymbolicName(objects.at(i), true), expressions.at(i));
    EXPECT_TRUE(map.createdNames().isEmpty());
}
