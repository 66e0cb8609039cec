#include "qtbackend/recordinguser.h"

using namespace MorvexTest;

class RecordedValuesTest : public RecordingUserTest
{
};

TEST_F(RecordedValuesTest, TheWheelOverAValueChangesItAgainAndScrollingIsLeftOut)
{
    add<QSpinBox>("count", {0, 0, 100, 30});
    auto *size = add<QComboBox>("size", {0, 40, 100, 30});
    size->addItems({"Small", "Medium", "Large"});
    auto *tabs = add<QTabWidget>("tabs", {0, 80, 300, 100});
    for (const char *name : {"One", "Two", "Three"})
        tabs->addTab(new QWidget, name);
    auto *level = add<QSlider>("level", {0, 200, 20, 100});
    auto *list = add<QListWidget>("list", {100, 200, 100, 100});
    for (int i = 0; i < 100; ++i)
        list->addItem(QString::number(i));
    record();
    turnWheel("count", -1);
    turnWheel("count", -2);
    turnWheel("size", 1);
    turnWheel("size", 1);
    turnWheel("qt_tabwidget_tabbar", 1);
    turnWheel("level", -2);
    turnWheel("list", 2);
    EXPECT_EQ(perform(), (QStringList{"set count value 3", "click size Large", "click tabs Two",
                                      "set level value " + QString::number(level->value())}));
    EXPECT_GT(level->value(), 0);
}

TEST_F(RecordedValuesTest, ASliderIsMovedAgainWithAllThatTheApplicationHearsOfIt)
{
    auto *level = add<QSlider>("level", {0, 0, 30, 300});
    auto *count = add<QSpinBox>("count", {100, 0, 100, 30});
    auto *name = add<QLineEdit>("name", {100, 40, 100, 30});
    QStringList heard;
    const auto note = [&heard](const char *what) { return [&heard, what] { heard += what; }; };
    QObject::connect(level, &QSlider::sliderPressed, note("pressed"));
    QObject::connect(level, &QSlider::sliderMoved, note("moved"));
    QObject::connect(level, &QSlider::actionTriggered, note("action"));
    QObject::connect(level, &QSlider::sliderReleased, note("released"));
    QObject::connect(count, &QSpinBox::editingFinished, note("finished"));
    record();
    QStyleOptionSlider look;
    look.initFrom(level);
    look.orientation = Qt::Vertical;
    look.maximum = 99;
    look.upsideDown = true;
    const QPoint handle =
        level->style()
            ->subControlRect(QStyle::CC_Slider, &look, QStyle::SC_SliderHandle, level)
            .center();
    drag(at(level, handle.x(), handle.y()), at(level, handle.x(), 100));
    click(at(count, 95, 5));
    click(in(name));
    const QStringList recorded = perform();
    const int value = level->value();
    EXPECT_GT(value, 10);
    EXPECT_EQ(recorded, (QStringList{QString("set level value %1").arg(value), "set count value 1",
                                     "click name"}));
    heard.removeDuplicates();
    EXPECT_EQ(heard, (QStringList{"pressed", "moved", "action", "released", "finished"}));
    heard.clear();
    level->setValue(0);
    count->setValue(0);
    name->clearFocus();
    EXPECT_EQ(replay(), QString());
    heard.removeDuplicates();
    EXPECT_EQ(heard, (QStringList{"pressed", "moved", "action", "released", "finished"}));
    EXPECT_EQ(level->value(), value);
    EXPECT_EQ(count->value(), 1);
}

TEST_F(RecordedValuesTest, ADateIsSetWhateverPartOfItWasChanged)
{
    auto *day = add<QDateEdit>("day", {0, 0, 150, 30});
    auto *moment = add<QDateTimeEdit>("moment", {0, 40, 200, 30});
    day->setCalendarPopup(true);
    day->setDate({2026, 11, 22});
    moment->setDateTime({QDate(2026, 11, 22), QTime(10, 30)});
    moment->setCurrentSection(QDateTimeEdit::MinuteSection);
    record();
    click(at(moment, 195, 5));
    click(at(moment, 195, 5));
    click(at(day, 145, 15));
    click([day] {
        auto *view = day->calendarWidget()->findChild<QTableView *>();
        return qMakePair(view->viewport(), view->visualRect(view->model()->index(3, 3)).center());
    });
    const QStringList recorded = perform();
    EXPECT_NE(day->date(), QDate(2026, 11, 22));
    EXPECT_EQ(recorded, (QStringList{"set moment dateTime 2026-11-22T10:31:00",
                                     "set moment dateTime 2026-11-22T10:32:00",
                                     "set day date " + day->date().toString(Qt::ISODate)}));
    // Nothing else gets out of the application.
    for (const QVariantMap &action : qAsConst(performed))
        EXPECT_TRUE(action["what"] != "set" || action["value"].userType() == QMetaType::QString);
}
