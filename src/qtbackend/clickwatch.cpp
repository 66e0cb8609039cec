#include "qtbackend/clickwatch.h"

#include "qtbackend/objecttree.h"
#include "qtbackend/sceneaccess.h"

#include <QAbstractScrollArea>
#include <QAction>
#include <QCoreApplication>
#include <QMenu>
#include <QMenuBar>
#include <QMouseEvent>

namespace Morvex {
namespace {

// More than anybody clicks before they are taken.
const std::size_t maxClicked = 1000;

QObject *shownObject(QWidget *widget, const QPoint &place)
{
    QAction *action = nullptr;
    if (const auto *menu = qobject_cast<QMenu *>(widget))
        action = menu->actionAt(place);
    else if (const auto *bar = qobject_cast<QMenuBar *>(widget))
        action = bar->actionAt(place);
    if (action && action->menu())
        return action->menu();
    if (action)
        return action;
    auto *area = qobject_cast<QAbstractScrollArea *>(widget->parentWidget());
    return area && area->viewport() == widget ? area : widget;
}

} // namespace

ClickWatch::ClickWatch()
{
    QCoreApplication::instance()->installEventFilter(this);
}

std::vector<QObject *> ClickWatch::takeClicked()
{
    std::vector<QObject *> clicked;
    for (const QPointer<QObject> &object : m_clicked) {
        if (object)
            clicked.push_back(object);
    }
    m_clicked.clear();
    return clicked;
}

bool ClickWatch::eventFilter(QObject *receiver, QEvent *event)
{
    const bool isPress = event->type() == QEvent::MouseButtonPress;
    QObject *root = isPress ? sceneRootOf(receiver) : nullptr;
    if (!isPress || (!root && !receiver->isWidgetType()))
        return false;
    const auto *press = static_cast<QMouseEvent *>(event);
    if (press->timestamp() == m_timestamp && m_timestamp != 0)
        return false;
    m_timestamp = press->timestamp();
    if (m_clicked.size() < maxClicked)
        m_clicked.emplace_back(root ? SceneAccess::self()->clickedAt(root, press->pos())
                                    : shownObject(static_cast<QWidget *>(receiver), press->pos()));
    return false;
}

} // namespace Morvex
