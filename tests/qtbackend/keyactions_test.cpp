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

namespace {

// A column for each kind of editor.
class Cells : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &,
                          const QModelIndex &index) const override
    {
        switch (index.column()) {
        case 0:
            return new QLineEdit(parent);
        case 1: {
            auto *date = new QDateEdit(parent);
            date->setDisplayFormat("dd.MM.yy");
            return date;
        }
        case 2: {
            auto *spin = new QDoubleSpinBox(parent);
            spin->setLocale(QLocale::German);
            spin->setPrefix("EUR ");
            return spin;
        }
        case 3: {
            auto *box = new QComboBox(parent);
            box->addItems({"low", "high"});
            return box;
        }
        default:
            return new QPlainTextEdit(parent);
        }
    }

    void setEditorData(QWidget *editor, const QModelIndex &index) const override
    {
        if (auto *box = qobject_cast<QComboBox *>(editor))
            box->setCurrentText(index.data().toString());
        else
            QStyledItemDelegate::setEditorData(editor, index);
    }
};

QTableWidget *makeTable(QWidget *window)
{
    auto *table = new QTableWidget(2, 5);
    table->setObjectName("table");
    table->setItemDelegate(new Cells(table));
    const QVariant values[] = {"a", QDate(2026, 11, 22), 2.5, "low", "text"};
    for (int i = 0; i < 5; ++i) {
        table->setItem(0, i, new QTableWidgetItem);
        table->item(0, i)->setData(Qt::EditRole, values[i]);
    }
    window->layout()->addWidget(table);
    window->layout()->addWidget(new QPushButton("other"));
    window->resize(700, 300);
    table->setCurrentCell(0, 0);
    table->setFocus();
    return table;
}

QString contentOf(const QWidget *window)
{
    const auto *table = window->findChild<QTableWidget *>("table");
    QStringList texts;
    for (int i = 0; i < 5; ++i)
        texts += table->item(0, i)->data(Qt::EditRole).toString();
    return texts.join('|');
}

} // namespace

TEST_F(KeyActionsTest, WhateverEditorACellHasItIsEditedByOneCall)
{
    const struct
    {
        int column;
        const char *keys;
        bool isLeftByMouse;
        const char *content;
        const char *script;
    } rows[] = {
        {0, "new Return", false, "new|2026-11-22|2.5|low|text", "table.item(\"a\").edit(\"new\");"},
        {0, "F2 End b", true, "ab|2026-11-22|2.5|low|text", "table.item(\"a\").edit(\"ab\");"},
        {0, "new Tab x Escape", false, "new|2026-11-22|2.5|low|text",
         "table.item(\"a\").edit(\"new\");"},
        {0, "F2 b Escape", false, "a|2026-11-22|2.5|low|text", ""},
        {0, "F2 Home Return", false, "a|2026-11-22|2.5|low|text", ""},
        {1, "F2 Up Return", false, "a|2026-11-23|2.5|low|text",
         "table.item(\"2026-11-22\").edit(\"2026-11-23\");"},
        {2, "F2 Up Return", false, "a|2026-11-22|3.5|low|text",
         "table.item(\"2.5\").edit(\"3,50\");"},
        {3, "F2 Down Return", false, "a|2026-11-22|2.5|high|text",
         "table.item(\"low\").edit(\"high\");"},
        {4, "F2 Ctrl+End Return b", true, "a|2026-11-22|2.5|low|text\nb",
         "table.item(\"text\").edit(\"text\\nb\");"},
    };
    for (const auto &row : rows) {
        record(makeTable);
        child<QTableWidget>("table")->setCurrentCell(0, row.column);
        press(row.keys);
        if (row.isLeftByMouse)
            click(child<QWidget>("table"));
        EXPECT_EQ(contentOf(window.get()), row.content);
        const QString lines = script();
        EXPECT_EQ(lines.section('\n', 0, 0), row.script);
        EXPECT_EQ(lines.count('\n'), row.isLeftByMouse ? 1 : 0) << lines.toStdString();
        replay();
        EXPECT_EQ(contentOf(replayed.get()), row.content) << lines.toStdString();
    }
}

// Each shortcut says what the table holds then.
TEST_F(KeyActionsTest, AShortcutInAnEditorIsTypedWhenTheTableHoldsTheSame)
{
    const struct
    {
        const char *keys;
        const char *script;
    } rows[] = {
        {"n Ctrl+S w Return", "table.type(\"<Ctrl+S>\");\ntable.item(\"a\").edit(\"nw\");"},
        {"nw Ctrl+T", "table.item(\"a\").edit(\"nw\");\ntable.type(\"<Ctrl+T>\");"},
        {"nw Tab Ctrl+S Alt+O",
         "table.item(\"a\").edit(\"nw\");\ntable.type(\"<Ctrl+S>\");\nother.click();"},
    };
    for (const auto &row : rows) {
        record([](QWidget *made) {
            makeTable(made);
            const auto log = [made] {
                made->setWindowTitle(made->windowTitle() + contentOf(made) + ' ');
            };
            auto *other = made->findChild<QPushButton *>();
            other->setObjectName("other");
            other->setText("&other");
            QObject::connect(other, &QPushButton::clicked, log);
            const auto *save = new QShortcut(QKeySequence("Ctrl+S"), made);
            QObject::connect(save, &QShortcut::activated, log);
            const auto *store = new QShortcut(QKeySequence("Ctrl+T"), made);
            QObject::connect(store, &QShortcut::activated, [log, other] {
                other->setFocus();
                log();
            });
        });
        press(row.keys);
        // A button that a mnemonic pushes.
        ASSERT_TRUE(QTest::qWaitFor([&] { return !child<QPushButton>("other")->isDown(); }));
        EXPECT_EQ(script(), row.script);
        const QString expected = window->windowTitle();
        replay();
        EXPECT_EQ(replayed->windowTitle(), expected) << row.script;
    }
}

TEST_F(KeyActionsTest, KeysAfterAnEditGoToTheItemThatIsCurrentThen)
{
    record(makeTable);
    QTableWidget *table = child<QTableWidget>("table");
    QObject::connect(new QShortcut(QKeySequence("F7"), table), &QShortcut::activated, table,
                     [table] { table->currentItem()->setText("gone"); });
    press("new Tab Escape F7");
    EXPECT_EQ(script(), "table.item(\"a\").edit(\"new\");\ntable.item(\"2026-11-22\").click();\n"
                        "table.type(\"<F7>\");");
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

TEST_F(KeyActionsTest, ADateIsAlsoEditedAsItIsShown)
{
    record(makeTable);
    Morvex::QtInspector player;
    QString error;
    const QVariant table = player.findObject("table", nullptr)->id();
    const QVariantList cell{0, 1};
    player.callFunction("useItem", {table, "edit", cell, "01.02.27"}, &error);
    EXPECT_EQ(error, QString());
    EXPECT_EQ(contentOf(window.get()), "a|2027-02-01|2.5|low|text");
    player.callFunction("useItem", {table, "edit", cell, "1/2/27"}, &error);
    EXPECT_EQ(error.section(": ", -1), "the editor doesn't take '1/2/27'");
}

// A place in the text is the same with any width of the window.
TEST_F(KeyActionsTest, AClickInATextGoesThereAgainHoweverItsLinesAreBroken)
{
    QString text;
    for (int i = 0; i < 60; ++i)
        text += QString("word\u0301%1 ").arg(i);
    int width = 500;
    record([&](QWidget *made) {
        auto *edit = new QTextEdit(text);
        edit->setObjectName("edit");
        edit->setAlignment(Qt::AlignCenter);
        made->layout()->addWidget(edit);
        made->layout()->addWidget(new QLineEdit);
        made->resize(width, 400);
    });
    auto *edit = child<QTextEdit>("edit");
    QTextCursor cursor = edit->document()->find("30 ");
    const QPoint place = edit->cursorRect(cursor).center();
    for (const QPoint &first : {QPoint(20, 20), place}) {
        QTest::qWait(1);
        QTest::mouseClick(window->windowHandle(), Qt::LeftButton, {},
                          edit->viewport()->mapTo(window.get(), first));
        QCoreApplication::processEvents();
    }
    press("X");
    const QString expected = edit->toPlainText();
    EXPECT_TRUE(expected.contains("30 X")) << expected.toStdString();
    EXPECT_EQ(script().count("<Ctrl+"), 1) << script().toStdString();
    width = 300;
    replay();
    EXPECT_EQ(replayed->findChild<QTextEdit *>("edit")->toPlainText(), expected)
        << script().toStdString();
}

// Keys jump over parts of some fields, and what is next in a text may be on the left.
TEST_F(KeyActionsTest, AClickPutsTheCursorThereAgainWhateverTheFieldShows)
{
    const char *hebrew = "\u05d0\u05d1\u05d2 \u05d3\u05d4\u05d5 \u05d6\u05d7\u05d8";
    const struct
    {
        const char *name;
        QString keys;
        std::function<QWidget *()> make;
    } rows[] = {
        {"line", "X", [&] { return new QLineEdit(hebrew); }},
        {"text", "X",
         [&] { return new QPlainTextEdit(QString("%1\nabc def\n%1\nabc").arg(hebrew)); }},
        {"money", "7",
         [] {
             auto *box = new QSpinBox;
             box->setRange(0, 99999999);
             box->setValue(1234);
             box->setPrefix("EUR ");
             box->setSuffix(" net");
             return box;
         }},
        {"mask", "1234",
         [] {
             auto *line = new QLineEdit("5");
             line->setInputMask("+99 (999) 99-99;_");
             return line;
         }},
        {"when", "5 Down",
         [] {
             auto *edit = new QDateTimeEdit(QDateTime({2005, 11, 30}, {23, 59, 59, 999}));
             edit->setDisplayFormat("yyyy-MM-dd, HH:mm:ss (zzz 'ms')");
             return edit;
         }},
    };
    const auto valueOf = [](const QWidget *in, const char *name) {
        const auto *field = in->findChild<QWidget *>(name);
        return field->metaObject()->userProperty().read(field).toString();
    };
    const int parts = 6;
    for (int i = 0; i < static_cast<int>(std::size(rows)) * parts * 2; ++i) {
        const auto &row = rows[i / parts / 2];
        const bool isDouble = i / parts % 2 == 1;
        record([&row](QWidget *made) {
            made->layout()->addWidget(new QPushButton);
            made->layout()->addWidget(row.make());
            made->layout()->itemAt(1)->widget()->setObjectName(row.name);
            made->resize(200, 150);
        });
        auto *field = child<QWidget>(row.name);
        const QPoint place(field->width() * (i % parts) / parts + 4,
                           field->height() * (i % parts) / parts + 4);
        QTest::qWait(1);
        const QPoint inWindow = field->mapTo(window.get(), place);
        if (isDouble)
            QTest::mouseDClick(window->windowHandle(), Qt::LeftButton, {}, inWindow);
        else
            QTest::mouseClick(window->windowHandle(), Qt::LeftButton, {}, inWindow);
        QCoreApplication::processEvents();
        press(row.keys);
        const QString expected = valueOf(window.get(), row.name);
        replay();
        EXPECT_EQ(valueOf(replayed.get(), row.name), expected) << script().toStdString();
    }
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

TEST_F(KeyActionsTest, ACellOfATextIsFoundAgainByKeys)
{
    record([](QWidget *made) {
        auto *text = new QTextEdit;
        text->setObjectName("text");
        QString rows;
        for (int i = 0; i < 40; ++i)
            rows += QString("<tr><td>row %1</td><td>1</td><td>many words</td></tr>").arg(i);
        text->setHtml("<h1 align=center>Order</h1><table>" + rows + "</table><p>The end.</p>");
        made->layout()->addWidget(text);
        made->resize(400, 1500);
    });
    auto *text = child<QTextEdit>("text");
    for (const char *word : {"row 2", "many", "row 17", "row 37", "end"}) {
        const QTextCursor place = text->document()->find(word);
        click(text->viewport(), text->cursorRect(place).center());
        press("x");
    }
    // What is beside each other is not selected as a whole.
    const QTextCursor cell = text->document()->find("row 20");
    click(text->viewport(), text->cursorRect(cell).center());
    press("Shift+Left Shift+Left y");
    const QString expected = text->toPlainText();
    ASSERT_EQ(expected.count('x') + expected.count('y'), 6 + 40);
    replay();
    EXPECT_EQ(replayed->findChild<QTextEdit *>("text")->toPlainText(), expected)
        << script().toStdString();
}
