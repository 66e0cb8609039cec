#include "qtbackend/recordeduser.h"

using namespace MorvexTest;

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

using RecordedCellsTest = RecordedUser;

TEST_F(RecordedCellsTest, WhateverEditorACellHasItIsEditedByOneCall)
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
TEST_F(RecordedCellsTest, AShortcutInAnEditorIsTypedWhenTheTableHoldsTheSame)
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
        ASSERT_TRUE(QTest::qWaitFor([&] { return !child<QPushButton>("other")->isDown(); }, 60000));
        EXPECT_EQ(script(), row.script);
        const QString expected = window->windowTitle();
        replay();
        EXPECT_EQ(replayed->windowTitle(), expected) << row.script;
    }
}

TEST_F(RecordedCellsTest, KeysAfterAnEditGoToTheItemThatIsCurrentThen)
{
    record(makeTable);
    QTableWidget *table = child<QTableWidget>("table");
    QObject::connect(new QShortcut(QKeySequence("F7"), table), &QShortcut::activated, table,
                     [table] { table->currentItem()->setText("gone"); });
    press("new Tab Escape F7");
    EXPECT_EQ(script(), "table.item(\"a\").edit(\"new\");\ntable.item(\"2026-11-22\").click();\n"
                        "table.type(\"<F7>\");");
}

TEST_F(RecordedCellsTest, ADateIsAlsoEditedAsItIsShown)
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

TEST_F(RecordedCellsTest, ACellOfATextIsFoundAgainByKeys)
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
