#include "support/files.h"
#include "support/scriptfixture.h"

#include <QJSEngine>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>

#include <gtest/gtest.h>

#include <set>

using namespace MorvexTest;

namespace {

using Names = std::set<std::string>;

Names namesIn(const QString &text, const char *pattern)
{
    Names names;
    const QRegularExpression expression(pattern, QRegularExpression::MultilineOption);
    for (auto matches = expression.globalMatch(text); matches.hasNext();)
        names.insert(matches.next().captured(1).toStdString());
    return names;
}

// What is between the braces after it.
QString bodyOf(const QString &declarations, const QString &head)
{
    const int start = declarations.indexOf(head + " {\n");
    return declarations.mid(start, declarations.indexOf("\n}\n", start) - start);
}

Names declaredGlobals(const QString &declarations)
{
    return namesIn(declarations, "^declare (?:function|namespace|const) (\\w+)");
}

Names membersOf(const QString &declarations, const QString &interface)
{
    return namesIn(bodyOf(declarations, "interface " + interface), "^    (?:readonly )?(\\w+)[(:]");
}

Names declaredMembers(const QString &declarations, const QString &name)
{
    const QString space = bodyOf(declarations, "declare namespace " + name);
    if (!space.isEmpty())
        return namesIn(space, "^    function (\\w+)");
    Names own = membersOf(declarations, name);
    if (own.empty()) {
        own = membersOf(declarations, name + " extends MouseTarget");
        own.merge(membersOf(declarations, "MouseTarget"));
    }
    return own;
}

} // namespace

class DeclarationsTest : public ScriptFixture
{
};

TEST_F(DeclarationsTest, EditorsKnowAllNamesOfScriptsAndNoOthers)
{
    const QString declarations = QString::fromUtf8(readFile(MORVEX_TEST_PREFIX "/lib/morvex.d.ts"));
    QJSEngine engine;
    runner.addFile(
        "standard.json",
        engine.evaluate("JSON.stringify(Object.getOwnPropertyNames(this))").toString().toUtf8());
    runner.addFile("table.tsv", "a\nb\n");
    const QStringList lines = results(
        "var script = Object.getOwnPropertyNames(this);\n"
        "var standard = JSON.parse(file.read('standard.json')).concat('standard', 'internal',\n"
        "    'namesOf', 'table', 'all', 'script');\n"
        // What is for the modules of the runner alone.
        "var internal = ['constructor', 'toString', 'toJSON', 'id', 'selector', 'source',\n"
        "    'timeout', 'useMouse', 'wait'];\n"
        "function namesOf(object) {\n"
        "    var own = Object.getOwnPropertyNames(object);\n"
        "    var type = Object.getPrototypeOf(object);\n"
        "    if (type !== Object.prototype) own = own.concat(Object.getOwnPropertyNames(type));\n"
        "    return own.filter(function (name) { return internal.indexOf(name) < 0; }); }\n"
        "var table = data.open('table.tsv');\n"
        "var all = {ApplicationContext: application.start('inventory'),\n"
        "    FoundObject: find('articles'), Item: find('articles').item('Nuts'),\n"
        "    DataTable: table, DataRecord: table.record(0), NamePattern: wildcard('a'), log: log,\n"
        "    check: check, application: application, file: file, data: data};\n"
        "Object.keys(all).forEach(function (name) { all[name] = namesOf(all[name]); });\n"
        "all.globals = script.filter(function (name) { return standard.indexOf(name) < 0; });\n"
        "file.write('names.json', JSON.stringify(all));");
    EXPECT_EQ(lines, QStringList());
    const QJsonObject all =
        QJsonDocument::fromJson(readFile(runner.suitePath() + "/tst_s/names.json")).object();
    EXPECT_EQ(all.size(), 12);
    for (auto it = all.begin(); it != all.end(); ++it) {
        Names names;
        for (const QJsonValue &name : it.value().toArray())
            names.insert(name.toString().toStdString());
        EXPECT_EQ(it.key() == "globals" ? declaredGlobals(declarations)
                                        : declaredMembers(declarations, it.key()),
                  names)
            << it.key().toStdString();
    }
}
