#include "qtbackend/mouseactions.h"

#include "qtbackend/actionreport.h"
#include "qtbackend/menupath.h"
#include "qtbackend/recordedkeys.h"
#include "qtbackend/reportedplace.h"
#include "qtbackend/usagerules.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAbstractSlider>
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QDateTimeEdit>
#include <QGroupBox>
#include <QHeaderView>
#include <QMenu>
#include <QMenuBar>
#include <QMouseEvent>
#include <QSpinBox>
#include <QTabBar>
#include <QTabWidget>

namespace Morvex {
namespace {

QVariant valueOf(const QWidget *widget)
{
    if (qobject_cast<const QDateTimeEdit *>(widget))
        return widget->property("dateTime");
    return widget ? widget->property("value") : QVariant();
}

// Those of which a second click is just one more, and which a drag does not move.
bool isPushed(const QObject *object)
{
    return qobject_cast<const QAbstractButton *>(object) || qobject_cast<const QGroupBox *>(object);
}

bool isBar(const QObject *object)
{
    return qobject_cast<const QHeaderView *>(object) || qobject_cast<const QTabBar *>(object) ||
           qobject_cast<const QTabWidget *>(object);
}

QModelIndex indexAt(const RecordedTarget &target, const QWidget *widget, const QPoint &global)
{
    const auto *view = qobject_cast<const QAbstractItemView *>(target.object.data());
    return view && widget ? view->indexAt(widget->mapFromGlobal(global)) : QModelIndex();
}

} // namespace

void MouseActions::beginPress()
{
    m_isPressNew = true;
    if (m_press.widget)
        expectOutcome();
    settle();
    if (m_press.isDragging)
        m_report.cancel(m_press.number);
    m_press = {};
}

void MouseActions::press(QWidget *widget, const QMouseEvent &event)
{
    if (!m_isPressNew) {
        // Its child did not take the event. The right button opens a menu all the same.
        const bool isHandedOn = event.button() != Qt::RightButton && !event.spontaneous();
        if (isHandedOn && m_press.widget && widget->isAncestorOf(m_press.widget))
            describe(widget, event.pos());
        return;
    }
    if (!event.spontaneous())
        return;
    m_isPressNew = false;
    m_isInMenu = qobject_cast<QMenu *>(widget) || qobject_cast<QMenuBar *>(widget);
    if (auto *menu = qobject_cast<QMenu *>(widget))
        closeMenu(menu, event.globalPos());
    m_press.globalPlace = event.globalPos();
    m_press.button = event.button();
    m_press.modifiers = event.modifiers();
    m_press.isDouble = event.type() == QEvent::MouseButtonDblClick;
    describe(widget, event.pos());
}

// A press elsewhere closes all menus.
void MouseActions::closeMenu(QMenu *menu, const QPoint &globalPlace)
{
    const QMenu *first = isInOpenMenu(globalPlace) ? nullptr : firstMenuOf(menu);
    if (first)
        m_report.add(QStringLiteral("type"), first,
                     {{QStringLiteral("text"), QStringLiteral("<Esc>")}});
}

void MouseActions::describe(QWidget *widget, const QPoint &place)
{
    m_press.widget = widget;
    m_press.target = recordedTarget(widget, place, m_press.button);
    m_outcome = {};
    switch (m_press.target.kind) {
    case RecordedTarget::Nothing:
        m_report.cancel(m_press.number);
        m_press.number = 0;
        break;
    case RecordedTarget::Cursor:
    case RecordedTarget::Value:
        m_outcome.widget = qobject_cast<QWidget *>(m_press.target.object);
        m_outcome.name = m_report.nameOf(ownerOf(m_outcome.widget));
        m_outcome.cursor = TextCursorState::of(m_outcome.widget);
        m_outcome.value = valueOf(m_outcome.widget);
        break;
    default:
        reportPress();
    }
}

void MouseActions::reportPress()
{
    const RecordedTarget &target = m_press.target;
    QString what = QStringLiteral("click");
    if (target.kind == RecordedTarget::Expand)
        what = QStringLiteral("expand");
    else if (target.kind == RecordedTarget::Collapse)
        what = QStringLiteral("collapse");
    else if (m_press.isDouble && !isPushed(target.object))
        what = QStringLiteral("doubleClick");
    if (what == QLatin1String("doubleClick"))
        m_report.cancel(m_lastClick);
    const QVariantMap place = placeOf(target);
    if (m_press.number > 0)
        m_report.replace(m_press.number, what, target.object, place);
    else
        m_press.number = m_report.add(what, target.object, place);
    m_lastClick = m_press.number;
    const QModelIndex index = indexAt(target, m_press.widget, m_press.globalPlace);
    if (index.data(Qt::CheckStateRole).isValid()) {
        m_outcome.index = index;
        m_outcome.checkState = index.data(Qt::CheckStateRole);
        m_outcome.name = m_report.nameOf(target.object);
        m_outcome.place = place;
        m_outcome.number = m_press.number;
    }
}

QVariantMap MouseActions::placeOf(const RecordedTarget &target) const
{
    QVariantMap place = reportedPlace(target);
    addButtonTo(&place, m_press.button, m_press.modifiers);
    return place;
}

void MouseActions::beginRelease(const QMouseEvent &event)
{
    m_isReleaseNew = true;
    const int way = (event.globalPos() - m_press.globalPlace).manhattanLength();
    if (m_press.number > 0 && m_press.widget && way >= QApplication::startDragDistance())
        finishMoved(event.globalPos());
    expectOutcome();
    m_press = {};
}

// A widget may change once more after the button was released.
void MouseActions::expectOutcome()
{
    m_outcome.kind = m_press.target.kind;
}

void MouseActions::finishMoved(const QPoint &globalPlace)
{
    const QWidget *widget = m_press.widget;
    const bool isInside = widget->rect().contains(widget->mapFromGlobal(globalPlace));
    if (isPushed(m_press.target.object) ? isInside : m_press.target.kind != RecordedTarget::Click)
        return;
    if (isPushed(m_press.target.object) || isBar(m_press.target.object))
        m_report.cancel(m_press.number);
    else
        reportDrag(globalPlace);
}

void MouseActions::reportDrag(const QPoint &globalPlace)
{
    QWidget *widget = QApplication::widgetAt(globalPlace);
    RecordedTarget to;
    if (widget)
        to = recordedTarget(widget, widget->mapFromGlobal(globalPlace), Qt::LeftButton);
    if (!to.object) {
        // Out of the window, or onto a background.
        to.object = m_press.target.object;
        to.place = m_press.widget->mapFromGlobal(globalPlace);
    }
    const bool isSame = to.object == m_press.target.object && to.item == m_press.target.item;
    if (isSame && !to.place)
        return;
    QVariantMap more = placeOf(m_press.target);
    QVariantMap end = reportedPlace(to);
    end[QStringLiteral("object")] = m_report.nameOf(to.object);
    more[QStringLiteral("to")] = end;
    m_report.replace(m_press.number, QStringLiteral("drag"), m_report.nameOf(m_press.target.object),
                     more);
}

void MouseActions::dragMoved()
{
    m_press.isDragging = m_press.number > 0;
}

void MouseActions::dropAt(const QPoint &globalPlace)
{
    if (m_press.isDragging && m_press.widget)
        reportDrag(globalPlace);
    m_press = {};
}

void MouseActions::release(QWidget *widget, const QMouseEvent &event)
{
    if (!m_isReleaseNew)
        return;
    m_isReleaseNew = false;
    if (m_isInMenu)
        choose(widget, event.pos());
    else if (comboBoxOfList(widget))
        chooseInList(widget, event.pos());
}

void MouseActions::choose(QWidget *menu, const QPoint &place)
{
    auto *action = const_cast<QAction *>(actionAt(menu, place));
    if (!action || !action->isEnabled() || action->isSeparator() || action->menu())
        return;
    const MenuPath path = menuPathOf(menu, action);
    m_report.add(QStringLiteral("click"), path.owner, {{QStringLiteral("item"), path.item}});
}

void MouseActions::chooseInList(QWidget *list, const QPoint &place)
{
    QComboBox *box = comboBoxOfList(list);
    const QModelIndex index = box->view()->indexAt(place);
    if (!index.isValid() || list != box->view()->viewport() || !(index.flags() & Qt::ItemIsEnabled))
        return;
    m_choice.list = list->window();
    m_choice.number = m_report.add(QStringLiteral("click"), box,
                                   {{QStringLiteral("item"), selectorOf(box, index.row())}});
}

void MouseActions::settle()
{
    // A list that stays open has taken the click for none.
    if (m_choice.list && m_choice.list->isVisible())
        m_report.cancel(m_choice.number);
    m_choice = {};
    switch (m_outcome.kind) {
    case RecordedTarget::Value:
        settleValue();
        break;
    case RecordedTarget::Cursor:
        settleCursor();
        break;
    case RecordedTarget::Click:
        settleCheck();
        break;
    case RecordedTarget::Nothing:
        // A button may still be pressed.
        return;
    default:
        break;
    }
    m_outcome = {};
}

void MouseActions::settleValue()
{
    const QVariant value = valueOf(m_outcome.widget);
    const bool isNumber = m_outcome.widget && value.isValid() && value != m_outcome.value &&
                          !qobject_cast<QDateTimeEdit *>(m_outcome.widget);
    if (isNumber)
        m_report.add(QStringLiteral("set"), m_outcome.name,
                     {{QStringLiteral("property"), QStringLiteral("value")},
                      {QStringLiteral("value"), value}});
    else if (value.isValid() && value != m_outcome.value)
        m_report.add(QStringLiteral("type"), m_outcome.name,
                     {{QStringLiteral("text"), value.toDateTime() > m_outcome.value.toDateTime()
                                                   ? QStringLiteral("<Up>")
                                                   : QStringLiteral("<Down>")}});
}

void MouseActions::settleCursor()
{
    const TextCursorState state = TextCursorState::of(m_outcome.widget);
    if (!m_outcome.widget || state == m_outcome.cursor)
        return;
    const QString keys = state.keys();
    // A place within a secret says how long it is.
    if (!isSecretInput(m_outcome.widget) || keys == QLatin1String("<Ctrl+A>"))
        m_report.add(QStringLiteral("type"), m_outcome.name, {{QStringLiteral("text"), keys}});
}

void MouseActions::settleCheck()
{
    if (!m_outcome.index.isValid())
        return;
    const QVariant state = m_outcome.index.data(Qt::CheckStateRole);
    if (state != m_outcome.checkState && m_outcome.place.contains(QStringLiteral("item")))
        m_report.replace(m_outcome.number,
                         state.toInt() == Qt::Checked ? QStringLiteral("check")
                                                      : QStringLiteral("uncheck"),
                         m_outcome.name, m_outcome.place);
}

} // namespace Morvex
