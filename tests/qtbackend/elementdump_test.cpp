#include "objectmodel/objectmap.h"
#include "qtbackend/inspectortest.h"
#include "shared/browserelement.h"
#include "shared/requestdumpobject.h"
#include "support/environmentguard.h"
#include "support/files.h"

#include <QTabWidget>
#include <QTemporaryDir>
#include <QTreeView>

using namespace Morvex;
using namespace MorvexTest;

namespace {

class ElementDumpTest : public InspectorTest
{
protected:
    ElementDumpTest() { Inspector::install(&inspector); }
    ~ElementDumpTest() override { ObjectMap::install(nullptr); }

    // With the filters of an installation.
    const BrowserElement *snapshot(const QByteArray &extraFilter = {})
    {
        window.show();
        root.clear();
        const QByteArray dump = requestObjectSnapshot("{name='window'}", extraFilter, &error);
        const QByteArray xml = convertDumpToXml(dump, &error);
        EXPECT_TRUE(BrowserElement::readXML(&root, xml, &error)) << error.toStdString();
        return root.children().value(0);
    }

    static void collect(const BrowserElement *element, QList<const BrowserElement *> *all)
    {
        *all += element;
        for (const BrowserElement *child : element->children())
            collect(child, all);
    }

    // Null when it isn't in the tree.
    const BrowserElement *named(const QString &name)
    {
        QList<const BrowserElement *> all;
        collect(&root, &all);
        for (const BrowserElement *element : qAsConst(all)) {
            if (element->identifyingProperties().value("objectName") == name)
                return element;
        }
        return nullptr;
    }

    EnvironmentGuard prefix{"MORVEX_PREFIX", MORVEX_TEST_PREFIX};
    QTemporaryDir dir;
    EnvironmentGuard settings{"MORVEX_USER_SETTINGS_DIR", QFile::encodeName(dir.path())};
    BrowserElement root{nullptr, "live"};
    QString error;
};

} // namespace

TEST_F(ElementDumpTest, ElementsAreWhatUsersSee)
{
    add(new QMenuBar, "bar")->addMenu("&File")->menuAction()->setObjectName("file");
    auto *tabs = add(new QTabWidget, "tabs");
    auto *label = new QLabel("one");
    label->setObjectName("one");
    tabs->addTab(label, "First");
    tabs->addTab(new QLabel("two"), "Second");
    auto *tree = add(new QTreeView, "tree");
    QStandardItemModel model;
    auto *parent = new QStandardItem("a");
    auto *child = new QStandardItem("b");
    child->setCheckable(true);
    parent->appendRow({child, new QStandardItem("c")});
    model.appendRow(parent);
    model.appendRow(new QStandardItem("d"));
    model.setHorizontalHeaderLabels({"Name", "Size"});
    tree->setModel(&model);
    tree->expandAll();
    auto *box = add(new QComboBox, "combo");
    box->addItems({"x", "y"});
    box->setEditable(true);
    add(new QCheckBox("Check"), "check");
    add(new QPushButton("hidden"), "hidden")->hide();
    auto *password = add(new QLineEdit("secret"), "password");
    password->setEchoMode(QLineEdit::Password);
    add(new QLineEdit, "empty");
    ObjectMap map;
    map.insert(":Check", ObjectName("{name='check'}"));
    map.insert(":Tree", ObjectName("{type='QTreeView' visible='true' window={name='window'}}"));
    map.insert(":Label", ObjectName("{text?='o*' type='QLabel' visible='true'}"));
    ObjectMap::install(&map);

    const BrowserElement *top = snapshot();
    ASSERT_TRUE(top) << error.toStdString();
    EXPECT_EQ(top->geometry().rect(), QRect(QPoint(), window.size()));
    EXPECT_FALSE(top->geometry().isRelative());
    EXPECT_EQ(top->image().size(), window.size());
    EXPECT_TRUE(top->isTopLevel());
    const std::tuple<const char *, const char *, const char *, QString> rows[] = {
        {"window", "window", "focusPolicy", "NoFocus"},
        {"file", "menuitem", "text", "&File"},
        {"tabs", "tabs", "currentIndex", "0"},
        {"qt_tabwidget_tabbar", "tabbar", "tabs", "First\nSecond"},
        {"tree", "tree", "cells", "a\t\n  [ ] b\tc\nd\t"},
        {"combo", "combobox", "items", "x\ny"},
        {"check", "checkbox", "checked", "false"},
        {"password", "textfield", "text", password->displayText()},
        {"empty", "textfield", "text", ""},
    };
    for (const auto &[name, type, property, value] : rows) {
        const BrowserElement *element = named(name);
        ASSERT_TRUE(element) << name;
        EXPECT_EQ(element->type(), type) << name;
        ASSERT_TRUE(element->properties().contains(property)) << name;
        EXPECT_EQ(element->properties().value(property), value) << name;
        EXPECT_EQ(element->image().isNull(), element != top) << name;
        EXPECT_FALSE(element->properties().contains("palette"));
        EXPECT_FALSE(element->properties().contains("focus"));
    }
    EXPECT_EQ(named("tree")->absoluteGeometry(),
              QRect(tree->mapTo(&window, QPoint()), tree->size()));
    EXPECT_EQ(named("check")->symbolicName(), ":Check");
    EXPECT_EQ(named("tree")->symbolicName(), ":Tree");
    EXPECT_EQ(named("one")->symbolicName(), ":Label");
    EXPECT_EQ(named("check")->realName(), "{name='check' type='QCheckBox'}");
    EXPECT_EQ(named("check")->superClasses().first(), "QAbstractButton");
    EXPECT_FALSE(named("hidden"));
    EXPECT_TRUE(named("combo")->children().isEmpty());
    EXPECT_FALSE(convertDumpToXml(requestObjectSnapshot("{name='window'}", {}, &error), &error)
                     .contains("secret"));
}

TEST_F(ElementDumpTest, AChangeBeyondWhatIsShownChangesTheProperty)
{
    auto *list = add(new QListWidget, "list");
    auto *box = add(new QComboBox, "combo");
    for (int i = 0; i < 10002; ++i)
        list->addItem(QString::number(i));
    for (int i = 0; i < 1002; ++i)
        box->addItem(QString::number(i));
    const auto cells = [this] { return snapshot(), named("list")->properties().value("cells"); };
    const auto items = [this] { return snapshot(), named("combo")->properties().value("items"); };
    const QString cellsBefore = cells();
    const QString itemsBefore = items();
    EXPECT_TRUE(cellsBefore.contains("\n9999\n(2 more with the sum "));
    list->item(10001)->setText("else");
    box->setItemText(1001, "else");
    EXPECT_NE(cells(), cellsBefore);
    EXPECT_NE(items(), itemsBefore);
    list->item(10001)->setText("10001");
    EXPECT_EQ(cells(), cellsBefore);
}

TEST_F(ElementDumpTest, TheLastRuleThatFitsWins)
{
    auto *outer = add(new QWidget, "outer");
    outer->setContentsMargins(7, 7, 7, 7);
    add(new QSpinBox, "spin", outer);
    const auto filter = [](const char *rules) {
        return QByteArray("<elementfilter version='1'>") + rules + "</elementfilter>";
    };
    snapshot(filter("<class name='QAbstractSpinBox'><property name='*' role='none'/>"
                    "<property name='objectName' role='identifying'/>"
                    "<property name='text' role='content'/></class>"
                    "<class name='QSpinBox' subtree='shown'>"
                    "<property name='value' role='both'/></class>"
                    "<class name='QLabel'><property name='value' role='none'/></class>"));
    ASSERT_TRUE(named("spin"));
    EXPECT_EQ(named("spin")->properties().keys(), (QStringList{"text", "value"}));
    EXPECT_EQ(named("spin")->identifyingProperties().keys(), (QStringList{"objectName", "value"}));
    EXPECT_FALSE(named("spin")->children().isEmpty());

    // Its children are in their places in the element above.
    outer->setProperty("marked", true);
    const QRect before = named("spin")->absoluteGeometry();
    const BrowserElement *top =
        snapshot(filter("<class name='QWidget' node='transparent'/>"
                        "<class name='QSpinBox' node='shown'/><picture taken='no'/>"));
    EXPECT_EQ(named("window"), top);
    EXPECT_TRUE(top->image().isNull());
    EXPECT_FALSE(named("outer"));
    EXPECT_EQ(named("spin")->parent(), top);
    EXPECT_EQ(named("spin")->absoluteGeometry(), before);

    // Those of the user come after those of the installation.
    writeFile(dir.filePath("a_snapshot_user_filter.xml"),
              filter("<class name='QSpinBox'><property name='value' role='none'/></class>"));
    snapshot();
    EXPECT_FALSE(named("spin")->properties().contains("value"));
}

TEST_F(ElementDumpTest, BrokenFiltersAreErrorsWithTheirPlace)
{
    const SharedPtr<Object> object = find("{name='window'}");
    const std::pair<const char *, const char *> rows[] = {
        {"<filter/>", "line 1, column 9: the element <filter> is not expected here"},
        {"<elementfilter version='2'/>",
         "line 1, column 28: <elementfilter> needs the attribute version=\"1\""},
        {"<elementfilter version='1'>\n<class/></elementfilter>",
         "line 2, column 8: <class> needs the attribute 'name'"},
        {"<elementfilter version='1'><class name='Q' nod='shown'/></elementfilter>",
         "line 1, column 56: <class> has no attribute 'nod'"},
        {"<elementfilter version='1'><class name='Q' node='%2'/></elementfilter>",
         "line 1, column 54: the attribute 'node' can't be '%2'"},
    };
    for (const auto &[filter, message] : rows) {
        EXPECT_TRUE(requestObjectSnapshot(object, filter, &error).isEmpty());
        EXPECT_EQ(error, QString("Filter 2, ") + message);
    }
    for (const char *filter : {"f", "<elementfilter version='1'>", "\xff"}) {
        EXPECT_TRUE(requestObjectSnapshot(object, filter, &error).isEmpty());
        EXPECT_TRUE(error.startsWith("Filter 2, line 1, column ")) << error.toStdString();
    }
    const QString file = dir.filePath("a_snapshot_user_filter.xml");
    writeFile(file, "<filter/>");
    EXPECT_TRUE(requestObjectSnapshot(object, {}, &error).isEmpty());
    EXPECT_TRUE(error.startsWith("Filter 2 (" + file + "), line 1")) << error.toStdString();
    QFile::remove(file);
    window.addAction(new QAction("Act", &window));
    EXPECT_TRUE(requestObjectSnapshot("{text='Act'}", {}, &error).isEmpty());
    EXPECT_EQ(error, "The object is not a widget");
}

TEST_F(ElementDumpTest, SnapshotsNeedTheirFiltersAndObjects)
{
    const SharedPtr<Object> object = find("{name='window'}");
    const QByteArray extra = "<elementfilter version='1'/>";
    const EnvironmentGuard empty("MORVEX_PREFIX", QFile::encodeName(dir.filePath("prefix")));
    const auto errorOf = [this](const QByteArray &dump) {
        EXPECT_TRUE(dump.isEmpty());
        return std::exchange(error, QString());
    };
    EXPECT_EQ(errorOf(requestObjectSnapshot(object, {}, &error)),
              "No filters found for object snapshot");
    EXPECT_EQ(errorOf(requestObjectSnapshotForVisualVP(object, &error)),
              "No filters found for visual VP");
    EXPECT_FALSE(requestObjectSnapshot(object, extra, &error).isEmpty());
    EXPECT_EQ(errorOf(requestObjectSnapshot(SharedPtr<Object>(), extra, &error)),
              "Requested object not found");
    EXPECT_EQ(errorOf(requestObjectSnapshot("{name='%1'}", extra, &error)),
              "object {name='%1'} not found");
    EXPECT_TRUE(requestObjectSnapshot("none", extra, nullptr).isEmpty());
    EXPECT_TRUE(requestObjectSnapshot(SharedPtr<Object>(), extra, nullptr).isEmpty());
    EXPECT_EQ(errorOf(convertDumpToXml({}, &error)), "");

    const QString toolkit = dir.filePath("prefix/lib/toolkits/a/etc/a_visualvp_filter.xml");
    writeFile(toolkit, extra);
    EXPECT_FALSE(requestObjectSnapshotForVisualVP(object, &error).isEmpty());
    writeFile(toolkit, {});
    EXPECT_EQ(errorOf(requestObjectSnapshotForVisualVP(object, &error)),
              QString("Unable to read content of %1, is file empty?").arg(toolkit));
    Inspector::install(nullptr);
    EXPECT_EQ(errorOf(requestObjectSnapshot(object, extra, &error)),
              "Request for object snapshot returned no data");
    EXPECT_EQ(errorOf(requestObjectSnapshot("a", extra, &error)), "object a not found");
}
