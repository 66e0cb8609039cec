#include "qtbackend/mouseactions.h"

#include "qtbackend/actionreport.h"
#include "qtbackend/celleditor.h"
#include "qtbackend/droptarget.h"
#include "qtbackend/embedded.h"
#include "qtbackend/itemselectors.h"
#include "qtbackend/menubutton.h"
#include "qtbackend/menupath.h"
#include "qtbackend/menuuse.h"
#include "qtbackend/ownclass.h"
#include "qtbackend/reportedplace.h"
#include "qtbackend/usagerules.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QMouseEvent>
#include <QScrollBar>
#include <QTabBar>

#include <utility>

namespace Morvex {
namespace {

// Those of which a second click is just one more.
bool isPushed(const QObject *object)
{
    return qobject_cast<const QAbstractButton *>(object) || qobject_cast<const QGroupBox *>(object);
}

} // namespace

void MouseActions::beginPress()
{
    m_isPressNew = true;
    m_outcome.setReleased();
    settle();
    m_textDrag.end();
    if (m_press.isDragging)
        m_report.cancel(m_press.number);
    m_press = {};
    // The second press of a double click comes twice, as a press and as a double click.
    if (m_click.number > 0)
        m_clickBefore = m_click;
    m_click = {};
}

void MouseActions::press(QWidget *widget, const QMouseEvent &event)
{
    if (!m_isPressNew) {
        const bool isInner = m_press.widget && isEmbeddedIn(widget, m_press.widget);
        if (isInner)
            m_report.cancel(std::exchange(m_press.number, 0));
        if (isInner || (!event.spontaneous() && isHandedOnTo(widget)))
            describe(widget, event.pos());
        return;
    }
    if (!event.spontaneous())
        return;
    m_isPressNew = false;
    m_isInMenu = qobject_cast<QMenu *>(widget) || qobject_cast<QMenuBar *>(widget);
    if (auto *menu = qobject_cast<QMenu *>(widget))
        m_menus.press(menu, event.globalPos());
    m_press.globalPlace = event.globalPos();
    m_press.button = event.button();
    m_press.modifiers = event.modifiers();
    m_press.isDouble = event.type() == QEvent::MouseButtonDblClick;
    m_subWindow = qobject_cast<QMdiSubWindow *>(widget);
    describe(widget, event.pos());
}

// Its child did not take the press, and will do nothing all the same when it is released. The right
// button opens a menu.
bool MouseActions::isHandedOnTo(const QWidget *widget) const
{
    return m_press.button != Qt::RightButton && m_press.target.kind != RecordedTarget::Paste &&
           m_press.widget && widget->isAncestorOf(m_press.widget) &&
           !isEditedIn(m_press.widget, widget);
}

void MouseActions::describe(QWidget *widget, const QPoint &place)
{
    m_press.widget = widget;
    m_press.target = recordedTarget(widget, place, m_press.button);
    if (m_press.target.kind != RecordedTarget::Nothing)
        m_menus.enter(widget);
    m_outcome = PressOutcome(m_press.target, m_report);
    switch (m_press.target.kind) {
    case RecordedTarget::Nothing:
        giveBackPress();
        break;
    // What it does shows later.
    case RecordedTarget::Cursor:
    case RecordedTarget::Paste:
    case RecordedTarget::Value:
        break;
    case RecordedTarget::Click:
    case RecordedTarget::Expand:
    case RecordedTarget::Collapse:
        reportPress();
    }
}

// Nobody has taken it.
void MouseActions::giveBackPress()
{
    if (!m_press.ownName.isEmpty()) {
        m_click = {
            m_press.ownObject, {}, m_press.number, menuOfButton(m_press.ownObject) != nullptr};
        return m_report.replace(m_press.number, m_press.ownWhat, m_press.ownName, m_press.ownPlace);
    }
    m_report.cancel(m_press.number);
    m_press.number = 0;
    m_click = {};
}

// What is at a place of an area depends on how far that was scrolled.
void MouseActions::reportScroll()
{
    const auto *area = qobject_cast<const QAbstractScrollArea *>(m_press.target.object);
    const QList<QScrollBar *> moved = area ? m_scroll.takeMoved(area) : QList<QScrollBar *>();
    // It comes after that.
    if (!moved.isEmpty())
        m_report.cancel(std::exchange(m_press.number, 0));
    AreaScroll::report(moved, m_report);
}

void MouseActions::reportPress()
{
    RecordedTarget &target = m_press.target;
    QString what = QStringLiteral("click");
    if (target.kind == RecordedTarget::Expand)
        what = QStringLiteral("expand");
    else if (target.kind == RecordedTarget::Collapse)
        what = QStringLiteral("collapse");
    else if (!isPushed(target.object) && isSecondClick())
        what = QStringLiteral("doubleClick");
    if (what == QLatin1String("doubleClick"))
        m_report.cancel(m_clickBefore.number);
    // It opens the item, wherever that is hit.
    if (what == QLatin1String("doubleClick") && !target.item.isEmpty())
        target.place.reset();
    const QVariantMap place = placeOf(target);
    if (target.place && target.item.isEmpty())
        reportScroll();
    if (m_press.number > 0)
        m_report.replace(m_press.number, what, target.object, place);
    else
        m_press.number = m_report.add(what, target.object, place);
    m_click = {target.object, target.item, m_press.number, menuOfButton(target.object) != nullptr};
    // A label uses a link and hands the press on.
    const bool isLink = !target.item.isEmpty() && qobject_cast<const QLabel *>(target.object);
    const bool isUsed = isLink || (target.item.isEmpty() && isOwnPart(m_press.widget));
    if (isUsed && m_press.ownName.isEmpty()) {
        m_press.ownObject = target.object;
        m_press.ownWhat = what;
        m_press.ownName = m_report.nameOf(target.object, false);
        m_press.ownPlace = place;
    }
    m_outcome.setReported(m_press.number, place,
                          indexAt(target, m_press.widget, m_press.globalPlace),
                          BarMove(target, m_press.widget, m_press.globalPlace), m_report);
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
    if (m_press.number > 0 && m_press.widget)
        finishPress(event.globalPos());
    if (m_press.target.kind == RecordedTarget::Paste && m_press.target.object)
        m_paste.begin(qobject_cast<QWidget *>(m_press.target.object), event.globalPos());
    m_outcome.setReleased();
    m_press = {};
}

// Moved to another place, the mouse has done something else there, or nothing.
void MouseActions::finishPress(const QPoint &globalPlace)
{
    const QWidget *widget = m_press.widget;
    const RecordedTarget &target = m_press.target;
    const bool isInside = widget->rect().contains(widget->mapFromGlobal(globalPlace));
    const int way = (globalPlace - m_press.globalPlace).manhattanLength();
    if (way < QApplication::startDragDistance() || m_press.button != Qt::LeftButton)
        m_outcome.setNotMoved();
    const bool isWhole = target.item.isEmpty() && !target.place;
    const bool isMoved = (way >= QApplication::startDragDistance() || isRound(globalPlace)) &&
                         target.kind == RecordedTarget::Click;
    const bool isTab = qobject_cast<const QTabBar *>(widget);
    const bool isSection = qobject_cast<const QHeaderView *>(target.object);
    const bool isGivenUp = (isWhole && !isInside && m_press.button == Qt::LeftButton) ||
                           (target.isForDrag && !isMoved);
    if (isGivenUp || (isMoved && isSection)) {
        m_report.cancel(m_press.number);
        m_click = {};
    } else if (isDoubleClicked(target.object)) {
        m_report.cancel(m_clickBefore.number);
        m_report.replace(m_press.number, QStringLiteral("doubleClick"), target.object,
                         placeOf(target));
    }
    const bool isView = qobject_cast<const QAbstractItemView *>(target.object);
    // The place was left out as long as it was a click.
    if (isMoved && isWhole && isView && !isSection)
        m_press.target.place = widget->mapFromGlobal(m_press.globalPlace);
    if (isMoved && (!isWhole || isView) && !isTab && !isSection)
        reportDrag(globalPlace, false);
}

// It was not pushed by the second press, so that the application has used that.
bool MouseActions::isDoubleClicked(const QObject *object) const
{
    const auto *button = qobject_cast<const QAbstractButton *>(object);
    return button && !button->isDown() && m_press.button == Qt::LeftButton && isSecondClick();
}

bool MouseActions::isSecondClick() const
{
    return m_press.isDouble && m_clickBefore.number > 0 &&
           m_clickBefore.object == m_press.target.object &&
           m_clickBefore.item == m_press.target.item;
}

void MouseActions::reportDrag(const QPoint &globalPlace, bool isData)
{
    QWidget *widget = QApplication::widgetAt(globalPlace);
    RecordedTarget to;
    if (widget)
        to = dropTarget(widget, widget->mapFromGlobal(globalPlace), isData);
    if (!to.object) {
        // Out of the window, or onto a background.
        to.object = m_press.target.object;
        to.place = m_press.widget->mapFromGlobal(globalPlace);
    }
    const bool isSame = to.object == m_press.target.object && to.item == m_press.target.item;
    // A rubber band may end beside all items, too.
    if (isSame && to.item.isEmpty() && m_press.target.place && !isData)
        to.place = m_press.widget->mapFromGlobal(globalPlace);
    if (isSame && !to.place)
        return;
    QVariantMap more = placeOf(m_press.target);
    QVariantMap end = reportedPlace(to);
    end[QStringLiteral("object")] = m_report.nameOf(to.object);
    more[QStringLiteral("to")] = end;
    const QString corners = isSame && to.item.isEmpty() && m_press.target.place && !isData
                                ? cornersOfWay(globalPlace)
                                : QString();
    if (!corners.isEmpty())
        more[QStringLiteral("via")] = corners;
    m_report.replace(m_press.number, QStringLiteral("drag"), m_report.nameOf(m_press.target.object),
                     more);
}

// A stroke may end where it began.
bool MouseActions::isRound(const QPoint &globalPlace) const
{
    return m_press.target.place && m_press.target.item.isEmpty() &&
           m_press.button == Qt::LeftButton && !cornersOfWay(globalPlace).isEmpty();
}

// In places of the widget.
QString MouseActions::cornersOfWay(const QPoint &globalPlace) const
{
    return m_press.way.corners(m_press.globalPlace, globalPlace,
                               m_press.globalPlace - *m_press.target.place);
}

void MouseActions::move(const QMouseEvent &event)
{
    if (m_press.number > 0 && (event.buttons() & Qt::LeftButton))
        m_press.way.add(event.globalPos());
}

void MouseActions::dragMoved()
{
    m_press.isDragging = m_press.number > 0;
    if (m_press.target.kind == RecordedTarget::Cursor)
        m_textDrag.begin(qobject_cast<QWidget *>(m_press.target.object));
}

void MouseActions::dropAt(const QPoint &globalPlace, bool isMove)
{
    QWidget *widget = m_textDrag.isActive() ? QApplication::widgetAt(globalPlace) : nullptr;
    const RecordedTarget to =
        widget ? recordedTarget(widget, widget->mapFromGlobal(globalPlace), Qt::LeftButton)
               : RecordedTarget();
    if (to.kind == RecordedTarget::Cursor)
        m_textDrag.drop(qobject_cast<QWidget *>(to.object), globalPlace, isMove);
    else if (m_press.isDragging && m_press.widget)
        reportDrag(globalPlace, true);
    m_press = {};
    if (to.kind == RecordedTarget::Cursor || !m_textDrag.isActive())
        m_outcome = {};
    endDrag();
}

// No button is released in the window where it was pressed.
void MouseActions::endDrag()
{
    if (m_textDrag.isActive())
        m_outcome.setReleased();
}

void MouseActions::closeSubWindow(QMdiSubWindow *window)
{
    if (window == m_subWindow)
        m_report.add(QStringLiteral("close"), window);
}

void MouseActions::release(QWidget *widget, const QMouseEvent &event)
{
    const bool isInScene = proxyOf(widget) && comboBoxOfList(widget);
    if (!std::exchange(m_isReleaseNew, false) && !isInScene)
        return;
    if (m_isInMenu || qobject_cast<QMenu *>(widget))
        choose(widget, event.pos());
    else if (comboBoxOfList(widget))
        chooseInList(widget, event.pos());
}

void MouseActions::choose(QWidget *menu, const QPoint &place)
{
    auto *action = const_cast<QAction *>(actionAt(menu, place));
    if (!action || !action->isEnabled() || action->isSeparator() || action->menu())
        return;
    m_menus.endPress();
    auto *open = qobject_cast<QMenu *>(menu);
    const MenuPath path = menuPathOf(menu, action, open ? m_menus.openFor(open) : nullptr);
    // The date says which month was chosen.
    if (dateOfCalendar(path.owner))
        return;
    m_choice.list = m_isInMenu ? nullptr : menu;
    m_choice.number = m_menus.choose(path);
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
    m_textDrag.settle();
    m_paste.settle();
    settleMenuOfButton();
    if (!m_outcome.isReleased())
        return;
    m_outcome.settle(m_report);
    m_outcome = {};
    m_subWindow = nullptr;
    m_menus.settlePress();
}

// Held, a button may open its menu in place of a click.
void MouseActions::settleMenuOfButton()
{
    const bool isLast = m_click.number > 0 && m_click.number == m_report.lastNumber();
    QMenu *menu = isLast ? menuOfButton(m_click.object) : nullptr;
    if (!menu || !menu->isVisible())
        return;
    // One that the press has made is no item of the button before that.
    if (m_click.hadMenu)
        m_report.cancel(m_click.number);
    else
        m_menus.setOpen(menu);
    m_click = {};
    m_press.number = 0;
}

void MouseActions::expectChange(QWidget *widget)
{
    RecordedTarget target;
    target.kind = RecordedTarget::Value;
    target.object = widget;
    m_outcome = PressOutcome(target, m_report);
    m_outcome.setReleased();
}

} // namespace Morvex
