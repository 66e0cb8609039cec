#include "qtbackend/buttonsup.h"

#include <QAbstractButton>
#include <QApplication>
#include <QSet>

namespace Morvex {
namespace {

QSet<const QWidget *> buttonsDown()
{
    QSet<const QWidget *> down;
    for (const QWidget *widget : QApplication::allWidgets()) {
        const auto *button = qobject_cast<const QAbstractButton *>(widget);
        if (button && button->isDown())
            down.insert(button);
    }
    return down;
}

} // namespace

std::function<bool()> buttonsUpAgain()
{
    const QSet<const QWidget *> before = buttonsDown();
    return [before] { return before.contains(buttonsDown()); };
}

} // namespace Morvex
