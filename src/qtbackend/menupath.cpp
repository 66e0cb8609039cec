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

} // namespace

MenuPath menuPathOf(QWidget *menu, QAction *action)
{
    MenuPath path;
    QStringList texts{shownText(action->text())};
    // Of the menu that was opened first.
    QAction *first = action;
    path.owner = menu;
    while (const auto *open = qobject_cast<QMenu *>(path.owner)) {
        QWidget *above = opener(open);
        if (!above)
            break;
        if (!menuOfButton(above)) {
            first = open->menuAction();
            texts.prepend(shownText(first->text()));
        }
        path.owner = above;
    }
    if (QWidget *button =
            isToolBarExtension(path.owner) ? widgetBehindExtension(path.owner, first) : nullptr) {
        path.owner = button;
        texts.removeFirst();
    }
    if (!texts.isEmpty())
        path.item = {itemPathOf(texts)};
    return path;
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
