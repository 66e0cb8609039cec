#include "qtbackend/menubutton.h"

#include "qtbackend/mousetarget.h"

#include <QAction>
#include <QPushButton>
#include <QStyle>
#include <QStyleOption>
#include <QToolButton>

namespace Morvex {
namespace {

// Protected members of the toolkit's class.
struct ToolButtonAccess : QToolButton
{
    static QStyleOptionToolButton optionOf(const QToolButton *button)
    {
        QStyleOptionToolButton option;
        (button->*(&ToolButtonAccess::initStyleOption))(&option);
        return option;
    }
};

bool hasArrow(const QToolButton *button)
{
    return button && button->popupMode() == QToolButton::MenuButtonPopup && menuOfButton(button);
}

QRect arrowOf(const QToolButton *button)
{
    const QStyleOptionToolButton look = ToolButtonAccess::optionOf(button);
    return button->style()->subControlRect(QStyle::CC_ToolButton, &look, QStyle::SC_ToolButtonMenu,
                                           button);
}

} // namespace

QMenu *menuOfButton(const QObject *button)
{
    if (const auto *push = qobject_cast<const QPushButton *>(button))
        return push->menu();
    const auto *tool = qobject_cast<const QToolButton *>(button);
    if (!tool)
        return nullptr;
    const QAction *action = tool->defaultAction();
    return tool->menu() || !action ? tool->menu() : action->menu();
}

bool opensMenu(const QAbstractButton *button, const QPoint &place)
{
    const auto *tool = qobject_cast<const QToolButton *>(button);
    return opensMenu(button) || (hasArrow(tool) && arrowOf(tool).contains(place));
}

bool opensMenu(const QAbstractButton *button)
{
    const auto *tool = qobject_cast<const QToolButton *>(button);
    return menuOfButton(button) && (!tool || tool->popupMode() == QToolButton::InstantPopup);
}

bool isPressed(const QWidget *button)
{
    const auto *tool = qobject_cast<const QToolButton *>(button);
    if (tool && ToolButtonAccess::optionOf(tool).state & QStyle::State_Sunken)
        return true;
    const auto *any = qobject_cast<const QAbstractButton *>(button);
    return any && any->isDown();
}

void openMenuOf(QWidget *button)
{
    auto *tool = qobject_cast<QToolButton *>(button);
    const QPoint place = hasArrow(tool) ? arrowOf(tool).center() : button->rect().center();
    // One that opens when it is held for a while.
    if (tool && tool->popupMode() == QToolButton::DelayedPopup)
        tool->showMenu();
    else
        clickWhereFree(button, place);
}

} // namespace Morvex
