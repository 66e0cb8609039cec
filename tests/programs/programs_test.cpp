#include "support/display.h"
#include "support/files.h"
#include "support/scriptfixture.h"

#include <QFileInfo>
#include <QStandardPaths>

#include <gtest/gtest.h>

#include <algorithm>

using namespace MorvexTest;

namespace {

const char examples[] = "/usr/lib/x86_64-linux-gnu/qt5/examples/";

QByteArray start(const QString &program)
{
    return "application.start('" + program.toUtf8() + "');\n";
}

} // namespace

/// Drives programs that others wrote, without a display and under one. Each script reads a result
/// back through the program's own text or file.
class ProgramsTest : public ScriptFixture, public testing::WithParamInterface<bool>
{
protected:
    void SetUp() override
    {
        runner.environment.remove("DISPLAY");
        if (!GetParam()) {
            runner.environment.insert("QT_QPA_PLATFORM", "offscreen");
            return;
        }
        if (!Display::isPossible())
            GTEST_SKIP() << "Xvfb, openbox or xdotool is not installed";
        runner.environment.remove("QT_QPA_PLATFORM");
        display = std::make_unique<Display>();
        display->addTo(&runner.environment);
    }

    // Skips the test where one of these is not installed; in CI it fails.
    static bool areThere(const QStringList &files)
    {
        const auto missing = std::find_if(files.begin(), files.end(), [](const QString &file) {
            return !QFileInfo::exists(file) && QStandardPaths::findExecutable(file).isEmpty();
        });
        if (missing == files.end())
            return true;
        if (!qEnvironmentVariableIsEmpty("CI"))
            ADD_FAILURE() << missing->toStdString() << ": scripts/install-deps.sh installs it";
        return false;
    }

    // Where a program saves what the test reads.
    QString target() { return runner.suitePath() + "/saved"; }

    std::unique_ptr<Display> display;
};

INSTANTIATE_TEST_SUITE_P(Platforms, ProgramsTest, testing::Bool(),
                         [](const testing::TestParamInfo<bool> &platform) {
                             return platform.param ? "Display" : "Offscreen";
                         });

TEST_P(ProgramsTest, ACalculatorTakesButtonsAndKeys)
{
    if (!areThere({"kcalc"}))
        GTEST_SKIP() << "kcalc is not installed";
    EXPECT_EQ(results(start("kcalc") +
                      "['7', '+', '5', '='].forEach(function (key) {\n"
                      "    find({type: 'KCalcButton', text: key}).click(); });\n"
                      "var display = find({type: 'KCalcDisplay'});\n"
                      "log.info(display.get('accessibleName'));\n"
                      // The keys press its buttons, which takes a while.
                      "display.type('*3<Return>'); display.waitFor('accessibleName', '36');\n"
                      "find({type: 'QMenuBar'}).item('Settings/Science Mode').click();\n"
                      "log.info(find({type: 'KCalcButton', text: 'sin'}).get('visible'));\n"),
              (QStringList{"LOG 12|", "LOG true|"}));
}

TEST_P(ProgramsTest, AnEditorUndoesFindsSavesAndAsksBeforeItCloses)
{
    if (!areThere({"featherpad"}))
        GTEST_SKIP() << "featherpad is not installed";
    EXPECT_EQ(
        results("var app = " + start("featherpad") +
                "var edit = find({type: 'FeatherPad::TextEdit'});\n"
                "var menu = find({type: 'QMenuBar'});\n"
                "edit.type('one two<Return>three');\n"
                "menu.item('Edit/Undo').click(); log.info(edit.get('plainText').trim());\n"
                "edit.type('two'); edit.type('<Ctrl+F>');\n"
                "find({type: 'FeatherPad::LineEdit', visible: true}).type('one<Return>');\n"
                // It has selected what it has found.
                "edit.type('uno');\n"
                "menu.item('File/Save As').click();\n"
                "find('fileNameEdit').type('<Ctrl+A>" +
                target().toUtf8() +
                "<Return>');\n"
                "waitFor(() => file.exists('../saved'));\n"
                "edit.type('<Ctrl+End>more'); find({type: 'FeatherPad::FPwin'}).type('<Ctrl+Q>');\n"
                "find({type: 'QPushButton', text: '&Discard changes'}).click();\n"
                "log.info(waitFor(() => !app.isRunning()));\n"),
        (QStringList{"LOG one two|", "LOG true|"}));
    EXPECT_EQ(readFile(target()).trimmed(), "uno two\ntwo");
}

TEST_P(ProgramsTest, AWizardMakesAFileAndATreeIsFilledAndFolded)
{
    if (!areThere({"keepassxc"}))
        GTEST_SKIP() << "keepassxc is not installed";
    EXPECT_EQ(
        results(
            start("keepassxc") +
            "find('buttonNewDatabase').click();\n"
            "find('databaseName').type('<Ctrl+A>Shop');\n"
            "function next() { find({type: 'QPushButton', container: {type: 'QWizard'},\n"
            "    text: wildcard('Continue*'), visible: true}).click(); }\n"
            "next(); next();\n"
            "[1, 2].forEach(function (n) { find({name: 'passwordEdit', visible: true,\n"
            "    container: {type: 'QWizard'}, occurrence: n}).type('four words for a test'); });\n"
            "find({name: 'qt_wizard_finish'}).click();\n"
            "find('fileNameEdit').type('<Ctrl+A>" +
            target().toUtf8() +
            "<Return>');\n"
            "waitFor(() => file.exists('../saved'));\n"
            "var groups = find('groupView');\n"
            "find({type: 'QMenuBar'}).item('Groups/New Group\xe2\x80\xa6').click();\n"
            "find({name: 'editName', visible: true}).type('Metal/Nuts');\n"
            "find({type: 'QPushButton', text: 'OK', visible: true}).click();\n"
            "log.info(groups.item('Root/Metal/Nuts').text(),\n"
            "         groups.item('Root/Metal\\\\/Nuts').get('selected'));\n"
            // While it saves itself it takes no input.
            "function ready() { groups.waitFor('enabled', true); return groups; }\n"
            "ready().item('Root').collapse(); log.info(groups.item('Root').get('expanded'));\n"
            "ready().item('Root').toggle(); ready().item('Root/Metal/Nuts').rightClick();\n"
            "log.info(find({name: 'menuGroups', visible: true}).exists());\n"),
        (QStringList{"LOG Metal/Nuts|true", "LOG false|", "LOG true|"}));
}

TEST_P(ProgramsTest, ItemsOfQtQuickAreClickedAndTypedInto)
{
    const QString program = QLatin1String(examples) + "quickcontrols2/contactlist/contactlist";
    if (!areThere({program}))
        GTEST_SKIP() << "qtquickcontrols2-5-examples is not installed";
    const QStringList lines = results(
        start(program) +
        "find({type: 'RoundButton'}).click();\n"
        "find({id: 'fullName'}).type('Grace Hopper');\n"
        "find({id: 'address'}).type('Main Street 1<Tab>Arlington<Tab>555');\n"
        "find({type: 'Button', text: 'OK'}).click();\n"
        "var entry = find({type: 'Label', text: 'Grace Hopper'});\n"
        "entry.click(); log.info(find({type: 'Label', text: 'Arlington'}).get('visible'));\n"
        "try { entry.screenshot('entry.png'); } catch (error) { }\n"
        "log.info(file.exists('entry.png'));\n");
    EXPECT_EQ(lines, (QStringList{"LOG true|", GetParam() ? "LOG true|" : "LOG false|"}));
}

TEST_P(ProgramsTest, AProgramInPythonIsUsedLikeAnyOther)
{
    const QString script = "/usr/share/doc/pyqt5-examples/examples/tutorials/addressbook/part7.py";
    if (!areThere({"/usr/bin/python3", script}))
        GTEST_SKIP() << "pyqt5-examples is not installed";
    const QByteArray box = "container: {type: 'QMessageBox'}";
    EXPECT_EQ(results("application.start('/usr/bin/python3', '" + script.toUtf8() +
                      "');\n"
                      "function push(text) { find({type: 'QPushButton', text: text, visible: "
                      "true}).click(); }\n"
                      "['Ada', 'Grace', 'Mary'].forEach(function (name) {\n"
                      "    push('&Add'); find({type: 'QLineEdit', visible: true}).type(name);\n"
                      "    find({type: 'QTextEdit'}).type('Arlington'); push('&Submit');\n"
                      "    find({type: 'QPushButton', " +
                      box +
                      "}).click(); });\n"
                      "push('&Find');\n"
                      "find({type: 'QLineEdit', container: {type: 'FindDialog'}}).type('Nobody');\n"
                      "find({type: 'QPushButton', container: {type: 'FindDialog'}}).click();\n"
                      "log.info(find({type: 'QMessageBox'}).get('text'));\n"
                      "find({type: 'QPushButton', " +
                      box +
                      "}).click(); push('Sa&ve...');\n"
                      "find('fileNameEdit').type('<Ctrl+A>" +
                      target().toUtf8() +
                      "<Return>');\n"
                      "waitFor(() => file.exists('../saved'));\n"),
              QStringList("LOG Sorry, \"Nobody\" is not in your address book.|"));
    EXPECT_TRUE(readFile(target()).contains("Arlington"));
}

TEST_P(ProgramsTest, AProgramThatAScriptStartsIsTheApplication)
{
    if (!areThere({"speedcrunch"}))
        GTEST_SKIP() << "speedcrunch is not installed";
    runner.addFile("wrapper.sh", "#!/bin/sh\nspeedcrunch \"$@\"\nexit 7\n");
    EXPECT_EQ(results("application.start('/bin/sh', '" + runner.suitePath().toUtf8() +
                      "/wrapper.sh');\n"
                      "find({type: 'Editor'}).type('12*(3+4)<Return>');\n"
                      "log.info(find({type: 'ResultDisplay'}).get('plainText').trim());"),
              QStringList("LOG 12*(3+4)\\n= 84|"));
}
