#pragma once

#include "qtbackend/scenekeys.h"
#include "qtbackend/scenemenus.h"
#include "qtbackend/scenemouse.h"
#include "qtbackend/scenepages.h"
#include "qtbackend/scenewheel.h"

class QEvent;
class QMouseEvent;
class QWheelEvent;
class QWindow;

namespace Morvex {

/// What the user does to items of Qt Quick, from the events of windows and widgets that have some,
/// before they are delivered. Each function returns false for what is not about items.
class SceneActions
{
public:
    explicit SceneActions(ActionReport &report)
        : m_report(report)
        , m_menus(report)
        , m_mouse(report, m_menus)
        , m_keys(report, m_menus)
        , m_pages(report)
        , m_wheel(report)
    {
    }

    /// A button or the wheel in a window or a widget.
    bool mouse(QObject *receiver, QEvent *event);
    /// The mouse is moved in a window.
    void move(const QMouseEvent &event) { m_mouse.move(event); }
    /// A key in a window, or one that is offered to it.
    bool pressKey(QWindow *window, const QKeyEvent &event);
    /// Something is dragged as data, and dropped at a place of the window.
    void dragData() { m_mouse.dragData(); }
    void dropData(QWindow *window, const QPoint &place);
    void releaseKey();
    bool shortcut(const QShortcutEvent &event);
    bool inputMethod(QObject *receiver, const QInputMethodEvent &event);

    /// Looks what has become of what was done last.
    void settle();

private:
    void press(QObject *root, const QMouseEvent &event);
    void release(const QMouseEvent &event);
    void turn(QObject *root, const QWheelEvent &event);

    ActionReport &m_report;
    SceneMenus m_menus;
    SceneMouse m_mouse;
    SceneKeys m_keys;
    ScenePages m_pages;
    SceneWheel m_wheel;
    // In which a key has done something.
    QPointer<QObject> m_keyRoot;
};

} // namespace Morvex
