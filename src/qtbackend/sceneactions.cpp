#include "qtbackend/sceneactions.h"

#include "qtbackend/objecttree.h"

#include <QApplication>
#include <QMouseEvent>
#include <QWindow>

namespace Morvex {
namespace {

// What gets the keys of the window; null where that is a widget.
QObject *sceneForKeys(QWindow *window)
{
    QWidget *focus = QApplication::focusWidget();
    if (QObject *root = window ? sceneRootOf(window) : nullptr)
        return root;
    return focus && !QApplication::activePopupWidget() ? sceneRootOf(focus) : nullptr;
}

} // namespace

bool SceneActions::mouse(QObject *receiver, QEvent *event)
{
    QObject *root = sceneRootOf(receiver);
    if (!root)
        return false;
    const bool isRelease = event->type() == QEvent::MouseButtonRelease;
    const bool isPress =
        event->type() == QEvent::MouseButtonPress || event->type() == QEvent::MouseButtonDblClick;
    if (isRelease && event->spontaneous())
        m_mouse.release(static_cast<QMouseEvent *>(event)->pos());
    else if (isPress && event->spontaneous())
        m_mouse.press(root, *static_cast<QMouseEvent *>(event));
    return true;
}

bool SceneActions::pressKey(QWindow *window, const QKeyEvent &event)
{
    QObject *root = sceneForKeys(window);
    if (root)
        m_keys.press(root, event);
    return root;
}

bool SceneActions::shortcut(const QShortcutEvent &event)
{
    QObject *root = sceneForKeys(QGuiApplication::focusWindow());
    if (root)
        m_keys.shortcut(root, event);
    return root;
}

bool SceneActions::inputMethod(QObject *receiver, const QInputMethodEvent &event)
{
    if (isSceneItem(receiver))
        m_keys.inputMethod(receiver, event);
    return isSceneItem(receiver) || (receiver->isWidgetType() && sceneRootOf(receiver));
}

void SceneActions::settle()
{
    m_mouse.settle();
    m_keys.settle();
}

} // namespace Morvex
