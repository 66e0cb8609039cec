#include "qtbackend/menupath.h"

#include "qtbackend/itempath.h"
#include "qtbackend/menubutton.h"
#include "qtbackend/toolbarextension.h"

#include <QAction>
#include <QApplication>
#include <QMenu>
#include <QMenuBar>

#include <algorithm>

namespace Morvex {
namespace {

// What the menu was opened from: another menu, a menu bar or a button; null when it was none.
QWidget *opener(const QMenu *menu)
{
    const QAction *title = menu->menuAction();
    const QList<QWidget *> places = title->associatedWidgets();
    for (QWidget *place : places) {
        const auto *above = qobject_cast<QMenu *>(place);
        if (above && above->isVisible() && above->activeAction() == title)
            return place;
        const auto *bar = qobject_cast<QMenuBar *>(place);
        if (bar && bar->isVisible() && bar->activeAction() == title)
            return place;
    }
    QWidget *button = nullptr;
    for (QWidget *place : places) {
        const bool isCandidate = menuOfButton(place) == menu && place->isVisible();
        if (isCandidate && (!button || isPressed(place)))
            button = place;
    }
    return button;
}

// From 1 on, among the entries with the same text; 0 when it is the only one.
int occurrenceOf(const QWidget *menu, const QAction *action)
{
    const QList<QAction *> actions = menu->actions();
    int count = 0;
    int place = 0;
    for (const QAction *each : actions) {
        const bool isAlike =
            !each->isSeparator() && shownText(each->text()) == shownText(action->text());
        count += isAlike ? 1 : 0;
        if (each == action)
            place = count;
    }
    return count > 1 ? place : 0;
}

// The way to the menu, and then through the texts; the action is that with which they begin, if
// any.
MenuPath wayThrough(QWidget *menu, QStringList texts, QAction *first, const QMenu *before)
{
    MenuPath path;
    path.owner = menu;
    while (const auto *open = qobject_cast<QMenu *>(path.owner)) {
        QWidget *above = open == before ? nullptr : opener(open);
        if (!above)
            break;
        if (!menuOfButton(above)) {
            first = open->menuAction();
            texts.prepend(shownText(first->text()));
        }
        path.owner = above;
    }
    QWidget *button =
        first && isToolBarExtension(path.owner) ? overflowWidgetOf(path.owner, first) : nullptr;
    if (button) {
        path.owner = button;
        texts.removeFirst();
    }
    if (!texts.isEmpty())
        path.item = {itemPathOf(texts)};
    return path;
}

} // namespace

MenuPath menuPathOf(QWidget *menu, QAction *action, const QMenu *open)
{
    MenuPath path = wayThrough(menu, {shownText(action->text())}, action, open);
    const int occurrence = occurrenceOf(menu, action);
    if (occurrence > 0 && !path.item.isEmpty())
        path.item += QVariantMap{{QStringLiteral("occurrence"), occurrence}};
    return path;
}

MenuPath menuPathTo(QMenu *menu, const QMenu *open)
{
    return wayThrough(menu, {}, nullptr, open);
}

QMenu *firstMenuOf(QMenu *menu)
{
    QWidget *first = menu;
    while (const auto *open = qobject_cast<QMenu *>(first)) {
        QWidget *above = opener(open);
        if (!above)
            break;
        first = above;
    }
    return qobject_cast<QMenu *>(first);
}

bool isInOpenMenu(const QPoint &globalPlace)
{
    const QWidgetList windows = QApplication::topLevelWidgets();
    return std::any_of(windows.begin(), windows.end(), [&globalPlace](const QWidget *window) {
        return qobject_cast<const QMenu *>(window) && window->isVisible() &&
               window->frameGeometry().contains(globalPlace);
    });
}

} // namespace Morvex
