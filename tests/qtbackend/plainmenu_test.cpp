#include "qtbackend/plainmenu.h"

#include <QtTest>

#include <gtest/gtest.h>

using Morvex::PlainMenu;

TEST(PlainMenuTest, EachEntryIsChosenByTheMouseAndByTheKeys)
{
    QStringList chosen;
    const auto choose = [&chosen](const std::function<void(PlainMenu &)> &use) {
        chosen.clear();
        PlainMenu menu("Title");
        for (const char *name : {"first", "second"})
            menu.add(name, [&chosen, name] { chosen += name; });
        menu.popup(QPoint(50, 50));
        use(menu);
        EXPECT_EQ(menu.isVisible(), chosen.isEmpty());
        return chosen.join(' ');
    };
    const std::pair<double, const char *> places[] = {
        {0.2, ""}, {0.4, "first"}, {0.6, "first"}, {0.7, "second"}, {0.99, "second"}};
    for (const auto &[place, entry] : places)
        EXPECT_EQ(choose([y = place](PlainMenu &menu) {
                      QTest::mouseClick(&menu, Qt::LeftButton, {},
                                        QPoint(menu.width() / 2, int(menu.height() * y)));
                  }),
                  entry)
            << place;
    const std::pair<QList<Qt::Key>, const char *> keys[] = {
        {{Qt::Key_Return}, ""},
        {{Qt::Key_Down, Qt::Key_Return}, "first"},
        {{Qt::Key_Down, Qt::Key_Down, Qt::Key_Enter}, "second"},
        {{Qt::Key_Down, Qt::Key_Down, Qt::Key_Down, Qt::Key_Return}, "first"},
        {{Qt::Key_Up, Qt::Key_Return}, "second"},
        {{Qt::Key_Down, Qt::Key_Down, Qt::Key_Up, Qt::Key_Return}, "first"},
    };
    for (const auto &[pressed, entry] : keys)
        EXPECT_EQ(choose([&keysPressed = pressed](PlainMenu &menu) {
                      for (const Qt::Key key : keysPressed)
                          QTest::keyClick(&menu, key);
                  }),
                  entry);
}
