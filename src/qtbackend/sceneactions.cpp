#include "qtbackend/sceneactions.h"

#include "qtbackend/actionreport.h"
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
        release(*static_cast<QMouseEvent *>(event));
    else if (event->type() == QEvent::Wheel && event->spontaneous())
        turn(root, *static_cast<QWheelEvent *>(event));
    else if (isPress && event->spontaneous())
        press(root, *static_cast<QMouseEvent *>(event));
    return true;
}

void SceneActions::press(QObject *root, const QMouseEvent &event)
{
    m_keys.beginPress(root);
    m_pages.begin(root, event.pos());
    m_mouse.press(root, event);
}

void SceneActions::release(const QMouseEvent &event)
{
    m_pages.end(m_mouse.isFar(event.pos()));
    m_mouse.release(event);
    if (QObject *root = m_mouse.rootOfAction())
        m_menus.noteAction(root);
}

void SceneActions::turn(QObject *root, const QWheelEvent &event)
{
    m_wheel.turn(root, event);
    m_pages.beginWheel(root, event.position().toPoint());
    m_pages.end(true);
}

void SceneActions::dropData(QWindow *window, const QPoint &place)
{
    m_mouse.dropData(sceneRootOf(window), place);
}

bool SceneActions::pressKey(QWindow *window, const QKeyEvent &event)
{
    QObject *root = sceneForKeys(window);
    m_pages.settle(true);
    const int before = m_report.lastNumber();
    if (root)
        m_keys.press(root, event);
    m_keyRoot = m_report.lastNumber() > before ? root : nullptr;
    if (m_keyRoot)
        m_menus.noteAction(root);
    return root;
}

// Some buttons are pushed only by that.
void SceneActions::releaseKey()
{
    m_keys.release();
    if (m_keyRoot)
        m_menus.noteAction(m_keyRoot);
    m_keyRoot = nullptr;
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
    m_menus.settle();
}

} // namespace Morvex
