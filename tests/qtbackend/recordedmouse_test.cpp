#include "qtbackend/recordinguser.h"

using namespace MorvexTest;

namespace {

// A form in which widgets are put in their places: none of them works.
class Form : public QObject
{
public:
    bool eventFilter(QObject *object, QEvent *event) override
    {
        opened += object == button && event->type() == QEvent::MouseButtonDblClick;
        return object == button && (event->type() == QEvent::MouseButtonPress ||
                                    event->type() == QEvent::MouseButtonDblClick);
    }

    QObject *button = nullptr;
    int opened = 0;
};

} // namespace

class RecordedMouseTest : public RecordingUserTest
{
};

TEST_F(RecordedMouseTest, ADoubleClickIsNotTwoClicks)
{
    auto *list = add<QListWidget>("list", {0, 0, 100, 100});
    list->addItems({"First", "Second"});
    record();
    const Place first = at(list->viewport(), 10, 5);
    click(first);
    clickAtOnce(first);
    EXPECT_EQ(perform(), QStringList("doubleClick list First"));
}

TEST_F(RecordedMouseTest, AButtonIsDoubleClickedWhereTheApplicationTakesItsPresses)
{
    Form form;
    form.button = add<QPushButton>("button", {0, 0, 100, 30});
    auto *other = add<QPushButton>("other", {0, 40, 100, 30});
    // Later than the recorder.
    QObject::connect(other, &QPushButton::clicked,
                     [&form] { QCoreApplication::instance()->installEventFilter(&form); });
    record();
    click(in(other));
    clickAtOnce(in(other));
    EXPECT_EQ(perform(), (QStringList{"click other", "click other"}));
    const Place button = in(static_cast<QWidget *>(form.button));
    click(button);
    clickAtOnce(button);
    EXPECT_EQ(perform(), QStringList("doubleClick button"));
    EXPECT_EQ(replay(), QString());
    EXPECT_EQ(form.opened, 2);
}

TEST_F(RecordedMouseTest, ARubberBandSelectsAgainAndAClickBesideItemsIsNothing)
{
    auto *list = add<QListWidget>("list", {0, 0, 200, 300});
    list->setSelectionMode(QAbstractItemView::ExtendedSelection);
    list->addItems({"First", "Second", "Third"});
    record();
    const Place below = at(list->viewport(), 150, 200);
    click(below);
    EXPECT_EQ(perform(), QStringList());
    list->setSpacing(10);
    drag(below, at(list->viewport(), 2, 2));
    perform();
    EXPECT_EQ(list->selectedItems().size(), 3);
    list->clearSelection();
    EXPECT_EQ(replay(), QString());
    EXPECT_EQ(list->selectedItems().size(), 3);
}

TEST_F(RecordedMouseTest, NodesWithAnIconAloneInTheirFirstColumnAreClickedByTheirTexts)
{
    auto *tree = add<QTreeWidget>("tree", {0, 0, 300, 200});
    tree->setColumnCount(2);
    for (const char *text : {"One", "Two"})
        new QTreeWidgetItem(tree, {"", text});
    record();
    const QRect place = tree->visualItemRect(tree->topLevelItem(1));
    click(at(tree->viewport(), tree->columnWidth(0) + 5, place.center().y()));
    const QStringList lines = perform();
    EXPECT_TRUE(lines.value(0).contains("Two")) << lines.join('\n').toStdString();
    EXPECT_EQ(tree->currentItem(), tree->topLevelItem(1));
    tree->setCurrentItem(nullptr);
    EXPECT_EQ(replay(), QString());
    EXPECT_EQ(tree->currentItem(), tree->topLevelItem(1));
    EXPECT_EQ(tree->currentColumn(), 1);
}

TEST_F(RecordedMouseTest, WhatScrollsIsLeftOutAndABarThatIsAnInputIsNot)
{
    auto *bar = add<QScrollBar>("bar", {0, 0, 20, 200});
    auto *shown = add<QPlainTextEdit>("shown", {40, 0, 200, 60});
    shown->setPlainText(QString("line\n").repeated(100));
    shown->setFocusPolicy(Qt::NoFocus);
    auto *tabs = add<QTabBar>("tabs", {0, 210, 120, 30});
    for (int i = 0; i < 20; ++i)
        tabs->addTab("a long name " + QString::number(i));
    record();
    const auto pageDown = [](QWidget *widget) { return at(widget, 8, widget->height() - 5); };
    click(pageDown(bar));
    click(pageDown(shown->verticalScrollBar()));
    click(in(tabs->findChild<QWidget *>("ScrollRightButton")));
    click(at(shown->viewport(), 10, 10));
    click(at(shown->viewport(), 10, 20));
    const QStringList recorded = perform();
    ASSERT_EQ(recorded.size(), 4) << recorded.join(", ").toStdString();
    EXPECT_EQ(recorded[0], "set bar value " + QString::number(bar->value()));
    // What is at a place depends on it.
    EXPECT_EQ(recorded[1].section(' ', 0, 1), "set shown") << recorded[1].toStdString();
    EXPECT_EQ(recorded.mid(2), (QStringList{"click shown 10 10", "click shown 10 20"}));
    EXPECT_GT(bar->value(), 0);
    const int scrolled = shown->verticalScrollBar()->value();
    EXPECT_GT(scrolled, 0);
    shown->verticalScrollBar()->setValue(0);
    EXPECT_EQ(replay(), QString());
    EXPECT_EQ(shown->verticalScrollBar()->value(), scrolled);
}

TEST_F(RecordedMouseTest, AFieldWithoutANameIsNamedByItsWindowWhateverFileThatShows)
{
    add<QCheckBox>("", {0, 0, 100, 30});
    QDialog dialog(&window);
    dialog.setWindowTitle("notes.txt[*] - Options");
    dialog.setGeometry(50, 50, 100, 100);
    auto *inner = new QCheckBox(&dialog);
    inner->setGeometry(10, 10, 50, 30);
    record();
    dialog.show();
    click(at(inner, 8, 15));
    ASSERT_EQ(perform().size(), 1);
    EXPECT_EQ(performed.first()["object"].toString(),
              "{container={type='QDialog'} type='QCheckBox' visible='true'}");
    EXPECT_EQ(replay(), QString());
    EXPECT_FALSE(inner->isChecked());
    dialog.hide();
    class Editor : public QMainWindow
    {
    };
    Editor editor;
    editor.setWindowTitle("notes.txt - Editor");
    editor.setCentralWidget(new QCheckBox);
    editor.show();
    click([&editor] {
        QWidget *box = editor.centralWidget();
        return qMakePair(box, QPoint(8, box->height() / 2));
    });
    ASSERT_EQ(perform().size(), 1);
    EXPECT_EQ(performed.first()["object"].toString(),
              "{container={type='QMainWindow'} type='QCheckBox' visible='true'}");
}

TEST_F(RecordedMouseTest, AFieldWithoutANameIsNamedByTheTitleAroundIt)
{
    QCheckBox *inner = nullptr;
    for (const int y : {0, 100}) {
        auto *box = add<QGroupBox>("", {0, y, 150, 90});
        box->setTitle(y == 0 ? "First" : "Second");
        inner = new QCheckBox(box);
        inner->setGeometry(10, 30, 100, 30);
    }
    record();
    click(at(inner, 8, 15));
    ASSERT_EQ(perform().size(), 1);
    EXPECT_EQ(performed.first()["object"].toString(),
              "{container={title='Second' type='QGroupBox'} type='QCheckBox' visible='true'}");
    EXPECT_EQ(replay(), QString());
    EXPECT_FALSE(inner->isChecked());
}

TEST_F(RecordedMouseTest, ClicksOnTabsAndOnWhatIsInThemMoveNoTab)
{
    auto *tabs = add<QTabWidget>("tabs", {0, 0, 400, 100});
    for (const char *name : {"One", "Two", "+"})
        tabs->addTab(new QWidget, name);
    tabs->setMovable(true);
    QTabBar *bar = tabs->tabBar();
    auto *inner = new QToolButton;
    inner->setObjectName("inner");
    bar->setTabButton(1, QTabBar::RightSide, inner);
    QObject::connect(tabs, &QTabWidget::currentChanged,
                     [tabs](int tab) { tabs->setCurrentIndex(tab == 2 ? 1 : tab); });
    record();
    const auto tab = [bar](int index) {
        return [=] {
            return qMakePair(static_cast<QWidget *>(bar),
                             bar->tabRect(index).topLeft() + QPoint(8, 8));
        };
    };
    click(tab(1), Qt::RightButton);
    click(tab(2));
    click(in(inner));
    QStringList recorded = perform();
    recorded.replaceInStrings(QRegExp(" right$"), "");
    EXPECT_EQ(recorded, (QStringList{"click tabs Two", "click tabs +", "click inner"}));
}

TEST_F(RecordedMouseTest, WhatTheUserCouldNotDoIsNotRecorded)
{
    auto *list = add<QListWidget>("list", {0, 0, 100, 100});
    list->addItems({"on", "off"});
    list->item(1)->setFlags(Qt::NoItemFlags);
    auto *tabs = add<QTabBar>("tabs", {0, 120, 300, 30});
    tabs->addTab("first");
    tabs->addTab("second");
    tabs->setTabEnabled(1, false);
    auto *many = add<QTabBar>("many", {0, 160, 100, 30});
    for (int i = 0; i < 10; ++i)
        many->addTab("a tab");
    auto *button = add<QPushButton>("button", {200, 0, 100, 30});
    auto *disabled = add<QPushButton>("disabled", {200, 40, 100, 30});
    disabled->setEnabled(false);
    auto *label = add<QLabel>("label", {200, 80, 100, 30});
    auto *table = add<QTableWidget>("table", {0, 200, 300, 100});
    table->setColumnCount(2);
    table->setHorizontalHeaderLabels({"a", "b"});
    record();
    QHeaderView *header = table->horizontalHeader();
    header->setObjectName("header");
    const int edge = header->sectionPosition(1);
    click(at(list->viewport(), 10, list->visualItemRect(list->item(1)).center().y()));
    click([tabs] { return qMakePair(tabs, tabs->tabRect(1).center()); });
    click(in(disabled));
    click(in(many->findChildren<QToolButton *>().last()));
    press(in(button));
    release(at(button, 50, 31));
    press(in(label));
    release(at(label, 50, 200));
    drag(at(header->viewport(), edge - 1, 5), at(header->viewport(), edge + 20, 5));
    click(at(header->viewport(), edge + 19, 5));
    EXPECT_EQ(perform(), QStringList());
    EXPECT_GT(header->sectionPosition(1), edge);
    // One click after the other, each on something else.
    click(at(list->viewport(), 10, 5));
    clickAtOnce(in(button));
    clickAtOnce(in(button));
    click(at(header->viewport(), 10, 5));
    EXPECT_EQ(perform(),
              (QStringList{"click list on", "click button", "click button", "click header a"}));
}

TEST_F(RecordedMouseTest, TabsAndSectionsAreMovedAgain)
{
    auto *tabs = add<QTabWidget>("tabs", {0, 0, 400, 100});
    for (const char *name : {"One", "Two", "Three", "Four"})
        tabs->addTab(new QWidget, name);
    tabs->setMovable(true);
    auto *table = add<QTableWidget>("table", {0, 120, 500, 100});
    table->setColumnCount(4);
    table->setHorizontalHeaderLabels({"a", "b", "c", "d"});
    QHeaderView *header = table->horizontalHeader();
    header->setObjectName("header");
    header->setSectionsMovable(true);
    record();
    QTabBar *bar = tabs->tabBar();
    const auto tab = [bar](int index, int beside) {
        return [=] {
            return qMakePair(static_cast<QWidget *>(bar),
                             bar->tabRect(index).center() + QPoint(beside, 0));
        };
    };
    const auto section = [header](int visual, int beside) {
        return at(header->viewport(),
                  header->sectionPosition(header->logicalIndex(visual)) + 50 + beside, 5);
    };
    const auto order = [&] {
        QString all;
        for (int i = 0; i < 4; ++i)
            all += tabs->tabText(i) + QString::number(header->logicalIndex(i));
        return all;
    };
    const QString before = order();
    drag(tab(0, 0), tab(2, 3));
    drag(section(0, 0), section(2, 20));
    drag(section(3, 0), section(1, -20));
    EXPECT_EQ(perform(), (QStringList{"drag tabs One Three tabs", "drag header a c header",
                                      "drag header d c header"}));
    const QString after = order();
    EXPECT_NE(after, before);
    bar->moveTab(2, 0);
    header->moveSection(header->visualIndex(3), 3);
    header->moveSection(header->visualIndex(0), 0);
    ASSERT_EQ(order(), before);
    EXPECT_EQ(replay(), QString());
    EXPECT_EQ(order(), after);
}

TEST_F(RecordedMouseTest, WhatTheApplicationMadeClickableIsClicked)
{
    class Clickable : public QLabel
    {
    public:
        using QLabel::QLabel;
        int clicks = 0;

    protected:
        void mousePressEvent(QMouseEvent *event) override
        {
            ++clicks;
            QLabel::mousePressEvent(event);
        }
    };
    auto *bar = add<QStatusBar>("bar", {0, 100, 400, 30});
    auto *state = new Clickable("Line 3");
    state->setObjectName("state");
    bar->addWidget(state);
    bar->addWidget(new QLabel("label"));
    auto *field = add<QLineEdit>("field", {0, 0, 100, 30});
    field->setCompleter(new QCompleter({"abc", "abd"}, field));
    record();
    click(in(state));
    click(in(bar->findChildren<QLabel *>().last()));
    EXPECT_EQ(perform(), QStringList("click state"));
    EXPECT_EQ(call("useMouse", "state", {"doubleClick", QVariantMap()}), QString());
    EXPECT_EQ(perform(), QStringList("doubleClick state"));
    state->clicks = 0;
    // A list of completions is left as by a press beside it.
    EXPECT_EQ(type("field", "ab"), QString());
    ASSERT_TRUE(QApplication::activePopupWidget());
    EXPECT_EQ(replay(), QString());
    EXPECT_EQ(state->clicks, 2);
}
