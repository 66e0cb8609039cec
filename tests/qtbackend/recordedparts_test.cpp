#include "qtbackend/recordinguser.h"

using namespace MorvexTest;

namespace {

// Draws nothing; what matters is where it is clicked.
class Stars : public QWidget
{
public:
    explicit Stars(QWidget *parent)
        : QWidget(parent)
    {
        setAutoFillBackground(true);
    }
    int count = 0;

protected:
    void mouseReleaseEvent(QMouseEvent *event) override { count = event->x() / 20; }
};

class StarDelegate : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &,
                          const QModelIndex &) const override
    {
        return new Stars(parent);
    }
    void setModelData(QWidget *editor, QAbstractItemModel *model,
                      const QModelIndex &index) const override
    {
        model->setData(index, static_cast<Stars *>(editor)->count);
    }
};

// Has no editor, but takes clicks.
class LinkDelegate : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;
    int clicked = -1;

protected:
    bool editorEvent(QEvent *event, QAbstractItemModel *, const QStyleOptionViewItem &option,
                     const QModelIndex &) override
    {
        if (event->type() == QEvent::MouseButtonRelease)
            clicked = static_cast<QMouseEvent *>(event)->x() - option.rect.x();
        return false;
    }
};

class Canvas : public QWidget
{
public:
    using QWidget::QWidget;
    QPolygon stroke;

protected:
    void mousePressEvent(QMouseEvent *event) override { stroke << event->pos(); }
    void mouseMoveEvent(QMouseEvent *event) override { stroke << event->pos(); }
};

class LateMenuButton : public QToolButton
{
public:
    explicit LateMenuButton(QWidget *parent)
        : QToolButton(parent)
    {
        late.setObjectName("menu");
    }
    QMenu late;

protected:
    void mousePressEvent(QMouseEvent *event) override
    {
        setMenu(&late);
        QToolButton::mousePressEvent(event);
    }
};

} // namespace

class RecordedPartsTest : public RecordingUserTest
{
};

TEST_F(RecordedPartsTest, WhatTheApplicationHandlesInAnItemIsClickedAtItsPlace)
{
    auto *table = add<QTableWidget>("table", {0, 0, 400, 200});
    table->setRowCount(2);
    table->setColumnCount(2);
    for (int i = 0; i < 4; ++i)
        table->setItem(i / 2, i % 2, new QTableWidgetItem("item " + QString::number(i)));
    auto *links = new LinkDelegate(table);
    table->setItemDelegateForColumn(0, links);
    table->setItemDelegateForColumn(1, new StarDelegate(table));
    record();
    const auto cell = [table](int index, int x) -> Place {
        return [table, index, x] {
            const QRect shown = table->visualItemRect(table->item(index / 2, index % 2));
            return qMakePair(table->viewport(), shown.topLeft() + QPoint(x, 5));
        };
    };
    click(cell(0, 70));
    click(cell(1, 10));
    clickAtOnce(cell(1, 10));
    // In the editor that is open then.
    click([table] {
        auto *stars = table->viewport()->findChild<QWidget *>();
        return qMakePair(stars, QPoint(85, 5));
    });
    click(cell(2, 30));
    const QStringList recorded = perform();
    ASSERT_EQ(recorded.size(), 4) << recorded.join(", ").toStdString();
    EXPECT_EQ(recorded[0], "click table item 0 70 5");
    EXPECT_EQ(recorded[1], "doubleClick table item 1");
    EXPECT_TRUE(recorded[2].endsWith(" 85 5")) << recorded[2].toStdString();
    EXPECT_EQ(recorded[3], "click table item 2 30 5");
    EXPECT_EQ(table->item(0, 1)->text(), "4");
    table->item(0, 1)->setText("item 1");
    links->clicked = -1;
    EXPECT_EQ(replay(), QString());
    EXPECT_EQ(table->item(0, 1)->text(), "4");
    EXPECT_EQ(links->clicked, 30);
}

TEST_F(RecordedPartsTest, WhatAToolBarHasNoRoomForIsUsedWhateverItsWidth)
{
    auto *main = add<QMainWindow>("main", {0, 0, 150, 300});
    main->setWindowFlags(Qt::Widget);
    main->setAnimated(false);
    QToolBar alone(&window);
    alone.setGeometry(0, 320, 80, 40);
    QStringList chosen;
    for (QToolBar *bar : {main->addToolBar("bar"), &alone}) {
        for (const char *name : {"One", "Two", "Three", "Four", "Five"}) {
            const QString text = QLatin1String(name) + (bar == &alone ? "!" : "");
            bar->addAction(text, [&chosen, text] { chosen += text; });
        }
    }
    auto *below = new QPushButton("below");
    main->setCentralWidget(below);
    QObject::connect(below, &QPushButton::clicked, [&chosen] { chosen += "below"; });
    record();
    const auto extension = [](QWidget *around) {
        return around->findChild<QWidget *>("qt_toolbar_ext_button");
    };
    click(in(extension(main)));
    click([main] {
        const auto buttons = main->findChildren<QToolButton *>();
        for (QToolButton *button : buttons) {
            if (button->text() == "Four")
                return qMakePair(static_cast<QWidget *>(button), button->rect().center());
        }
        return qMakePair(static_cast<QWidget *>(nullptr), QPoint());
    });
    click(in(extension(&alone)));
    click([] {
        auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
        return qMakePair(static_cast<QWidget *>(menu),
                         menu->actionGeometry(menu->actions().last()).center());
    });
    const QStringList recorded = perform();
    EXPECT_EQ(recorded.size(), 2) << recorded.join(", ").toStdString();
    EXPECT_EQ(chosen, (QStringList{"Four", "Five!"}));
    for (const int width : {150, 700}) {
        main->resize(width, 300);
        alone.resize(width - 70, 40);
        QCoreApplication::processEvents();
        chosen.clear();
        EXPECT_EQ(replay(), QString());
        EXPECT_EQ(chosen, (QStringList{"Four", "Five!"}));
    }
    // What the unfolded bar covers.
    main->resize(150, 80);
    QCoreApplication::processEvents();
    chosen.clear();
    EXPECT_EQ(call("useMouse", "{type='QToolButton' text='Four'}", {"click", QVariantMap()}),
              QString());
    EXPECT_EQ(call("useMouse", "{type='QPushButton' text='below'}", {"click", QVariantMap()}),
              QString());
    EXPECT_EQ(chosen, (QStringList{"Four", "below"}));
}

TEST_F(RecordedPartsTest, AViewThatIsAWindowIsNoBackground)
{
    QGraphicsScene scene(0, 0, 200, 200);
    auto *item = scene.addRect(0, 0, 50, 50);
    item->setFlag(QGraphicsItem::ItemIsSelectable);
    QGraphicsView view(&scene);
    view.setGeometry(0, 0, 300, 300);
    record();
    view.show();
    const Place place = [&view] { return qMakePair(view.viewport(), view.mapFromScene(25, 25)); };
    click(place);
    EXPECT_EQ(perform().size(), 1);
    EXPECT_TRUE(item->isSelected());
    item->setSelected(false);
    EXPECT_EQ(replay(), QString());
    EXPECT_TRUE(item->isSelected());
}

TEST_F(RecordedPartsTest, WhatIsEmbeddedInASceneIsUsedByItsName)
{
    auto *view = add<QGraphicsView>("view", {0, 0, 500, 300});
    QGraphicsScene scene(0, 0, 400, 250);
    view->setScene(&scene);
    auto *panel = new QWidget;
    panel->resize(200, 150);
    auto *check = add<QCheckBox>("check", {0, 0, 100, 30}, panel);
    auto *list = add<QListWidget>("list", {0, 40, 100, 100}, panel);
    list->addItems({"First", "Second"});
    scene.addWidget(panel)->setScale(1.5);
    record();
    const auto inView = [view](QWidget *widget, const QPoint &place) -> Place {
        return [=] {
            const QPointF inScene = widget->window()->graphicsProxyWidget()->mapToScene(
                widget->mapTo(widget->window(), place));
            return qMakePair(view->viewport(), view->mapFromScene(inScene));
        };
    };
    click(inView(check, {8, 15}));
    click(inView(list->viewport(), list->visualItemRect(list->item(1)).center()));
    EXPECT_EQ(perform(), (QStringList{"click check", "click list Second"}));
    list->setCurrentRow(0);
    EXPECT_EQ(replay(), QString());
    EXPECT_FALSE(check->isChecked());
    EXPECT_EQ(list->currentRow(), 1);
}

TEST_F(RecordedPartsTest, AMenuIsOpenedForTheFieldInItAndEntriesOfOneTextAreNumbered)
{
    auto *bar = add<QMenuBar>("bar", {0, 0, 400, 30});
    QMenu menu("Mode");
    bar->addMenu(&menu);
    QStringList chosen;
    auto *search = new QLineEdit;
    search->setObjectName("search");
    auto *fieldAction = new QWidgetAction(&menu);
    fieldAction->setDefaultWidget(search);
    for (const char *name : {"first", "second"})
        menu.addAction("&8", [&chosen, name] { chosen += name; });
    menu.addAction(fieldAction);
    record();
    const auto entry = [&menu](int index) -> Place {
        return [&menu, index] {
            const QRect line = menu.actionGeometry(menu.actions().at(index));
            return qMakePair(static_cast<QWidget *>(&menu), line.center());
        };
    };
    const Place title = at(bar, 10, 10);
    click(title);
    click(entry(1));
    EXPECT_EQ(perform(), QStringList("click bar Mode/8 2"));
    EXPECT_EQ(replay(), QString());
    EXPECT_EQ(chosen, (QStringList{"second", "second"}));
    click(title);
    EXPECT_EQ(perform(), QStringList());
    EXPECT_EQ(type("search", "ab<Esc>"), QString());
    EXPECT_EQ(perform(), (QStringList{"click bar Mode", "type search a", "type search b",
                                      "type search <Esc>"}));
    EXPECT_FALSE(menu.isVisible());
    search->clear();
    EXPECT_EQ(replay(), QString());
    EXPECT_EQ(search->text(), "ab");
    EXPECT_FALSE(menu.isVisible());
}

TEST_F(RecordedPartsTest, AMenuThatAButtonGetsWhenItIsPressedIsOpenedBeforeItsEntryIsChosen)
{
    auto *button = add<LateMenuButton>("button", {0, 0, 100, 30});
    button->setPopupMode(QToolButton::InstantPopup);
    int chosen = 0;
    QObject::connect(button->late.addAction("Entry"), &QAction::triggered, [&chosen] { ++chosen; });
    record();
    click(in(button));
    click([button] {
        QMenu *menu = &button->late;
        const QRect line = menu->actionGeometry(menu->actions().first());
        return qMakePair(static_cast<QWidget *>(menu), line.center());
    });
    EXPECT_EQ(perform(), (QStringList{"click button", "click menu Entry"}));
    EXPECT_EQ(chosen, 1);
}

TEST_F(RecordedPartsTest, WhatIsDrawnFreehandIsDrawnAgainAndAFrameByItsCorners)
{
    auto *canvas = add<Canvas>("canvas", {0, 0, 200, 200});
    record();
    const QVector<QPoint> stroke{{20, 20}, {60, 40}, {100, 100}, {60, 160}, {20, 100}, {90, 30}};
    press(at(canvas, 20, 20));
    for (int i = 1; i < stroke.size(); ++i) {
        for (int step = 1; step <= 4; ++step) {
            const QPoint place = stroke[i - 1] + (stroke[i] - stroke[i - 1]) * step / 4;
            move(at(canvas, place.x(), place.y()), Qt::LeftButton);
        }
    }
    release(at(canvas, 90, 30));
    ASSERT_EQ(perform().size(), 1);
    EXPECT_EQ(performed.last()["via"], "60,40 100,100 60,160 20,100");
    const QPolygon before = canvas->stroke;
    canvas->stroke.clear();
    ASSERT_EQ(replay(), QString());
    for (const QPoint &corner : stroke)
        EXPECT_TRUE(canvas->stroke.contains(corner)) << corner.x() << ',' << corner.y();
    EXPECT_EQ(canvas->stroke.boundingRect(), before.boundingRect());

    // One that ends where it began.
    press(at(canvas, 20, 20));
    for (const QPoint place : {QPoint(90, 20), QPoint(90, 90), QPoint(21, 21)})
        move(at(canvas, place.x(), place.y()), Qt::LeftButton);
    release(at(canvas, 21, 21));
    EXPECT_EQ(perform().size(), 1);
    EXPECT_EQ(performed.last()["via"], "90,20 90,90");

    press(at(canvas, 10, 10));
    for (const QPoint place : {QPoint(60, 66), QPoint(110, 105)})
        move(at(canvas, place.x(), place.y()), Qt::LeftButton);
    release(at(canvas, 150, 150));
    ASSERT_EQ(perform().size(), 1);
    EXPECT_FALSE(performed.last().contains("via"));
}
