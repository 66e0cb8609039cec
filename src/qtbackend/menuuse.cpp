#include "qtbackend/menuuse.h"

#include "qtbackend/actionreport.h"
#include "qtbackend/menupath.h"

#include <QMenuBar>

namespace Morvex {
namespace {

QVariantMap escape()
{
    return {{QStringLiteral("text"), QStringLiteral("<Esc>")}};
}

} // namespace

void MenuUse::enter(const QWidget *widget)
{
    auto *menu = qobject_cast<QMenu *>(widget->window());
    if (!menu || menu == widget || menu == m_entered)
        return;
    const MenuPath path = menuPathTo(menu, openFor(menu));
    m_entered = menu;
    QVariantMap more;
    if (!path.item.isEmpty())
        more[QStringLiteral("item")] = path.item;
    if (path.owner != menu)
        m_report.add(QStringLiteral("click"), path.owner, more);
}

QMenu *MenuUse::openFor(QMenu *menu) const
{
    return m_entered && m_entered->isVisible() ? m_entered.data() : firstMenuOf(menu);
}

void MenuUse::noteShown(const QObject *object)
{
    auto *menu = qobject_cast<QMenu *>(const_cast<QObject *>(object));
    if (!menu || qobject_cast<QMenuBar *>(menu->parentWidget()) ||
        (m_shown && m_shown != menu && m_shown->isVisible()))
        return;
    m_shown = menu;
    m_shownName = m_report.nameOf(menu);
}

QString MenuUse::nameOf(const QWidget *owner) const
{
    return owner == m_shown ? m_shownName : m_report.nameOf(owner);
}

int MenuUse::choose(const MenuPath &path)
{
    return m_report.add(QStringLiteral("click"), nameOf(path.owner), path.owner,
                        {{QStringLiteral("item"), path.item}});
}

void MenuUse::press(QMenu *menu, const QPoint &globalPlace)
{
    QMenu *first = openFor(menu);
    m_pressed = {};
    if (first && !isInOpenMenu(globalPlace))
        m_report.add(QStringLiteral("type"), nameOf(first), first, escape());
    else if (first)
        m_pressed = {first, nameOf(first)};
}

// Without a choice.
void MenuUse::settlePress()
{
    if (!m_pressed.name.isEmpty() && !(m_pressed.menu && m_pressed.menu->isVisible()))
        m_report.add(QStringLiteral("type"), m_pressed.name, escape());
    m_pressed = {};
}

void MenuUse::settle()
{
    if (m_entered && !m_entered->isVisible())
        m_entered = nullptr;
}

} // namespace Morvex
