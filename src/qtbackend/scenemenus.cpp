#include "qtbackend/scenemenus.h"

#include "qtbackend/actionreport.h"
#include "qtbackend/sceneaccess.h"

#include <algorithm>
#include <utility>

namespace Morvex {
namespace {

bool isTitle(const QObject *item)
{
    return item->inherits("QQuickMenuBarItem");
}

QObject *objectIn(const QObject *object, const char *property)
{
    return object->property(property).value<QObject *>();
}

// The entry or title that opens the menu; null for one that something else opens.
QObject *openerOf(const QObject *menu)
{
    QObject *opener = objectIn(menu, "parent");
    if (!opener)
        return nullptr;
    const char *opened = isTitle(opener) ? "menu" : "subMenu";
    return objectIn(opener, opened) == menu ? opener : nullptr;
}

bool isOneOf(const std::vector<QPointer<QObject>> &objects, const QObject *object)
{
    return std::find(objects.begin(), objects.end(), object) != objects.end();
}

} // namespace

void SceneMenus::noteAction(QObject *root)
{
    m_root = root;
    m_isToBeSeen = true;
}

void SceneMenus::settle()
{
    const QObjectList open = m_root ? SceneAccess::self()->popupsIn(m_root) : QObjectList();
    if (std::exchange(m_isToBeSeen, false))
        m_known.assign(open.begin(), open.end());
    m_known.erase(std::remove_if(m_known.begin(), m_known.end(),
                                 [&open](QObject *menu) { return !open.contains(menu); }),
                  m_known.end());
}

QObjectList SceneMenus::missingOpeners(const QObject *entry) const
{
    QObjectList openers;
    const QObject *menu = entry->inherits("QQuickMenuItem") ? objectIn(entry, "menu") : nullptr;
    while (menu && !isOneOf(m_known, menu)) {
        QObject *opener = openerOf(menu);
        if (opener)
            openers.prepend(opener);
        menu = opener && !isTitle(opener) ? objectIn(opener, "menu") : nullptr;
    }
    return openers;
}

// The pointer opens the next menu of a bar once one of them is open; a click would close it again.
void SceneMenus::report(const QObject *opener)
{
    if (!isTitle(opener))
        m_report.add(QStringLiteral("click"), opener);
    else if (m_titleClick > 0 && m_titleClick == m_report.lastNumber())
        m_report.replace(m_titleClick, QStringLiteral("click"), opener);
    else
        m_report.add(QStringLiteral("hover"), opener);
}

void SceneMenus::reportOpeners(QObject *entry)
{
    const QObjectList openers = missingOpeners(entry);
    if (openers.isEmpty())
        return;
    // They open what was waited for.
    m_report.changes().settle();
    for (const QObject *opener : openers)
        report(opener);
}

void SceneMenus::noteClick(const QObject *item, int number)
{
    m_titleClick = isTitle(item) ? number : 0;
}

} // namespace Morvex
