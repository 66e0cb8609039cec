#include "qtbackend/scenechanges.h"

#include "qtbackend/sceneaccess.h"

#include <QGuiApplication>
#include <QWindow>

namespace Morvex {

void SceneChanges::settle()
{
    m_shown.clear();
    m_usable.clear();
    const SceneAccess *access = SceneAccess::self();
    const QWindowList windows = access ? QGuiApplication::allWindows() : QWindowList();
    for (QWindow *window : windows) {
        if (const QObject *root = access->rootOf(window))
            add(root);
    }
    m_isSettled = true;
}

void SceneChanges::add(const QObject *item)
{
    const SceneAccess &access = *SceneAccess::self();
    if (!access.isShown(item))
        return;
    m_shown.insert(item);
    if (access.isUsable(item))
        m_usable.insert(item);
    const QObjectList children = access.childrenOf(item);
    for (const QObject *child : children)
        add(child);
}

QStringList SceneChanges::of(const QObject *item) const
{
    QStringList properties;
    if (m_isSettled && !m_shown.contains(item))
        properties += QStringLiteral("visible");
    if (m_isSettled && !m_usable.contains(item) && m_shown.contains(item))
        properties += QStringLiteral("enabled");
    return properties;
}

} // namespace Morvex
