#include "qtbackend/scenemouse.h"

#include "qtbackend/actionreport.h"
#include "qtbackend/recordedkeys.h"
#include "qtbackend/reportedplace.h"
#include "qtbackend/sceneaccess.h"
#include "qtbackend/scenehandlers.h"
#include "qtbackend/scenelinks.h"
#include "qtbackend/scenemenus.h"
#include "qtbackend/scenetarget.h"
#include "qtbackend/sceneview.h"
#include "qtbackend/secretinputs.h"

#include <QGuiApplication>
#include <QMouseEvent>
#include <QStyleHints>

#include <algorithm>
#include <utility>

namespace Morvex {
namespace {

// Longer than anything takes that waits for it.
const ulong maxHoldTenths = 300;

bool isOpened(const QObject *popup)
{
    return popup && popup->property("opened").toBool();
}

std::vector<QPointer<QObject>> openedPopups(QObject *root)
{
    std::vector<QPointer<QObject>> opened;
    const QObjectList popups = SceneAccess::self()->popupsIn(root);
    std::copy_if(popups.begin(), popups.end(), std::back_inserter(opened), [](QObject *popup) {
        return isOpened(popup) && !popup->inherits("QQuickToolTip");
    });
    return opened;
}

bool isOfComboBox(const QObject *popup)
{
    return popup && isSceneComboBox(popup->property("parent").value<QObject *>());
}

// Null when nothing moves.
QObject *movingAround(QObject *item)
{
    while (item && !isMoving(item))
        item = SceneAccess::self()->parentOf(item);
    return item;
}

QObject *grabberOf(const QObject *root)
{
    const SceneAccess &access = *SceneAccess::self();
    return access.grabberIn(access.windowOf(root));
}

} // namespace

void SceneMouse::press(QObject *root, const QMouseEvent &event)
{
    // The second press of a double click comes twice in a window.
    const bool isDouble = event.type() == QEvent::MouseButtonDblClick;
    if (!isDouble || !m_press.isDown)
        begin(root, event);
    if (!isDouble || m_press.number == 0)
        return;
    // The first press may have stopped what was moving; then the second is for nothing.
    if (m_lastClick == 0) {
        cancelPress();
        return;
    }
    m_press.isDouble = true;
    m_report.cancel(m_lastClick);
    reportPress();
}

void SceneMouse::begin(QObject *root, const QMouseEvent &event)
{
    settle();
    m_press = {};
    m_outcome = {};
    m_press.root = root;
    m_press.place = event.pos();
    m_press.globalPlace = event.globalPos();
    m_press.button = event.button();
    m_press.modifiers = event.modifiers();
    m_press.time = event.timestamp();
    m_press.isDown = true;
    m_press.popups = openedPopups(root);
    QObject *taker = SceneAccess::self()->takerAt(root, m_press.place, m_press.button);
    const bool isMoving = movingAround(taker);
    m_press.popupCount = SceneAccess::self()->popupsIn(root).size();
    m_isToBeTaken = true;
    // What is moving may be stopped by the press, and nothing else gets it then.
    describe(isMoving ? nullptr : taker);
    describeDragged();
}

// Its place as it is now, since it moves.
void SceneMouse::describeDragged()
{
    const SceneAccess &access = *SceneAccess::self();
    QObject *dragged = draggedAround(access.drawnAt(m_press.root, m_press.place));
    if (!dragged || m_press.button != Qt::LeftButton)
        return;
    m_press.dragged = sceneItemTarget(dragged);
    m_press.dragged.place = placeInSceneTarget(dragged, m_press.place);
    m_press.draggedName = m_report.nameOf(m_press.dragged.object);
}

void SceneMouse::describe(QObject *taker)
{
    m_press.taker = taker;
    m_press.target = taker ? sceneTarget(taker, m_press.place, m_press.button) : RecordedTarget();
    QObject *object = m_press.target.object;
    m_outcome = {};
    switch (m_press.target.kind) {
    case RecordedTarget::Cursor:
        noteSecretInput(object);
        m_outcome.cursor = TextCursorState::ofSceneItem(object);
        m_outcome.name = m_report.nameOf(sceneOwnerOf(object));
        m_outcome.item = object;
        break;
    case RecordedTarget::Value:
        m_outcome.values = sceneValuesOf(object);
        m_outcome.name = m_report.nameOf(object);
        m_outcome.item = object;
        break;
    case RecordedTarget::Click:
        m_press.placeInTarget = placeInSceneTarget(taker, m_press.place);
        if (m_press.number == 0)
            m_menus.reportOpeners(object);
        reportHover();
        reportPress();
        m_menus.noteClick(object, m_press.number);
        return;
    default:
        break;
    }
    cancelPress();
}

// What shows only while the mouse is over something is not there before.
void SceneMouse::reportHover()
{
    QObject *object = m_press.target.object;
    const bool isLate = m_report.changes().take(object).contains(QLatin1String("visible"));
    QObject *around = isLate ? hoveredAround(object, m_press.place) : nullptr;
    if (!around || m_press.number > 0)
        return;
    const RecordedTarget target = sceneItemTarget(around);
    m_report.add(QStringLiteral("hover"), m_report.nameOf(target.object), reportedPlace(target));
}

void SceneMouse::reportPress()
{
    const QString what = m_press.isDouble ? QStringLiteral("doubleClick") : QStringLiteral("click");
    QVariantMap place = reportedPlace(m_press.target);
    addButtonTo(&place, m_press.button, m_press.modifiers);
    if (m_press.number > 0)
        m_report.replace(m_press.number, what, m_press.target.object, place);
    else
        m_press.number = m_report.add(what, m_press.target.object, place);
}

// A handler of taps has the press without a grab, and what opens a popup may have lost it.
bool SceneMouse::isTaken() const
{
    return !m_press.root || !m_press.taker || grabberOf(m_press.root) ||
           hasTapHandler(m_press.taker) ||
           SceneAccess::self()->popupsIn(m_press.root).size() != m_press.popupCount;
}

// What scrolls has kept the press to itself.
bool SceneMouse::isStop(const QObject *grabber) const
{
    return isScrolling(grabber) && grabber != m_press.taker &&
           grabber->property("pressDelay").toInt() == 0;
}

// Which item takes the press is known once it has been delivered.
void SceneMouse::checkTaker()
{
    if (!std::exchange(m_isToBeTaken, false))
        return;
    QObject *grabber = m_press.root ? grabberOf(m_press.root) : nullptr;
    m_press.grabber = grabber;
    const bool isOther = grabber && grabber != m_press.taker && !isScrolling(grabber);
    if (isOther)
        describe(grabber);
    else if (isStop(grabber) || !isTaken())
        describe(nullptr);
}

void SceneMouse::release(const QMouseEvent &event)
{
    checkTaker();
    if (!std::exchange(m_press.isDown, false))
        return;
    m_outcome.kind = m_press.target.kind;
    m_outcome.isReleased = true;
    if (m_press.root)
        finishPress(event);
    m_lastClick = m_press.number;
}

void SceneMouse::move(const QMouseEvent &event)
{
    if (m_press.isDown && m_press.number > 0)
        m_press.way.add(event.globalPos());
}

bool SceneMouse::isFar(const QPoint &place) const
{
    return (place - m_press.place).manhattanLength() >=
           QGuiApplication::styleHints()->startDragDistance();
}

void SceneMouse::finishPress(const QMouseEvent &event)
{
    const QObject *grabber = grabberOf(m_press.root);
    const bool isMoved = isFar(event.pos());
    const bool isScrolled = isMoved && isScrolling(grabber) && grabber != m_press.taker;
    const bool isStolen = isScrolled || (m_press.grabber && m_press.grabber != grabber &&
                                         !isScrolling(m_press.grabber));
    if (m_press.dragged.object && isDragging(m_press.dragged.object)) {
        m_press.target = m_press.dragged;
        reportDrag(event.pos());
    } else if (m_press.number == 0 || !m_press.taker) {
        return;
    } else if (isStolen) {
        cancelPress();
    } else if (takesDrag() && (isMoved || isRound(event.globalPos()))) {
        if (!m_press.target.place)
            m_press.target.place = m_press.placeInTarget;
        reportDrag(event.pos());
    } else if (!SceneAccess::self()->isAt(m_press.taker, event.pos()) || isOffLink(event.pos()) ||
               (isMoved && hasTapHandler(m_press.taker))) {
        cancelPress();
    } else {
        reportHeld(event.timestamp() - m_press.time);
    }
}

// A link is opened where it is both pressed and let go.
bool SceneMouse::isOffLink(const QPoint &place) const
{
    QObject *text = m_press.target.object;
    const QVariantList link = text ? sceneLinkAt(text, m_press.place) : QVariantList();
    return !link.isEmpty() && sceneLinkAt(text, place) != link;
}

void SceneMouse::cancelPress()
{
    m_report.cancel(std::exchange(m_press.number, 0));
}

// A stroke may end where it began.
bool SceneMouse::isRound(const QPoint &globalPlace) const
{
    return !m_press.way.corners(m_press.globalPlace, globalPlace, {}).isEmpty();
}

bool SceneMouse::takesDrag() const
{
    return m_press.target.place || isDragged(m_press.taker);
}

// Some milliseconds more than it took, as a script is faster than the clock of the screen.
void SceneMouse::reportHeld(ulong milliseconds)
{
    if (m_press.isDouble || milliseconds < static_cast<ulong>(holdIntervalOf(m_press.taker)))
        return;
    const ulong time = std::min<ulong>(milliseconds / 100 + 1, maxHoldTenths) * 100;
    QVariantMap more = reportedPlace(m_press.target);
    addButtonTo(&more, m_press.button, m_press.modifiers);
    more[QStringLiteral("hold")] = static_cast<int>(time);
    m_report.replace(m_press.number, QStringLiteral("click"), m_press.target.object, more);
}

void SceneMouse::reportDrag(const QPoint &place)
{
    const QObject *object = m_press.target.object;
    if (!object)
        return;
    const QString name =
        m_press.draggedName.isEmpty() ? m_report.nameOf(object) : m_press.draggedName;
    QVariantMap more = reportedPlace(m_press.target);
    addButtonTo(&more, m_press.button, m_press.modifiers);
    const QVariantMap to = endOfDrag(m_press.target, name, place);
    more[QStringLiteral("to")] = to;
    const QString corners =
        to.value(QStringLiteral("object")) == name ? cornersOfWay(place) : QString();
    if (!corners.isEmpty())
        more[QStringLiteral("via")] = corners;
    if (m_press.number > 0)
        m_report.replace(m_press.number, QStringLiteral("drag"), name, more);
    else
        m_report.add(QStringLiteral("drag"), name, more);
}

// In places of the item; empty where that is moved itself.
QString SceneMouse::cornersOfWay(const QPoint &place) const
{
    if (m_press.target.object == m_press.dragged.object || movesItem(m_press.taker))
        return {};
    return m_press.way.corners(m_press.globalPlace, m_press.globalPlace + place - m_press.place,
                               m_press.globalPlace - *m_press.target.place);
}

// By name where something is dropped, else as far from the start.
QVariantMap SceneMouse::endOfDrag(const RecordedTarget &start, const QString &name,
                                  const QPoint &place)
{
    const QString key = QStringLiteral("object");
    if (QObject *area = dropAreaAt(m_press.root, place)) {
        const RecordedTarget end = sceneItemTarget(area);
        QVariantMap to = reportedPlace(end);
        to[key] = m_report.nameOf(end.object);
        return to;
    }
    RecordedTarget end = start;
    end.place = *start.place + place - m_press.place;
    QVariantMap to = reportedPlace(end);
    to[key] = name;
    return to;
}

void SceneMouse::dragData()
{
    if (m_press.isDown && m_press.number > 0)
        m_report.cancel(m_press.number);
}

void SceneMouse::dropData(QObject *root, const QPoint &place)
{
    QObject *area = root ? dropAreaAt(root, place) : nullptr;
    const bool isOwn = m_press.isDown && m_press.number > 0 && m_press.target.object;
    m_press.isDown = false;
    if (!area || !isOwn)
        return;
    const RecordedTarget end = sceneItemTarget(area);
    QVariantMap to = reportedPlace(end);
    to[QStringLiteral("object")] = m_report.nameOf(end.object);
    QVariantMap more = reportedPlace(m_press.target);
    addButtonTo(&more, m_press.button, m_press.modifiers);
    more[QStringLiteral("to")] = to;
    m_report.replace(m_press.number, QStringLiteral("drag"), m_press.target.object, more);
}

void SceneMouse::settle()
{
    checkTaker();
    if (!std::exchange(m_outcome.isReleased, false))
        return;
    settlePopups();
    settleOutcome();
    m_outcome = {};
}

void SceneMouse::settleOutcome()
{
    QObject *item = m_outcome.item;
    if (!item)
        return;
    for (const SceneValue &value : m_outcome.values) {
        if (m_outcome.kind == RecordedTarget::Value && value.isChanged())
            m_report.add(QStringLiteral("set"),
                         value.item == item ? m_outcome.name : m_report.nameOf(value.item),
                         value.setting());
    }
    const TextCursorState cursor = TextCursorState::ofSceneItem(item);
    if (m_outcome.kind == RecordedTarget::Cursor && !(cursor == m_outcome.cursor) &&
        !isSecretInput(item))
        m_report.addCursor(m_outcome.name, item, cursor.keys());
}

// A press elsewhere closes what is open. Where a script sets a value or moves a cursor, it presses
// nothing.
void SceneMouse::settlePopups()
{
    if (m_outcome.kind == RecordedTarget::Click || !m_press.root)
        return;
    const bool isClosed =
        std::any_of(m_press.popups.begin(), m_press.popups.end(),
                    [](const QObject *popup) { return !isOpened(popup) && !isOfComboBox(popup); });
    if (isClosed)
        m_report.add(QStringLiteral("type"), sceneWindowOf(m_press.root),
                     {{QStringLiteral("text"), QStringLiteral("<Esc>")}});
}

} // namespace Morvex
