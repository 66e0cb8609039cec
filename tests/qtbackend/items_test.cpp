#include "qtbackend/inspectortest.h"

#include <QTabWidget>
#include <QTreeWidget>

using MorvexTest::InspectorTest;

namespace {

class ItemsTest : public InspectorTest
{
protected:
    ItemsTest()
    {
        auto *metal = new QTreeWidgetItem(add<QTreeWidget>("tree", 0), {"Metal"});
        new QTreeWidgetItem(metal, {"Bolts"});
        new QTreeWidgetItem(metal, {"Nuts/Washers"});
        auto *list = add<QListWidget>("list", 100);
        for (int i = 0; i < 100; ++i)
            list->addItem(QString::number(i));
        add<QComboBox>("box", 200)->addItems({"one", "two"});
        auto *tabs = add<QTabWidget>("tabs", 250);
        tabs->addTab(new QWidget, "&First");
        tabs->addTab(new QWidget, "R&&D");
        auto *bar = add<QMenuBar>("bar", 350);
        QMenu *file = bar->addMenu("&File");
        QObject::connect(file, &QMenu::aboutToShow, file, [this, file] {
            file->clear();
            QMenu *menu = file->addMenu("E&xport");
            exportAction = menu->addAction("CSV\tCtrl+E");
            exportAction->setCheckable(true);
            menu->addAction("Mail")->setEnabled(false);
        });
        window.show();
    }

    template <typename Widget>
    Widget *add(const char *name, int y)
    {
        return InspectorTest::add<Widget>(name, {0, y, 400, 90});
    }

    template <typename Widget>
    Widget *get(const char *name) const
    {
        return window.findChild<Widget *>(name);
    }

    /// The answer, or the error text.
    QString ask(const char *function, const char *object, const QVariantList &arguments)
    {
        const QString error = call(function, object, arguments);
        return error.isEmpty() ? lastAnswer.toString() : error;
    }

    QString use(const char *object, const char *action, const QVariantList &selector)
    {
        return ask("useItem", object, {action, selector});
    }

    QAction *exportAction = nullptr;
};

// Counts the presses of mouse buttons that a widget gets.
class PressCounter : public QObject
{
public:
    explicit PressCounter(QWidget *widget)
        : QObject(widget)
    {
        widget->installEventFilter(this);
    }

    bool eventFilter(QObject *, QEvent *event) override
    {
        presses += event->type() == QEvent::MouseButtonPress ? 1 : 0;
        return false;
    }

    int presses = 0;
};

} // namespace

TEST_F(ItemsTest, ItemsOfEveryKindAreUsedAsAUserWould)
{
    auto *tree = get<QTreeWidget>("tree");
    const auto *onTree = new PressCounter(tree->viewport());
    EXPECT_EQ(use("tree", "expand", {"Metal"}), "true");
    EXPECT_TRUE(tree->topLevelItem(0)->isExpanded());
    EXPECT_EQ(use("tree", "expand", {"Metal"}), "true");
    EXPECT_EQ(onTree->presses, 1);
    EXPECT_TRUE(tree->selectedItems().isEmpty());
    EXPECT_EQ(use("tree", "click", {"Metal/Nuts/Washers"}), "true");
    EXPECT_EQ(tree->currentItem()->text(0), "Nuts/Washers");
    EXPECT_EQ(use("tree", "toggle", {"Metal"}), "true");
    EXPECT_FALSE(tree->topLevelItem(0)->isExpanded());

    QString activated;
    auto *list = get<QListWidget>("list");
    QObject::connect(list, &QListWidget::itemActivated, list,
                     [&](QListWidgetItem *item) { activated += item->text(); });
    QObject::connect(list, &QListWidget::itemDoubleClicked, list,
                     [&](QListWidgetItem *item) { activated += "twice " + item->text() + ' '; });
    EXPECT_EQ(use("list", "click", {"90"}), "true");
    EXPECT_EQ(list->currentRow(), 90);
    EXPECT_EQ(use("list", "activate", {3, 0}), "true");
    EXPECT_EQ(use("list", "doubleClick", {"80"}), "true");
    EXPECT_TRUE(activated.startsWith("3twice 80")) << activated.toStdString();

    list->item(5)->setFlags(list->item(5)->flags() | Qt::ItemIsEditable | Qt::ItemIsUserCheckable);
    list->item(5)->setCheckState(Qt::Unchecked);
    EXPECT_EQ(use("list", "check", {"5"}), "true");
    EXPECT_EQ(list->item(5)->checkState(), Qt::Checked);
    EXPECT_EQ(ask("useItem", "list", {"edit", QVariantList{"5"}, "five<"}), "true");
    EXPECT_EQ(list->item(5)->text(), "five<");
    // The view opens the editor of what is clicked again by itself, later.
    list->setEditTriggers(QAbstractItemView::SelectedClicked);
    for (int i = 0; i < 2; ++i)
        EXPECT_EQ(use("list", "click", {"five<"}), "true");
    EXPECT_EQ(ask("useItem", "list", {"edit", QVariantList{"five<"}, "fünf"}), "true");
    EXPECT_EQ(list->item(5)->text(), "fünf");

    const auto *onBox = new PressCounter(get<QComboBox>("box"));
    for (const char *entry : {"two", "two", "one"}) {
        EXPECT_EQ(use("box", "click", {entry}), "true");
        EXPECT_EQ(get<QComboBox>("box")->currentText(), entry);
        EXPECT_FALSE(get<QComboBox>("box")->view()->isVisible()) << entry;
    }
    EXPECT_EQ(onBox->presses, 3);
    EXPECT_EQ(use("tabs", "click", {"R&D"}), "true");
    EXPECT_EQ(get<QTabWidget>("tabs")->currentIndex(), 1);
    get<QTabWidget>("tabs")->addTab(new QWidget, "1");
    get<QTabWidget>("tabs")->setTabsClosable(true);
    auto *side =
        new PressCounter(get<QTabWidget>("tabs")->tabBar()->tabButton(2, QTabBar::RightSide));
    EXPECT_EQ(use("tabs", "click", {"1"}), "true");
    EXPECT_EQ(get<QTabWidget>("tabs")->currentIndex(), 2);
    EXPECT_EQ(side->presses, 0);
    EXPECT_EQ(use("bar", "click", {"File/Export/CSV"}), "true");
    EXPECT_TRUE(exportAction && exportAction->isChecked());
    EXPECT_EQ(use("bar", "click", {"File/Export/Mail"}), "the action is disabled");
    EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
    EXPECT_TRUE(get<QMenuBar>("bar")->isVisible());
    EXPECT_FALSE(QApplication::activePopupWidget());

    auto *header = tree->header();
    header->setObjectName("header");
    header->setSectionsClickable(true);
    int section = -1;
    tree->setHeaderLabels({"Material/Part"});
    QObject::connect(header, &QHeaderView::sectionClicked, header, [&](int at) { section = at; });
    EXPECT_EQ(use("header", "click", {"Material/Part"}), "true");
    EXPECT_EQ(section, 0);
}

TEST_F(ItemsTest, WhatCanNotBeUsedIsSaid)
{
    EXPECT_EQ(ask("itemProperties", "tree", {QVariant(QVariantList{"Metal/Bolts"})}), "");
    EXPECT_EQ(ask("hasItem", "tree", {QVariant(QVariantList{"Metal/Screws"})}), "false");
    EXPECT_EQ(ask("hasItem", "tree", {QVariant(QVariantList{"/"})}), "false");
    EXPECT_EQ(use("list", "click", {-1, 7}).section(';', 0, 0),
              "there is no item in row -1, column 7");
    EXPECT_TRUE(use("tree", "click", {"Metal/Screws"}).endsWith("there are: Bolts, Nuts/Washers"));
    get<QListWidget>("list")->addItem("7");
    EXPECT_TRUE(use("list", "click", {"7"}).contains("row 7, column 0 and row 100, column 0"));
    EXPECT_EQ(use("tabs", "expand", {"First"}), "an item of this widget has no 'expand'");
    EXPECT_EQ(use("box", "click", {""}), "there is no item ''");
    EXPECT_EQ(use("window", "click", {"x"}), "QWidget has no items");
    get<QListWidget>("list")->setEnabled(false);
    EXPECT_NE(use("list", "click", {"1"}), "true");
}
