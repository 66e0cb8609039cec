#pragma once

#include "qtbackend/scenekeys.h"
#include "qtbackend/scenemouse.h"

class QEvent;
class QWindow;

namespace Morvex {

/// What the user does to items of Qt Quick, from the events of windows and widgets that have some,
/// before they are delivered. Each function returns false for what is not about items.
class SceneActions
{
public:
    explicit SceneActions(ActionReport &report)
        : m_mouse(report)
        , m_keys(report)
    {
    }

    /// A button in a window or a widget.
    bool mouse(QObject *receiver, QEvent *event);
    /// A key in a window, or one that is offered to it.
    bool pressKey(QWindow *window, const QKeyEvent &event);
    void releaseKey() { m_keys.release(); }
    bool shortcut(const QShortcutEvent &event);
    bool inputMethod(QObject *receiver, const QInputMethodEvent &event);

    /// Looks what has become of what was done last.
    void settle();

private:
    SceneMouse m_mouse;
    SceneKeys m_keys;
};

} // namespace Morvex
