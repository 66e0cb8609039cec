#include "qtbackend/inspectortest.h"
#include "shared/uiabstraction/uielement.h"

#include <QTabBar>

#include <memory>

using namespace Morvex;
using UIAbstraction::UIElement;

namespace {

class UsageCounterTest : public MorvexTest::InspectorTest
{
protected:
    void start() { inspector.callFunction("countUsage", {}, nullptr); }

    void click(const char *object) { EXPECT_EQ(InspectorTest::click(object), QString()); }
    void type(const char *object, const char *keys)
    {
        EXPECT_EQ(InspectorTest::type(object, keys), QString());
    }

    static void collect(const UIElement *element, const QString &path, QStringList *lines)
    {
        const QString own = path + element->concreteType();
        const auto usage = element->usageMap();
        for (auto it = usage.begin(); it != usage.end(); ++it)
            *lines += QString("%1: %2 %3").arg(own, it.key().name()).arg(it.value());
        for (const UIElement *child : element->children())
            collect(child, own + '/', lines);
    }

    // "class/class: event count" of all elements.
    QStringList usage()
    {
        const QByteArray dump = inspector.callFunction("dumpUsage", {}, nullptr).toByteArray();
        const QList<UIElement *> windows = UIElement::elementsFromByteArray(dump.mid(1));
        QStringList lines;
        for (const UIElement *element : windows)
            collect(element, {}, &lines);
        qDeleteAll(windows);
        return lines;
    }
};

} // namespace

TEST_F(UsageCounterTest, WhatUsersDoIsCountedWhereTheyDidIt)
{
    auto *group = add(new QGroupBox("Options"), "group");
    add(new QPushButton("One"), "one", group);
    group->layout()->addWidget(new QPushButton("Two"));
    add(new QLabel("Label"), "label", group);
    add(new QLineEdit, "edit");
    add(new QLineEdit, "fixed")->setReadOnly(true);
    add(new QSpinBox, "spin");
    add(new QComboBox, "combo")->addItems({"a", "b"});
    add(new QListWidget, "list")->addItem("item");
    auto *tabs = add(new QTabBar, "tabs");
    tabs->addTab("First");
    tabs->addTab("Second");
    add(new QPushButton("Off"), "off")->setEnabled(false);
    auto *more = add(new QPushButton("More"), "more");
    more->setMenu(new QMenu(more));
    more->menu()->addAction("Print")->setObjectName("print");
    auto *menu = new QMenu("Menu", &window);
    menu->setObjectName("menu");
    menu->addAction("Act")->setObjectName("act");
    window.show();
    start();
    for (int i = 0; i < 2; ++i)
        click("one");
    type("one", "<Space>");
    click("label");
    type("edit", "ab<Tab>");
    type("spin", "1<Up>");
    click("{text='Act'}");
    click("{text='Print'}");
    // What the application does itself is no choice of a user.
    menu->actions().at(0)->trigger();
    menu->popup({});
    menu->setActiveAction(menu->actions().at(0));
    QKeyEvent enter(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
    QCoreApplication::sendEvent(menu, &enter);
    QMouseEvent press(QEvent::MouseButtonPress, {1, 1}, Qt::RightButton, Qt::RightButton, {});
    QCoreApplication::sendEvent(window.findChild<QWidget *>("one"), &press);
    click("list");
    click("tabs");
    emit window.findChild<QComboBox *>("combo")->activated(1);
    EXPECT_EQ(usage(),
              (QStringList{
                  "QWidget \"window\"/QGroupBox \"group\"/QPushButton \"one\": click 3",
                  "QWidget \"window\"/QGroupBox \"group\"/QPushButton 2: click 0",
                  "QWidget \"window\"/QLineEdit \"edit\": type 2",
                  "QWidget \"window\"/QSpinBox \"spin\": change 2",
                  "QWidget \"window\"/QComboBox \"combo\": choose 1",
                  "QWidget \"window\"/QListWidget \"list\": choose 1",
                  "QWidget \"window\"/QTabBar \"tabs\"/tab \"First\": choose 1",
                  "QWidget \"window\"/QTabBar \"tabs\"/tab \"Second\": choose 0",
                  "QWidget \"window\"/QPushButton \"off\": click 0",
                  "QWidget \"window\"/QPushButton \"more\": click 0",
                  "QWidget \"window\"/QPushButton \"more\"/QMenu 1/QAction \"print\": choose 1",
                  "QWidget \"window\"/QMenu \"menu\"/QAction \"act\": choose 2",
              }));
}

TEST_F(UsageCounterTest, ElementsStayAndGoOnInLaterWidgets)
{
    window.show();
    start();
    for (int i = 0; i < 2; ++i) {
        // Made, used and deleted, as applications do with dialogs.
        QDialog dialog(&window);
        dialog.setObjectName("dialog");
        add(new QPushButton("Ok"), "ok", &dialog);
        dialog.show();
        click("ok");
        // Not there when the window was shown.
        add(new QPushButton("Late"), "late", &dialog);
        click("late");
    }
    QDialog neverShown;
    neverShown.setObjectName("other");
    add(new QPushButton("Never"), "never", &neverShown);
    EXPECT_EQ(usage(), (QStringList{"QDialog \"dialog\"/QPushButton \"ok\": click 2",
                                    "QDialog \"dialog\"/QPushButton \"late\": click 2",
                                    "QDialog \"other\"/QPushButton \"never\": click 0"}));
}

TEST_F(UsageCounterTest, ElementsThatExistTogetherAreApartWhateverCameAndWentBefore)
{
    std::unique_ptr<QWidget> first(add(new QPushButton("A"), ""));
    auto *second = add(new QPushButton("B"), "");
    window.show();
    start();
    click("{text='B'}");
    first.reset();
    second->raise();
    add(new QPushButton("C"), "");
    add(new QPushButton("D"), "");
    click("{text='C'}");
    click("{text='B'}");
    EXPECT_EQ(usage(), (QStringList{"QWidget \"window\"/QPushButton 1: click 1",
                                    "QWidget \"window\"/QPushButton 2: click 2",
                                    "QWidget \"window\"/QPushButton 3: click 0"}));
}

TEST_F(UsageCounterTest, WhatBecomesUsableLaterCounts)
{
    auto *edit = add(new QLineEdit, "edit");
    auto *spin = add(new QSpinBox, "spin");
    auto *box = add(new QComboBox, "combo");
    auto *group = add(new QGroupBox("Group"), "group");
    edit->setReadOnly(true);
    spin->setReadOnly(true);
    add(new QLineEdit, "never")->setReadOnly(true);
    window.show();
    start();
    edit->setReadOnly(false);
    type("edit", "a");
    edit->setReadOnly(true);
    spin->setReadOnly(false);
    box->setEditable(true);
    group->setCheckable(true);
    type("combo", "b");
    EXPECT_EQ(usage(), (QStringList{"QWidget \"window\"/QComboBox \"combo\": choose 0",
                                    "QWidget \"window\"/QComboBox \"combo\": type 1",
                                    "QWidget \"window\"/QGroupBox \"group\": click 0",
                                    "QWidget \"window\"/QLineEdit \"edit\": type 1",
                                    "QWidget \"window\"/QSpinBox \"spin\": change 0"}));
}

TEST_F(UsageCounterTest, AWindowWithoutANameDoesNotCountForAnother)
{
    start();
    QDialog titled(&window);
    titled.setWindowTitle("Export");
    add(new QPushButton("Ok"), "titled", &titled);
    // The third is the first again, the fourth exists beside another one like it.
    for (const char *name : {"ok", "other", "ok"}) {
        QDialog dialog(&window);
        add(new QPushButton("Ok"), name, &dialog);
        dialog.show();
        click(name);
    }
    QDialog alike[2];
    for (QDialog &dialog : alike)
        add(new QPushButton("Ok"), "other", &dialog);
    EXPECT_EQ(usage(),
              (QStringList{"QDialog with QPushButton \"ok\"/QPushButton \"ok\": click 2",
                           "QDialog with QPushButton \"other\"/QPushButton \"other\": click 1",
                           "QDialog with QPushButton \"other\" 2/QPushButton \"other\": click 0",
                           "QDialog titled \"Export\"/QPushButton \"titled\": click 0"}));
}
