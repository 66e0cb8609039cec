#include "qtbackend/menuitem.h"

#include "qtbackend/inputsequence.h"
#include "qtbackend/menubutton.h"
#include "qtbackend/mouseevents.h"
#include "qtbackend/whyblocked.h"

#include <QMenu>
#include <QMenuBar>
#include <QToolBar>

namespace Morvex {
namespace {

const int maxOpeningMs = 1000;

QList<QAction *> actionsOf(QWidget *owner)
{
    auto *menu = qobject_cast<QMenu *>(owner);
    // Some menus are filled when they are about to be shown.
    if (menu && menu->isEmpty() && !menu->isVisible())
        Q_EMIT menu->aboutToShow();
    return owner->actions();
}

QStringList textsOf(const QList<QAction *> &actions)
{
    QStringList texts;
    for (const QAction *action : actions)
        texts += action->isSeparator() ? QString() : shownText(action->text());
    return texts;
}

QRect placeOf(QWidget *owner, QAction *action)
{
    if (auto *menu = qobject_cast<QMenu *>(owner))
        return menu->actionGeometry(action);
    if (auto *bar = qobject_cast<QMenuBar *>(owner))
        return bar->actionGeometry(action);
    auto *bar = qobject_cast<QToolBar *>(owner);
    const QWidget *button = bar ? bar->widgetForAction(action) : nullptr;
    if (!bar && menuOfButton(owner))
        return owner->rect();
    return button && button->isVisible() ? button->geometry() : QRect();
}

// Null where it is no button that has the menu.
QWidget *buttonOf(QWidget *owner, QAction *action)
{
    const auto *bar = qobject_cast<QToolBar *>(owner);
    QWidget *button = bar ? bar->widgetForAction(action) : owner;
    return menuOfButton(button) ? button : nullptr;
}

// A click on the title of an open menu would close it.
QString openMenu(QWidget *owner, QAction *action)
{
    if (!owner || !action || !action->menu())
        return QStringLiteral("the menu no longer exists");
    if (action->menu()->isVisible())
        return {};
    if (QWidget *button = buttonOf(owner, action)) {
        openMenuOf(button);
        return {};
    }
    const MouseSpot spot = MouseSpot::of(owner, placeOf(owner, action).center());
    endClicks();
    moveMouse(spot, Qt::NoButton, Qt::NoModifier);
    pressMouse(spot, Qt::LeftButton, Qt::NoModifier);
    releaseMouse(spot, Qt::LeftButton, Qt::NoModifier);
    return {};
}

} // namespace

MenuItem::MenuItem(QWidget *owner, const ItemSelector &selector)
    : m_owner(owner)
    , m_selector(selector)
{
    find();
}

// Again for each level when its menu has been opened: it may have been filled by then.
void MenuItem::find()
{
    m_path.clear();
    m_places.clear();
    ItemPath path(m_selector);
    QWidget *place = m_owner;
    if (QMenu *menu = menuOfButton(m_owner)) {
        m_path.emplace_back(menu->menuAction());
        m_places.emplace_back(place);
        place = menu;
    }
    while (!path.isAtEnd()) {
        const QList<QAction *> actions = place ? actionsOf(place) : QList<QAction *>();
        const int index = path.next(textsOf(actions));
        if (index < 0)
            break;
        m_path.emplace_back(actions.at(index));
        m_places.emplace_back(place);
        place = actions.at(index)->menu();
    }
    m_error = path.error();
}

QString MenuItem::text() const
{
    return action() ? shownText(action()->text()) : QString();
}

QVariantMap MenuItem::properties() const
{
    QVariantMap properties;
    const QAction *action = this->action();
    if (!action)
        return properties;
    properties[QStringLiteral("enabled")] = action->isEnabled();
    properties[QStringLiteral("visible")] = action->isVisible();
    properties[QStringLiteral("toolTip")] = action->toolTip();
    properties[QStringLiteral("shortcut")] = action->shortcut().toString();
    if (action->isCheckable())
        properties[QStringLiteral("checked")] = action->isChecked();
    if (action->menu())
        properties[QStringLiteral("count")] = action->menu()->actions().size();
    return properties;
}

QString MenuItem::whyBlocked() const
{
    if (!action())
        return QStringLiteral("the entry no longer exists");
    const QWidget *first = m_places.front();
    if (first && !first->isEnabled())
        return QStringLiteral("the widget is disabled");
    // Some are enabled when their menu is about to be shown.
    const bool isToBeOpened = m_path.size() > 1 && canBeSeen() && !widget()->isVisible();
    return Morvex::whyBlocked(isToBeOpened ? m_path.front().data() : action());
}

bool MenuItem::canBeSeen() const
{
    const QWidget *first = m_places.front();
    return first && first->isVisible() && m_path.front() &&
           first->rect().contains(placeOf(m_places.front(), m_path.front()).center());
}

void MenuItem::reveal(InputSequence &input)
{
    const auto self = shared_from_this();
    for (std::size_t level = 0; level + 1 < m_path.size(); ++level) {
        input.add([self, level] { return self->open(level); });
        input.waitUntil(
            [self, level] {
                const QAction *action = self->m_path.at(level);
                return !action || !action->menu() || action->menu()->isVisible();
            },
            maxOpeningMs);
        input.add([self] {
            self->find();
            if (!self->m_error.isEmpty())
                self->conceal();
            return self->m_error;
        });
    }
}

QString MenuItem::open(std::size_t level)
{
    QString error;
    if (level < m_path.size())
        error = openMenu(m_places[level], m_path[level]);
    return error;
}

void MenuItem::conceal()
{
    for (const QPointer<QWidget> &place : m_places) {
        if (place && place != m_owner)
            place->close();
    }
}

QRect MenuItem::place() const
{
    return widget() && action() && widget()->isVisible() ? placeOf(widget(), action()) : QRect();
}

} // namespace Morvex
