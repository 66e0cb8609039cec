#pragma once

#include "qtbackend/actionreport.h"
#include "qtbackend/keyactions.h"
#include "qtbackend/mouseactions.h"
#include "qtbackend/pointmenu.h"
#include "qtbackend/scenekeys.h"
#include "qtbackend/scenemouse.h"

#include <QObject>

class QWindow;

namespace Morvex {

/// Reports what the user does, from its construction on: before the application gets the event,
/// which may end it. The application gets all events as ever. What the application does by itself,
/// the wheel and what only moves the focus are left out.
class ActionWatch : public QObject
{
public:
    ActionWatch(QtModel &model, const ActionReport::Sink &sink);

protected:
    bool eventFilter(QObject *receiver, QEvent *event) override;

private:
    void filterForWindow(QWindow *window, QEvent *event);
    void filterForScene(QObject *root, QEvent *event);
    void pressKey(QWindow *window, const QKeyEvent &event);
    void shortcut(QObject *owner, const QShortcutEvent &event);
    void inputMethod(QObject *receiver, const QInputMethodEvent &event);
    void filterForWidget(QWidget *widget, QEvent *event);
    bool isForPoints(QObject *receiver, QEvent *event);
    void settle();

    ActionReport m_report;
    MouseActions m_mouse;
    KeyActions m_keys;
    SceneMouse m_sceneMouse;
    SceneKeys m_sceneKeys;
    PointMenu m_points;
};

} // namespace Morvex
