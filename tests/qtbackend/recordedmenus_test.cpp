#include "qtbackend/recordinguser.h"

using namespace MorvexTest;

class RecordedMenusTest : public RecordingUserTest
{
};

TEST_F(RecordedMenusTest, AnEntryOfTheMenuOfAButtonIsChosenWithoutPlaces)
{
    auto *bar = add<QToolBar>("bar", {0, 0, 300, 40});
    QMenu menu;
    QStringList chosen;
    for (const char *name : {"Save as", "Export"})
        QObject::connect(menu.addAction(name), &QAction::triggered, &menu,
                         [&chosen, name] { chosen += name; });
    QMenu *more = menu.addMenu("More");
    QObject::connect(more->addAction("All"), &QAction::triggered, &menu, [&] { chosen += "All"; });
    QAction *save = bar->addAction("Save");
    save->setMenu(&menu);
    QObject::connect(save, &QAction::triggered, &menu, [&chosen] { chosen += "Save"; });
    auto *tool = qobject_cast<QToolButton *>(bar->widgetForAction(save));
    tool->setObjectName("tool");
    tool->setPopupMode(QToolButton::MenuButtonPopup);
    auto *push = add<QPushButton>("push", {0, 100, 100, 30});
    QMenu other;
    other.addActions(menu.actions());
    push->setMenu(&other);
    // Which of the two has opened the menu shows in that it is down.
    auto *twin = add<QToolButton>("twin", {0, 200, 100, 30});
    twin->setMenu(&menu);
    twin->setPopupMode(QToolButton::InstantPopup);
    record();
    const auto entry = [](QMenu *in, int index) {
        return [in, index] {
            return qMakePair(static_cast<QWidget *>(in),
                             in->actionGeometry(in->actions().at(index)).center());
        };
    };
    click(at(push, 50, 15));
    press([] { return qMakePair(QApplication::activePopupWidget(), QPoint(-30, -30)); });
    release(at(&window, 400, 400));
    click(at(push, 50, 15));
    click(entry(&other, 1));
    click(at(tool, 5, 15));
    click(
        [tool] { return qMakePair(static_cast<QWidget *>(tool), QPoint(tool->width() - 4, 15)); });
    click(entry(&menu, 0));
    click(at(twin, 50, 15));
    click(entry(&menu, 1));
    EXPECT_EQ(perform(), (QStringList{"click push Export", "click tool", "click tool Save as",
                                      "click twin Export"}));
    const QStringList before = chosen;
    EXPECT_EQ(before, (QStringList{"Export", "Save", "Save as", "Export"}));
    chosen.clear();
    EXPECT_EQ(replay(), QString());
    EXPECT_EQ(chosen, before);
    tool->setPopupMode(QToolButton::DelayedPopup);
    EXPECT_EQ(call("useItem", "tool", {"click", QVariantList{"More/All"}}), QString());
    EXPECT_EQ(chosen.last(), "All");
    push->setEnabled(false);
    EXPECT_EQ(call("useItem", "push", {"click", QVariantList{"Save as"}}),
              "the widget is disabled");
}

TEST_F(RecordedMenusTest, ALinkIsClickedByItsText)
{
    const QString html = "See <a href='a'>the <b>first</b></a> or<br><a href='b'>another</a>.";
    QStringList followed;
    const auto note = [&followed](const QString &where) { followed += where; };
    auto *label = add<QLabel>("label", {0, 0, 600, 100});
    label->setFrameShape(QFrame::Box);
    label->setAlignment(Qt::AlignRight | Qt::AlignBottom);
    label->setText(html);
    QObject::connect(label, &QLabel::linkActivated, note);
    auto *browser = add<QTextBrowser>("browser", {0, 120, 300, 100});
    browser->setHtml(html + QString("<br>").repeated(50) + "<a href='c'>last</a>");
    browser->setOpenLinks(false);
    QObject::connect(browser, &QTextBrowser::anchorClicked,
                     [&note](const QUrl &url) { note(url.toString()); });
    record();
    for (const char *link : {"the first", "another"})
        EXPECT_EQ(call("useItem", "label", {"click", QVariantList{link}}), QString());
    for (const char *link : {"another", "last"})
        EXPECT_EQ(call("useItem", "browser", {"click", QVariantList{link}}), QString());
    EXPECT_EQ(followed, (QStringList{"a", "b", "b", "c"}));
    EXPECT_EQ(perform(), (QStringList{"click label the first", "click label another",
                                      "click browser another", "click browser last"}));
}

TEST_F(RecordedMenusTest, AContextMenuThatAClickClosesIsClosedAgain)
{
    auto *button = add<QPushButton>("button", {0, 0, 100, 30});
    button->setContextMenuPolicy(Qt::ActionsContextMenu);
    auto *title = new QAction("Title", button);
    title->setSeparator(true);
    button->addActions({title, new QAction("Entry", button)});
    record();
    QMenu *menu = nullptr;
    click(in(button), Qt::RightButton);
    for (int i = 0; i < 10; ++i)
        move([&menu, i] {
            menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
            return qMakePair(static_cast<QWidget *>(menu), QPoint(5 + i, 30));
        });
    click([&menu] {
        const QRect line = menu->actionGeometry(menu->actions().first());
        return qMakePair(static_cast<QWidget *>(menu), line.center());
    });
    click(in(button));
    const QStringList recorded = perform();
    EXPECT_EQ(recorded.filter("<Esc>").size(), 1) << recorded.join(", ").toStdString();
    EXPECT_EQ(recorded.last(), "click button");
}
