#include "qtbackend/toolbarextension.h"

#include <QMainWindow>
#include <QMenu>
#include <QPointer>
#include <QToolBar>
#include <QToolButton>

namespace Morvex {
namespace {

// Null when the widget is in none.
QToolBar *barAround(const QWidget *widget)
{
    QWidget *parent = widget->parentWidget();
    while (parent && !qobject_cast<QToolBar *>(parent) && !parent->isWindow())
        parent = parent->parentWidget();
    return qobject_cast<QToolBar *>(parent);
}

// Null when the bar has room for all.
QToolButton *shownExtension(const QToolBar *bar)
{
    const auto buttons = bar->findChildren<QToolButton *>(QString(), Qt::FindDirectChildrenOnly);
    for (QToolButton *button : buttons) {
        if (isToolBarExtension(button) && button->isVisible())
            return button;
    }
    return nullptr;
}

// That of the bar that was unfolded last.
QPointer<QToolButton> unfolded;

// Unfolds the bar or folds it up, without the motion that this is shown with.
void push(QToolButton *extension)
{
    const QWidget *bar = extension->parentWidget();
    auto *window = qobject_cast<QMainWindow *>(bar->parentWidget());
    const bool isAnimated = window && window->isAnimated();
    if (isAnimated)
        window->setAnimated(false);
    extension->click();
    if (isAnimated)
        window->setAnimated(true);
}

// As when the mouse leaves the bar, which covers other things.
void leaveUnfolded(const QWidget *next)
{
    const QWidget *bar = unfolded && unfolded->isChecked() ? unfolded->parentWidget() : nullptr;
    if (!bar || (next && bar->isAncestorOf(next)))
        return;
    push(unfolded);
    unfolded = nullptr;
}

} // namespace

bool isInToolBar(const QWidget *widget)
{
    return barAround(widget);
}

bool isToolBarExtension(const QObject *object)
{
    return object && object->inherits("QToolBarExtension");
}

QWidget *overflowWidgetOf(const QWidget *extension, QAction *action)
{
    const auto *bar = qobject_cast<const QToolBar *>(extension->parentWidget());
    return bar ? bar->widgetForAction(action) : nullptr;
}

QObject *reachInToolBar(QObject *object)
{
    auto *widget = qobject_cast<QWidget *>(object);
    leaveUnfolded(widget);
    const QToolBar *bar = widget && !widget->isVisible() ? barAround(widget) : nullptr;
    QToolButton *extension = bar && bar->isVisible() ? shownExtension(bar) : nullptr;
    if (!extension)
        return object;
    auto *button = qobject_cast<QToolButton *>(widget);
    QAction *action = button ? button->defaultAction() : nullptr;
    if (!extension->menu()) {
        unfolded = extension;
        push(extension);
    } else if (action && extension->menu()->actions().contains(action)) {
        return action;
    }
    return object;
}

} // namespace Morvex
