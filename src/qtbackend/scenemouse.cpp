#include "qtbackend/scenemouse.h"

#include "qtbackend/actionreport.h"
#include "qtbackend/recordedkeys.h"
#include "qtbackend/reportedplace.h"
#include "qtbackend/sceneaccess.h"
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

bool isOpened(const QObject *popup)
{
    return popup && popup->property("opened").toBool();
}

std::vector<QPointer<QObject>> openedPopups(QObject *root)
{
    std::vector<QPointer<QObject>> opened;
    const QObjectList popups = SceneAccess::self()->popupsIn(root);
    std::copy_if(popups.begin(), popups.end(), std::back_inserter(opened), isOpened);
    return opened;
}

bool isOfComboBox(const QObject *popup)
{
    return popup && isSceneComboBox(popup->property("parent").value<QObject *>());
}

// Those of which a second click is just one more.
bool isPushed(const QObject *object)
{
    return object && object->inherits("QQuickAbstractButton");
}

bool hasTapHandler(const QObject *item)
{
    const QObjectList &children = item->children();
    return std::any_of(children.begin(), children.end(),
                       [](const QObject *child) { return child->inherits("QQuickTapHandler"); });
}

bool isFlickable(const QObject *item)
{
    return item && item->inherits("QQuickFlickable");
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
    if (!isDouble || m_press.number == 0 || isPushed(m_press.target.object))
        return;
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
    m_press.button = event.button();
    m_press.modifiers = event.modifiers();
    m_press.isDown = true;
    m_press.popups = openedPopups(root);
    m_press.popupCount = SceneAccess::self()->popupsIn(root).size();
    m_isToBeTaken = true;
    describe(SceneAccess::self()->takerAt(root, m_press.place, m_press.button));
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
        m_outcome.value = object->property(sceneValueOf(object));
        m_outcome.name = m_report.nameOf(object);
        m_outcome.item = object;
        break;
    case RecordedTarget::Click:
        reportPress();
        return;
    default:
        break;
    }
    m_report.cancel(m_press.number);
    m_press.number = 0;
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

// Which item takes the press is known once it has been delivered.
void SceneMouse::checkTaker()
{
    if (!std::exchange(m_isToBeTaken, false))
        return;
    QObject *grabber = m_press.root ? grabberOf(m_press.root) : nullptr;
    const bool isOther = grabber && grabber != m_press.taker && !isFlickable(grabber);
    if (isOther)
        describe(grabber);
    else if (!isTaken())
        describe(nullptr);
}

void SceneMouse::release(const QPoint &place)
{
    checkTaker();
    if (!std::exchange(m_press.isDown, false))
        return;
    m_outcome.kind = m_press.target.kind;
    m_outcome.isReleased = true;
    m_lastClick = m_press.number;
    if (m_press.number == 0 || !m_press.root || !m_press.taker)
        return;
    const bool isFar = (place - m_press.place).manhattanLength() >=
                       QGuiApplication::styleHints()->startDragDistance();
    const QObject *grabber = grabberOf(m_press.root);
    const bool isScrolled = isFar && grabber != m_press.taker && isFlickable(grabber);
    if (isFar && m_press.target.place && !isScrolled)
        reportDrag(place);
    else if (isScrolled || !SceneAccess::self()->isAt(m_press.taker, place) ||
             (isFar && hasTapHandler(m_press.taker)))
        m_report.cancel(m_press.number);
}

void SceneMouse::reportDrag(const QPoint &place)
{
    const QObject *object = m_press.target.object;
    if (!object)
        return;
    const QPoint way = place - m_press.place;
    RecordedTarget end = m_press.target;
    end.place = *m_press.target.place + way;
    const QString name = m_report.nameOf(object);
    QVariantMap to = reportedPlace(end);
    to[QStringLiteral("object")] = name;
    QVariantMap more = reportedPlace(m_press.target);
    addButtonTo(&more, m_press.button, m_press.modifiers);
    more[QStringLiteral("to")] = to;
    m_report.replace(m_press.number, QStringLiteral("drag"), name, more);
}

void SceneMouse::settle()
{
    checkTaker();
    if (!std::exchange(m_outcome.isReleased, false))
        return;
    settleOutcome();
    settlePopups();
    m_outcome = {};
}

void SceneMouse::settleOutcome()
{
    QObject *item = m_outcome.item;
    if (!item)
        return;
    const QVariant value =
        m_outcome.kind == RecordedTarget::Value ? item->property(sceneValueOf(item)) : QVariant();
    if (value != m_outcome.value)
        m_report.add(QStringLiteral("set"), m_outcome.name,
                     {{QStringLiteral("property"), QLatin1String(sceneValueOf(item))},
                      {QStringLiteral("value"), value}});
    const TextCursorState cursor = TextCursorState::ofSceneItem(item);
    if (m_outcome.kind == RecordedTarget::Cursor && !(cursor == m_outcome.cursor) &&
        !isSecretInput(item))
        m_report.addCursor(m_outcome.name, item, cursor.keys());
}

// A press elsewhere closes what is open.
void SceneMouse::settlePopups()
{
    if (m_outcome.kind != RecordedTarget::Nothing || !m_press.root)
        return;
    const bool isClosed =
        std::any_of(m_press.popups.begin(), m_press.popups.end(),
                    [](const QObject *popup) { return !isOpened(popup) && !isOfComboBox(popup); });
    if (isClosed)
        m_report.add(QStringLiteral("type"), sceneWindowOf(m_press.root),
                     {{QStringLiteral("text"), QStringLiteral("<Esc>")}});
}

} // namespace Morvex
