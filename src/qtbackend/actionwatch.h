#pragma once

#include "qtbackend/actionreport.h"
#include "qtbackend/focusmove.h"
#include "qtbackend/keyactions.h"
#include "qtbackend/menuuse.h"
#include "qtbackend/mouseactions.h"
#include "qtbackend/pointmenu.h"
#include "qtbackend/sceneactions.h"
#include "qtbackend/wheelactions.h"

#include <QObject>

class QDropEvent;
class QKeyEvent;
class QWindow;

namespace Morvex {

/// Reports what the user does, from its construction on: before the application gets the event,
/// which may end it. The application gets all events as ever. What the application does by itself,
/// what only scrolls and what only moves the focus are left out.
class ActionWatch : public QObject
{
public:
    ActionWatch(QtModel &model, const ActionReport::Sink &sink);

protected:
    bool eventFilter(QObject *receiver, QEvent *event) override;

private:
    bool isInput(QObject *receiver, QEvent *event);
    void filterForWindow(QWindow *window, QEvent *event);
    void filterForWidget(QWidget *widget, QEvent *event);
    void key(QWindow *window, const QKeyEvent &event);
    void drop(QWindow *window, const QDropEvent &event);
    void pressKey(const QKeyEvent &event);
    void shortcut(QObject *owner, const QShortcutEvent &event);
    void inputMethod(QObject *receiver, const QInputMethodEvent &event);
    bool isForPoints(QObject *receiver, QEvent *event);
    void settle();
    void settleOnceHandled();
    void beFirst();

    ActionReport m_report;
    FocusMove m_focus;
    MenuUse m_menus;
    MouseActions m_mouse;
    WheelActions m_wheel;
    KeyActions m_keys;
    SceneActions m_scenes;
    PointMenu m_points;
    bool m_isSettling = false;
    // The number of a key that was offered, and that has come to nothing yet; else 0.
    int m_heldKey = 0;
};

} // namespace Morvex
