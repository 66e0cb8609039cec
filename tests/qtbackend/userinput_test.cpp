#include "qtbackend/inspectortest.h"

using MorvexTest::InspectorTest;

class UserInputTest : public InspectorTest
{
protected:
    QString click(const char *object, const QVariantList &place = {})
    {
        window.show();
        return InspectorTest::click(object, place);
    }
    QString type(const char *object, const char *keys)
    {
        window.show();
        return InspectorTest::type(object, keys);
    }
};

TEST_F(UserInputTest, KeysGoWhereTheFocusIs)
{
    auto *first = add<QLineEdit>("first", {0, 0, 100, 30});
    auto *second = add<QLineEdit>("second", {0, 40, 100, 30});
    auto *choice = add<QComboBox>("choice", {0, 80, 100, 30});
    choice->addItems({"a", "b", "c"});
    EXPECT_EQ(type("first", "Hello<Tab>World<Shift+Tab>!"), QString());
    EXPECT_EQ(first->text(), "!");
    EXPECT_EQ(second->text(), "World");
    EXPECT_EQ(type("choice", "<F4><Down><Down><Return>"), QString());
    EXPECT_EQ(choice->currentText(), "c");
    // Only once it has the focus.
    QObject::connect(qApp, &QApplication::focusChanged, second, [second](QWidget *, QWidget *now) {
        if (now == second)
            QTimer::singleShot(0, second, &QLineEdit::selectAll);
    });
    EXPECT_EQ(type("second", "New"), QString());
    EXPECT_EQ(second->text(), "New");
}

TEST_F(UserInputTest, KeysTypeTheirCharacters)
{
    auto *edit = add<QLineEdit>("edit", {0, 0, 100, 30});
    const char *const rows[][2] = {
        {"<A><Shift+A><Space>b", "aA b"},
        {"x\xf0\x9f\x98\x80y", "x\xf0\x9f\x98\x80y"},
        {"1<Left><End>2<F5>", "12"},
        {"aBc<<<Backspace>", "aBc"},
        {"ab<Ctrl+A>x<Home>y", "yx"},
        {"abcd<Left*3>x<**2>", "ax**bcd"},
        {"a<Alt+O><Meta+Shift+P><Ctrl+Alt+Q>", "aoP"},
        {"<PageDown><PgDown><Ctrl+PageUp><Ctrl++>><Backspace><Ctrl+>><escape>", ""},
    };
    for (const auto &row : rows) {
        edit->clear();
        EXPECT_EQ(type("edit", row[0]), QString());
        EXPECT_EQ(edit->text(), QString(row[1]));
    }
    EXPECT_EQ(type("edit", "z<Nonsense>"),
              "'<Nonsense>' is not a key name; \"<\" is typed by \"<<\"");
    EXPECT_EQ(type("edit", "<Shift+PageDwon>").section(';', 0, 0),
              "'<Shift+PageDwon>' is not a key name (did you mean '<Shift+PageDown>'?)");
    EXPECT_EQ(edit->text(), "");
}

TEST_F(UserInputTest, KeysReachShortcutsOfTheirWindow)
{
    add<QLineEdit>("edit", {0, 0, 100, 30});
    QAction save;
    int saved = 0;
    save.setShortcut(QKeySequence("Ctrl+S"));
    window.addAction(&save);
    QObject::connect(&save, &QAction::triggered, &window, [&saved] { ++saved; });
    QWidget other;
    other.show();
    other.activateWindow();
    EXPECT_EQ(type("edit", "<Ctrl+S>"), QString());
    EXPECT_EQ(saved, 1);
}

TEST_F(UserInputTest, AWidgetInASceneIsClickedAndTypedInto)
{
    auto *view = add<QGraphicsView>("view", {0, 0, 400, 300});
    QGraphicsScene scene;
    view->setScene(&scene);
    auto *panel = new QWidget;
    auto *check = add<QCheckBox>("check", {0, 0, 100, 30}, panel);
    auto *edit = add<QLineEdit>("edit", {0, 40, 100, 30}, panel);
    scene.addWidget(panel);
    EXPECT_EQ(click("check"), QString());
    EXPECT_TRUE(check->isChecked());
    EXPECT_EQ(type("edit", "abc"), QString());
    EXPECT_EQ(edit->text(), "abc");
}

TEST_F(UserInputTest, TypingIntoAWidgetThatGoesAwayIsAnError)
{
    auto *edit = add<QLineEdit>("edit", {0, 0, 100, 30});
    QObject::connect(edit, &QLineEdit::textChanged, edit, [edit](const QString &text) {
        if (text.size() == 2)
            edit->hide();
    });
    EXPECT_EQ(type("edit", "abc"), "the widget is not visible, after 2 of 3 keys");
    auto *other = add<QLineEdit>("other", {0, 40, 100, 30});
    other->show();
    QShortcut removal(QKeySequence("F2"), &window);
    QObject::connect(&removal, &QShortcut::activated, &window, [other] { delete other; });
    EXPECT_EQ(type("other", "a<F2>b"), "the widget no longer exists, after 2 of 3 keys");
}

TEST_F(UserInputTest, AClickReachesThePartThatReacts)
{
    auto *check = add<QCheckBox>("check", {0, 0, 600, 30});
    auto *radio = add<QRadioButton>("radio", {0, 40, 600, 30});
    auto *group = add<QGroupBox>("group", {0, 80, 600, 300});
    check->setText("short");
    group->setCheckable(true);
    group->setChecked(false);
    group->setTitle("Title");
    group->setAlignment(Qt::AlignHCenter);
    for (const char *name : {"check", "radio", "group"})
        EXPECT_EQ(click(name), QString()) << name;
    EXPECT_TRUE(check->isChecked());
    EXPECT_TRUE(radio->isChecked());
    EXPECT_TRUE(group->isChecked());
}

TEST_F(UserInputTest, AClickAtAPlaceReachesTheWidgetThatIsThereUnlessThatTakesNoInput)
{
    auto *box = add<QWidget>("box", {0, 0, 300, 300});
    auto *button = add<QPushButton>("button", {100, 100, 50, 30}, box);
    int clicks = 0;
    QObject::connect(button, &QPushButton::clicked, box, [&clicks] { ++clicks; });
    EXPECT_EQ(click("box", {110, 110}), QString());
    button->setEnabled(false);
    EXPECT_EQ(click("box", {110, 110}),
              "{name='button' type='QPushButton'}: the widget is disabled");
    EXPECT_EQ(clicks, 1);
    EXPECT_EQ(type("box", "a"), "the widget does not accept keyboard input");
}

TEST_F(UserInputTest, WhatCannotBeSeenCannotBeClicked)
{
    auto *covered = add<QPushButton>("covered", {0, 0, 100, 30});
    add<QWidget>("cover", {0, 0, 200, 200});
    auto *area = add<QScrollArea>("area", {0, 300, 200, 100});
    auto *content = new QWidget;
    content->setFixedSize(100, 1000);
    area->setWidget(content);
    auto *below = add<QPushButton>("below", {0, 500, 50, 30}, content);
    auto *tall = add<QPushButton>("tall", {50, 0, 50, 900}, content);
    int clicks = 0;
    for (const QPushButton *button : {covered, below, tall})
        QObject::connect(button, &QPushButton::clicked, area, [&clicks] { ++clicks; });
    EXPECT_EQ(click("covered"), "49,14 in the widget is covered by {name='cover' type='QWidget'}");
    EXPECT_EQ(clicks, 0);
    // What can be scrolled into sight is.
    EXPECT_EQ(click("below"), QString());
    EXPECT_EQ(click("tall"), QString());
    EXPECT_EQ(clicks, 2);
}

TEST_F(UserInputTest, GesturesOfTheMouseReachAWidgetAsAUsersDo)
{
    class Recorder : public QLineEdit
    {
    public:
        using QLineEdit::QLineEdit;
        QStringList seen;

    protected:
        void mousePressEvent(QMouseEvent *event) override
        {
            seen += QString("press %1 %2").arg(event->button()).arg(event->modifiers() >> 24);
        }
        void mouseDoubleClickEvent(QMouseEvent *) override { seen += "double"; }
        void contextMenuEvent(QContextMenuEvent *) override { seen += "menu"; }
        void wheelEvent(QWheelEvent *event) override
        {
            seen += QString("wheel %1").arg(event->angleDelta().y());
        }
        void enterEvent(QEvent *) override { seen += "enter"; }
    };
    auto *edit = add<Recorder>("edit", {0, 0, 100, 30});
    auto *list = add<QListWidget>("list", {0, 100, 200, 200});
    list->addItems({"a", "b", "c", "d"});
    list->setSelectionMode(QAbstractItemView::ExtendedSelection);
    window.show();
    const auto use = [&](const char *gesture, const QVariantMap &options) {
        edit->seen.clear();
        const QString error = call("useMouse", "edit", {gesture, options});
        return error.isEmpty() ? edit->seen.join(',') : error;
    };
    EXPECT_EQ(call("useMouse", "list", {"hover", QVariantMap()}), QString());
    EXPECT_EQ(use("hover", {}), "enter");
    EXPECT_EQ(use("click", {{"modifiers", int(Qt::ControlModifier)}}), "press 1 4");
    // Two single clicks, however fast the script is.
    EXPECT_EQ(use("click", {}), "press 1 0");
    EXPECT_EQ(use("doubleClick", {}), "press 1 0,double");
    EXPECT_EQ(use("click", {{"button", int(Qt::RightButton)}}), "press 2 0,menu");
    EXPECT_EQ(use("wheel", {{"down", 2}}), "wheel -240");
    EXPECT_EQ(call("useMouse", "list",
                   {"drag", QVariantMap{{"item", QVariantList{"a"}},
                                        {"to", QVariantMap{{"item", QVariantList{"c"}}}}}}),
              QString());
    EXPECT_EQ(list->selectedItems().size(), 3);
}

TEST_F(UserInputTest, ADragEndsAtItsPlaceAndJustBeyondTheMiddleOfATab)
{
    class Bar : public QTabBar
    {
    public:
        using QTabBar::QTabBar;
        int released = 0;

    protected:
        void mouseReleaseEvent(QMouseEvent *event) override { released = event->pos().x(); }
    };
    auto *bar = add<Bar>("bar", {0, 0, 300, 30});
    bar->addTab("first");
    bar->addTab("second");
    window.show();
    const QVariantList second{"second"};
    const std::pair<QVariantMap, int> rows[] = {
        {{}, bar->rect().center().x()},
        {{{"x", 70}, {"y", 9}}, 70},
        {{{"item", second}}, bar->tabRect(1).center().x() + 3},
        {{{"item", second}, {"x", 4}, {"y", 5}}, bar->tabRect(1).x() + 4},
    };
    for (const auto &[to, x] : rows) {
        const QVariantMap options{{"x", 1}, {"y", 9}, {"to", to}};
        EXPECT_EQ(call("useMouse", "bar", {"drag", options}), QString());
        EXPECT_EQ(bar->released, x);
    }
}

TEST_F(UserInputTest, AClickOnAnActionOfAnOpenMenuClosesIt)
{
    QMenu menu(&window);
    auto *action = menu.addAction("entry");
    action->setObjectName("entry");
    action->setCheckable(true);
    window.show();
    menu.popup({400, 400});
    EXPECT_EQ(click("entry"), QString());
    EXPECT_TRUE(action->isChecked());
    EXPECT_FALSE(menu.isVisible());
}

TEST_F(UserInputTest, AModalDialogBlocksWhatIsBelowIt)
{
    const auto *button = add<QPushButton>("button", {0, 0, 100, 30});
    QAction action(&window);
    action.setObjectName("action");
    window.show();
    for (const Qt::WindowModality modality : {Qt::ApplicationModal, Qt::WindowModal}) {
        QDialog dialog(&window);
        dialog.setObjectName("dialog");
        dialog.setWindowModality(modality);
        auto *field = add<QLineEdit>("answer", {0, 0, 50, 30}, &dialog);
        dialog.show();
        EXPECT_EQ(click("action"),
                  "the action is blocked by the dialog {name='dialog' type='QDialog'}");
        EXPECT_EQ(type("answer", "a"), QString());
        EXPECT_EQ(field->text(), "a");
        bool wasBlocked = true;
        QObject::connect(button, &QPushButton::clicked, &dialog,
                         [&] { wasBlocked = dialog.isVisible(); });
        QTimer::singleShot(100, &dialog, &QDialog::hide);
        EXPECT_EQ(click("button"), QString());
        EXPECT_FALSE(wasBlocked);
    }
    QDialog lasting(&window);
    lasting.setObjectName("lasting");
    lasting.setModal(true);
    lasting.show();
    EXPECT_EQ(click("button"),
              "the widget is blocked by the dialog {name='lasting' type='QDialog'}");
}

TEST_F(UserInputTest, AnOpenPopupBlocksAllButItsOwner)
{
    auto *button = add<QPushButton>("button", {0, 0, 100, 30});
    auto *edit = add<QLineEdit>("edit", {0, 40, 100, 30});
    auto *choice = add<QComboBox>("choice", {0, 80, 100, 30});
    choice->addItems({"a", "b", "c"});
    int clicks = 0;
    QObject::connect(button, &QPushButton::clicked, edit, [&clicks] { ++clicks; });
    QMenu menu(&window);
    menu.setObjectName("menu");
    menu.addAction("entry");
    window.show();
    menu.popup({400, 400});
    const QString blocked = "the widget is blocked by the popup {name='menu' type='QMenu'}";
    EXPECT_EQ(click("button"), blocked);
    EXPECT_EQ(type("edit", "a"), blocked);
    EXPECT_EQ(type("menu", "<Escape>"), QString());
    EXPECT_EQ(click("button"), QString());
    EXPECT_EQ(clicks, 1);
    EXPECT_EQ(type("choice", "<F4><Down>"), QString());
    EXPECT_NE(click("button"), QString());
    EXPECT_EQ(type("choice", "<Return>"), QString());
    EXPECT_EQ(choice->currentText(), "b");
    edit->setCompleter(new QCompleter({"abc"}, edit));
    EXPECT_EQ(type("edit", "a"), QString());
    EXPECT_TRUE(QApplication::activePopupWidget());
    EXPECT_EQ(type("edit", "b"), QString());
    EXPECT_EQ(edit->text(), "ab");
}

TEST_F(UserInputTest, KeysOfAMenuFollowTheOneThatOpensIt)
{
    add<QLineEdit>("edit", {0, 0, 100, 30});
    QMenu menu;
    int triggered = 0;
    menu.addAction("entry", [&triggered] { ++triggered; });
    QShortcut opening(QKeySequence("F2"), &window);
    QObject::connect(&opening, &QShortcut::activated, &menu, [&menu] { menu.popup({400, 400}); });
    EXPECT_EQ(type("edit", "a<F2><Down><Return>"), QString());
    EXPECT_EQ(triggered, 1);
}

TEST_F(UserInputTest, AClickActivatesTheWindow)
{
    add<QPushButton>("button", {0, 0, 100, 30});
    window.show();
    QWidget other;
    other.show();
    other.activateWindow();
    QCoreApplication::processEvents();
    ASSERT_FALSE(window.isActiveWindow());
    EXPECT_EQ(click("button"), QString());
    EXPECT_TRUE(window.isActiveWindow());
}
