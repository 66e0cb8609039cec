#include "qtbackend/recordeduser.h"

#include <qpa/qwindowsysteminterface.h>

using namespace MorvexTest;

namespace {

// Says at the end what has been entered in what order, and in which field the focus is.
class Form : public QObject
{
public:
    explicit Form(QWidget *window)
        : QObject(window)
    {
        setObjectName("form");
        auto *first = add<QLineEdit>("first");
        add<QLineEdit>("second")->setText("two");
        auto *count = add<QSpinBox>("count");
        auto *button = add<QToolButton>("button");
        button->setFocusPolicy(Qt::NoFocus);
        connect(button, &QToolButton::clicked, this, [this] { log += "push "; });
        connect(first, &QLineEdit::editingFinished, this,
                [this, first] { log += "first=" + first->text() + ' '; });
        connect(count, &QSpinBox::editingFinished, this,
                [this, count] { log += "count=" + count->text() + ' '; });
        first->setFocus();
    }

    static QString stateOf(const QWidget *window)
    {
        return static_cast<Form *>(window->findChild<QObject *>("form"))->log +
               window->findChild<QLineEdit *>("second")->text();
    }

    QString log;

private:
    template <typename Widget>
    Widget *add(const char *name)
    {
        auto *window = static_cast<QWidget *>(parent());
        auto *widget = new Widget;
        widget->setObjectName(name);
        window->layout()->addWidget(widget);
        return widget;
    }
};

} // namespace

using KeyActionsTest = RecordedUser;

// What a field holds is taken over when it is left.
TEST_F(KeyActionsTest, AFieldIsLeftWhereNothingElseLeavesIt)
{
    const struct
    {
        const char *keys;
        const char *clicked;
        const char *moreKeys;
        const char *script;
    } rows[] = {
        {"ab Tab", nullptr, "", "first.type(\"ab<Tab>\");"},
        {"ab Tab", "button", "", "first.type(\"ab<Tab>\");\nbutton.click();"},
        {"ab Tab x", nullptr, "", "first.type(\"ab\");\nsecond.type(\"<Ctrl+A>x\");"},
        {"ab Tab", "second", "x", "first.type(\"ab<Tab>\");\nsecond.type(\"<End>x\");"},
        {"ab Tab Tab 12", "button", "",
         "first.type(\"ab\");\ncount.type(\"<Ctrl+A>12\");\nbutton.click();"},
        {"ab Tab Tab", "button", "",
         "first.type(\"ab\");\nsecond.type(\"<Tab>\");\nbutton.click();"},
        {"ab Tab Shift+Tab End c", nullptr, "",
         "first.type(\"ab\");\nsecond.type(\"<Shift+Tab>\");\nfirst.type(\"<End>c\");"},
        {"Tab x Tab 12", "first", "",
         "second.type(\"<Ctrl+A>x\");\ncount.type(\"<Ctrl+A>12\");\nfirst.click();"},
        {"Tab x Tab 12", "first", "y",
         "second.type(\"<Ctrl+A>x\");\ncount.type(\"<Ctrl+A>12\");\nfirst.type(\"y\");"},
    };
    for (const auto &row : rows) {
        record([](QWidget *made) { new Form(made); });
        press(row.keys);
        if (row.clicked)
            click(child<QWidget>(row.clicked));
        press(row.moreKeys);
        const QString expected = Form::stateOf(window.get());
        EXPECT_EQ(script(), row.script);
        replay();
        EXPECT_EQ(Form::stateOf(replayed.get()), expected) << row.script;
    }
}

TEST_F(KeyActionsTest, KeysThatAFieldRefusesAreNotTyped)
{
    record([](QWidget *made) {
        new Form(made);
        made->findChild<QLineEdit *>("second")->setMaxLength(5);
    });
    press("Tab Tab 1x2 Shift+Tab End abcd Backspace");
    EXPECT_EQ(script(), "count.type(\"<Ctrl+A>12\");\nsecond.type(\"<End>ab<Backspace>\");");
}

// However it was typed, what is replayed is what the field held at the end.
TEST_F(KeyActionsTest, APasswordIsTypedByOneCallAndNoPartOfItIsReported)
{
    const struct
    {
        const char *before;
        const char *keys;
        const char *after;
        const char *script;
    } rows[] = {
        {"", "xyqx Return", "xyqx",
         "secret.typePassword(\"PASSWORD\");\nsecret.type(\"<Return>\");"},
        {"old", "Ctrl+A xq Left Backspace Home y Delete", "y",
         "secret.typePassword(\"PASSWORD\");"},
        {"old", "End xq Ctrl+S y", "oldxqy",
         "secret.typePassword(\"PASSWORD\");\nsecret.type(\"<Ctrl+S>\");\n"
         "secret.typePassword(\"PASSWORD\");"},
        {"old", "Ctrl+A Delete", "", "secret.type(\"<Ctrl+A><Backspace>\");"},
        {"old", "Home Right Ctrl+C", "old", ""},
        {"", "x Backspace", "", ""},
        {"", "xy Alt+Q z", "xyqz", "secret.typePassword(\"PASSWORD\");"},
        {"", "xy Alt+P", "xy", "secret.typePassword(\"PASSWORD\");\nsecret.type(\"<Alt+P>\");"},
        {"", "xy F2 q", "xyq",
         "secret.typePassword(\"PASSWORD\");\nsecret.type(\"<F2>\");\n"
         "secret.typePassword(\"PASSWORD\");"},
    };
    for (const auto &row : rows) {
        record([&row](QWidget *made) {
            auto *secret = new QLineEdit(row.before);
            secret->setObjectName("secret");
            secret->setEchoMode(QLineEdit::Password);
            made->layout()->addWidget(secret);
            new QShortcut(QKeySequence("Alt+P"), made);
            // Shows it.
            const auto *eye = new QShortcut(QKeySequence("F2"), made);
            QObject::connect(eye, &QShortcut::activated, secret,
                             [secret] { secret->setEchoMode(QLineEdit::Normal); });
        });
        press(row.keys);
        EXPECT_EQ(child<QLineEdit>("secret")->text(), row.after) << row.keys;
        EXPECT_EQ(script(), row.script) << row.keys;
        for (const char *part : {"x", "y", "q", "Q", "z"}) {
            for (const QVariant &action : actions)
                EXPECT_FALSE(action.toMap().value("text").toString().contains(part)) << row.keys;
        }
        replay(row.after);
        EXPECT_EQ(replayed->findChild<QLineEdit *>("secret")->text(), row.after) << row.keys;
    }
}

TEST_F(KeyActionsTest, AMnemonicOfATabChoosesItAndOneOfSeveralButtonsNone)
{
    record([](QWidget *made) {
        auto *field = new QLineEdit;
        field->setObjectName("field");
        made->layout()->addWidget(field);
        auto *tabs = new QTabWidget;
        tabs->setObjectName("tabs");
        for (const char *text : {"&One", "&Two"})
            tabs->addTab(new QWidget, text);
        made->layout()->addWidget(tabs);
        for (const char *text : {"&Same", "&Same too"})
            made->layout()->addWidget(new QPushButton(text));
        field->setFocus();
    });
    press("Alt+T Alt+S x");
    EXPECT_EQ(child<QTabWidget>("tabs")->currentIndex(), 1);
    EXPECT_FALSE(script().contains("Same\").click")) << script().toStdString();
    EXPECT_TRUE(script().startsWith("tabs.item(\"Two\").click();\n")) << script().toStdString();
}

TEST_F(KeyActionsTest, AShortcutIsTypedByItsOwnKeys)
{
    record([](QWidget *made) {
        made->layout()->addWidget(new QLineEdit);
        made->layout()->itemAt(0)->widget()->setObjectName("field");
        for (const char *keys : {"Ctrl+K, Ctrl+L, Ctrl+M", "Ctrl+Shift+Tab"}) {
            const auto *shortcut = new QShortcut(QKeySequence(keys), made);
            QObject::connect(shortcut, &QShortcut::activated, made, [made, keys] {
                made->setWindowTitle(made->windowTitle() + keys + ' ');
            });
        }
    });
    // The first one is given up.
    press("Ctrl+K w Ctrl+K Ctrl+L Ctrl+M Ctrl+Shift+Backtab");
    EXPECT_EQ(script(), "field.type(\"<Ctrl+K><Ctrl+L><Ctrl+M><Ctrl+Shift+Tab>\");");
    const QString expected = window->windowTitle();
    replay();
    EXPECT_EQ(replayed->windowTitle(), expected);
}

TEST_F(KeyActionsTest, AButtonThatShowsTheKeysPressedInItKeepsItsName)
{
    struct KeyButton : QPushButton
    {
        using QPushButton::QPushButton;
        void keyPressEvent(QKeyEvent *event) override
        {
            setText(QKeySequence(event->key() | int(event->modifiers())).toString());
            taken += event->key() == Qt::Key_F7;
        }
        int taken = 0;
    };
    record([](QWidget *made) { made->layout()->addWidget(new KeyButton("None")); });
    press("Ctrl+Shift+F7");
    EXPECT_EQ(script(), "find(\"{text='None' type='QPushButton'}\").type(\"<Ctrl+Shift+F7>\");");
    replay();
    EXPECT_EQ(static_cast<KeyButton *>(replayed->layout()->itemAt(0)->widget())->taken, 1);
}

// How fast the letters come says what they find.
TEST_F(KeyActionsTest, ASearchByLettersIsWhatItHasFound)
{
    QApplication::setKeyboardInputInterval(0);
    record([](QWidget *made) {
        auto *list = new QListWidget;
        auto *box = new QComboBox;
        list->setObjectName("list");
        box->setObjectName("box");
        for (const char *text : {"apple", "banana", "cherry", "date"}) {
            list->addItem(text);
            box->addItem(text);
        }
        auto *remove = new QAction(list);
        remove->setShortcut(QKeySequence("d"));
        remove->setShortcutContext(Qt::WidgetShortcut);
        QObject::connect(remove, &QAction::triggered, list,
                         [list] { delete list->takeItem(list->currentRow()); });
        list->addAction(remove);
        made->layout()->addWidget(list);
        made->layout()->addWidget(box);
        list->setFocus();
    });
    for (const char *key : {"b", "c", "d", "Tab", "b", "d"}) {
        press(key);
        QTest::qWait(2);
    }
    QApplication::setKeyboardInputInterval(400);
    EXPECT_EQ(script(), "list.item(\"banana\").click();\nlist.item(\"cherry\").click();\n"
                        "list.type(\"d\");\nbox.item(\"banana\").click();\n"
                        "box.item(\"date\").click();");
    EXPECT_EQ(child<QListWidget>("list")->count(), 3);
    EXPECT_EQ(child<QComboBox>("box")->currentText(), "date");
}

// The window system asks for it before the key is pressed.
TEST_F(KeyActionsTest, TheKeyForAContextMenuOpensIt)
{
    record([](QWidget *made) {
        auto *field = new QLineEdit;
        field->setObjectName("field");
        field->setContextMenuPolicy(Qt::CustomContextMenu);
        QObject::connect(field, &QWidget::customContextMenuRequested, field,
                         [field] { field->setText("asked"); });
        made->layout()->addWidget(field);
    });
    QWindow *handle = window->windowHandle();
    QContextMenuEvent asked(QContextMenuEvent::Keyboard, {}, {});
    QSpontaneKeyEvent::setSpontaneous(&asked);
    qApp->notify(handle, &asked);
    QTest::keyClick(handle, Qt::Key_Menu);
    EXPECT_EQ(script(), "field.type(\"<Menu>\");");
    replay();
    EXPECT_EQ(replayed->findChild<QLineEdit *>("field")->text(), "asked");
}

TEST_F(KeyActionsTest, AMnemonicThatSeveralEntriesHaveChoosesNoneYet)
{
    record([](QWidget *made) {
        auto *menu = new QMenu(made);
        menu->setObjectName("menu");
        for (const char *text : {"&Open", "&Other", "&Save"})
            menu->addAction(text);
    });
    auto *menu = child<QMenu>("menu");
    menu->popup({0, 0});
    QCoreApplication::processEvents();
    for (const int key : {Qt::Key_O, Qt::Key_O, Qt::Key_Return}) {
        QTest::keyClick(menu->windowHandle(), Qt::Key(key));
        QCoreApplication::processEvents();
    }
    EXPECT_EQ(script(), "menu.item(\"Other\").click();");
}

TEST_F(KeyActionsTest, AWindowThatAHeldKeyClosesTwiceIsClosedOnce)
{
    record([](QWidget *) {});
    for (int i = 0; i < 2; ++i)
        QWindowSystemInterface::handleCloseEvent(window->windowHandle());
    QCoreApplication::processEvents();
    EXPECT_EQ(script(), "window.close();");
}

TEST_F(KeyActionsTest, AFieldThatTakesThePlaceOfAnotherIsTypedIntoByACallOfItsOwn)
{
    const auto addField = [](QWidget *made) {
        auto *field = new QLineEdit;
        field->setObjectName("field");
        made->layout()->addWidget(field);
        field->setFocus();
    };
    record(addField);
    press("ab");
    delete child<QLineEdit>("field");
    addField(window.get());
    QCoreApplication::processEvents();
    press("cd");
    EXPECT_EQ(script(), "field.type(\"ab\");\nfield.type(\"cd\");");
}

TEST_F(KeyActionsTest, WhatBecomesUsableLateIsWaitedForOnceHoweverItIsUsed)
{
    record([](QWidget *made) {
        auto *list = new QListWidget;
        list->setObjectName("list");
        list->addItems({"apple", "banana"});
        list->setEnabled(false);
        made->layout()->addWidget(list);
        made->layout()->setContentsMargins(20, 20, 20, 20);
    });
    click(window.get(), QPoint(5, 5));
    auto *list = child<QListWidget>("list");
    list->setEnabled(true);
    const auto placeOf = [&](int row) {
        return list->viewport()->mapTo(window.get(),
                                       list->visualItemRect(list->item(row)).center());
    };
    QTest::mouseDClick(window->windowHandle(), Qt::LeftButton, {}, placeOf(0));
    QCoreApplication::processEvents();
    click(window.get(), placeOf(1));
    QStringList reported;
    for (const QVariant &action : qAsConst(actions))
        reported += action.toMap()["what"].toString() + ' ' +
                    action.toMap()["waits"].toStringList().join(',');
    EXPECT_EQ(reported,
              (QStringList{"click enabled", "nothing ", "doubleClick enabled", "click "}));
}
