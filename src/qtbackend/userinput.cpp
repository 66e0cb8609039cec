#include "qtbackend/userinput.h"

#include "qtbackend/buttonsup.h"
#include "qtbackend/embedded.h"
#include "qtbackend/inputsequence.h"
#include "qtbackend/item.h"
#include "qtbackend/keyevents.h"
#include "qtbackend/menuitem.h"
#include "qtbackend/objecttree.h"
#include "qtbackend/quickwidgets.h"
#include "qtbackend/sceneaccess.h"
#include "qtbackend/scenereveal.h"
#include "qtbackend/typedkeys.h"
#include "qtbackend/usagecounter.h"
#include "qtbackend/whyblocked.h"
#include "qtbackend/windowactivation.h"

#include <QAction>
#include <QApplication>
#include <QGraphicsProxyWidget>
#include <QGraphicsView>
#include <QMdiSubWindow>
#include <QPointer>
#include <QTimer>
#include <QWidget>
#include <QWindow>

namespace Morvex {
namespace {

const int maxSettlingMs = 500;
// A menu takes a click for one that is to close it until the mouse has moved some times.
const int movesBeforeClick = 8;
const int dragSteps = 10;
const int stepsToCorner = 2;
// A call has a minute for all that it does.
const int maxHoldMs = 30000;

QString triggerAction(QAction *action, InputSequence &input)
{
    const QString error = whyBlocked(action);
    if (!error.isEmpty())
        return error;
    const QPointer<QAction> alive = action;
    input.add([alive] {
        if (!alive)
            return QStringLiteral("the action no longer exists");
        QEvent choice(choiceEventType());
        QCoreApplication::sendEvent(alive, &choice);
        if (alive)
            alive->trigger();
        return QString();
    });
    return {};
}

// The action itself where no mouse comes to it: in a menu that is not open, without a menu bar.
QAction *actionWithoutPlace(const MouseTarget::Place &place)
{
    if (place.item.isEmpty()) {
        auto *action = qobject_cast<QAction *>(place.object);
        return action && !openMenuOf(action) ? action : nullptr;
    }
    QString error;
    const auto entry =
        std::dynamic_pointer_cast<MenuItem>(existingItem(place.object, place.item, &error));
    return entry && !entry->canBeSeen() ? entry->action() : nullptr;
}

void moveTo(const MouseSpot &spot, Qt::MouseButtons pressed, Qt::KeyboardModifiers modifiers)
{
    for (int i = movesBeforeClick; i >= 0; --i) {
        MouseSpot near = spot;
        near.place.rx() += i % 2;
        moveMouse(near, pressed, modifiers);
    }
}

void click(const MouseSpot &spot, const MouseUse &use)
{
    const int count = use.gesture == QLatin1String("doubleClick") ? 2 : 1;
    endClicks();
    moveTo(spot, Qt::NoButton, use.modifiers);
    for (int i = 0; i < count; ++i) {
        pressMouse(spot, use.button, use.modifiers);
        releaseMouse(spot, use.button, use.modifiers);
    }
}

QString useAt(const std::shared_ptr<MouseTarget> &target, const MouseUse &use)
{
    QString error;
    const MouseSpot spot = target->spot(&error);
    if (!error.isEmpty())
        return error;
    if (use.gesture == QLatin1String("wheel"))
        turnWheel(spot, use.wheel, use.modifiers);
    else if (use.gesture == QLatin1String("hover"))
        moveTo(spot, Qt::NoButton, use.modifiers);
    else
        click(spot, use);
    return {};
}

// For as long as it takes, in steps of their own.
void addHold(const std::shared_ptr<MouseTarget> &target, const MouseUse &use, InputSequence &input)
{
    const auto spot = std::make_shared<MouseSpot>();
    input.add([target, use, spot] {
        QString error;
        *spot = target->spot(&error);
        if (error.isEmpty()) {
            endClicks();
            moveTo(*spot, Qt::NoButton, use.modifiers);
            pressMouse(*spot, use.button, use.modifiers);
        }
        return error;
    });
    input.waitUntil([] { return false; }, qMin(use.hold, maxHoldMs));
    input.add([use, spot] {
        passTime(use.hold);
        releaseMouse(*spot, use.button, use.modifiers);
        return QString();
    });
}

struct Drag
{
    std::shared_ptr<MouseTarget> from;
    std::shared_ptr<MouseTarget> to;
    MouseSpot start;
    // Relative to the start, in the window in which it started, which gets all events until the
    // button is released.
    QVector<QPoint> places;
};

QString beginDrag(Drag *drag, const MouseUse &use)
{
    QString error;
    const MouseSpot end = drag->to->spot(&error);
    if (!error.isEmpty())
        return error;
    drag->start = drag->from->spot(&error);
    if (!error.isEmpty())
        return error;
    QPoint way = end.in(drag->start.window).place - drag->start.place;
    way += drag->to->wayBeyond(way);
    for (const QPoint &corner : use.via)
        drag->places += corner - use.from.place.value_or(QPoint());
    drag->places += way;
    endClicks();
    moveMouse(drag->start, Qt::NoButton, use.modifiers);
    pressMouse(drag->start, use.button, use.modifiers);
    return {};
}

// One step for each move: what is dragged may run a loop of its own from the first one on.
void addDrag(const std::shared_ptr<MouseTarget> &from, const std::shared_ptr<MouseTarget> &to,
             const MouseUse &use, InputSequence &input)
{
    const auto drag = std::make_shared<Drag>();
    drag->from = from;
    drag->to = to;
    input.add([drag, use] { return beginDrag(drag.get(), use); });
    const int parts = use.via.size() + 1;
    const int steps = parts == 1 ? dragSteps : stepsToCorner;
    for (int i = 1; i <= parts * steps + 1; ++i) {
        input.add([drag, use, i, parts, steps] {
            MouseSpot spot = drag->start;
            const int part = qMin((i - 1) / steps, parts - 1);
            const QPoint begin = part > 0 ? drag->places[part - 1] : QPoint();
            const QPoint way = drag->places[part] - begin;
            spot.place += begin + way * qMin(i - part * steps, steps) / steps;
            moveMouse(spot, use.button, use.modifiers);
            return QString();
        });
    }
    input.add([drag, use] {
        MouseSpot spot = drag->start;
        spot.place += drag->places.constLast();
        releaseMouse(spot, use.button, use.modifiers);
        return QString();
    });
}

// Windows and popups take them without the focus, for their shortcuts.
bool takesKeys(const QWidget *widget)
{
    while (widget->focusProxy())
        widget = widget->focusProxy();
    return widget->isWindow() || widget->window()->windowType() == Qt::Popup ||
           widget->focusPolicy() != Qt::NoFocus;
}

// The dialog that the keys before have opened; null when there is none. It may be that from which
// they were typed.
QWidget *newDialog(const QWidget *widget, const QPointer<QWidget> &dialogBefore)
{
    QWidget *dialog = QApplication::activeModalWidget();
    return dialog && dialog != dialogBefore && (!widget || widget->window() != dialog) ? dialog
                                                                                       : nullptr;
}

QString pressKey(const QPointer<QWidget> &widget, const TypedKey &key)
{
    if (!widget)
        return QStringLiteral("the widget no longer exists");
    QString error = whyBlockedWhileTyping(widget);
    if (!error.isEmpty())
        return error;
    // The widget may go with the key that is pressed, but not its window.
    const QPointer<QWidget> window = widget->window();
    if (key.key == Qt::Key_Menu)
        askForContextMenu(widget, key);
    if (widget)
        sendKey(widget, QEvent::KeyPress, key);
    if (widget)
        sendKey(widget, QEvent::KeyRelease, key);
    return {};
}

void addKeys(const QPointer<QWidget> &widget, const std::vector<TypedKey> &keys,
             InputSequence &input)
{
    const QPointer<QWidget> dialogBefore = QApplication::activeModalWidget();
    for (std::size_t i = 0; i < keys.size(); ++i) {
        waitForActivation(
            [widget, dialogBefore] {
                const QWidget *dialog = newDialog(widget, dialogBefore);
                return !dialog || dialog->isActiveWindow();
            },
            input);
        input.add([widget, dialogBefore, key = keys[i], i, count = keys.size()] {
            QWidget *dialog = newDialog(widget, dialogBefore);
            const QString error = pressKey(dialog ? dialog : widget.data(), key);
            return error.isEmpty() ? QString()
                                   : QStringLiteral("%1, after %2 of %3 keys")
                                         .arg(error, QString::number(i), QString::number(count));
        });
    }
    input.waitUntil(buttonsUpAgain(), maxSettlingMs);
}

// A widget may do more once the focus has come, such as select its text. No user types before.
void giveFocus(const QPointer<QWidget> &widget, InputSequence &input)
{
    const auto hasSettled = std::make_shared<bool>(true);
    input.add([widget, hasSettled] {
        const QWidget *before = QApplication::focusWidget();
        if (QGraphicsView *view = widget ? viewOfEmbedded(widget) : nullptr) {
            view->setFocus(Qt::OtherFocusReason);
            if (QGraphicsProxyWidget *proxy = widget ? proxyOf(widget) : nullptr)
                proxy->setFocus(Qt::OtherFocusReason);
        }
        if (widget)
            widget->setFocus(Qt::OtherFocusReason);
        *hasSettled = QApplication::focusWidget() == before;
        QTimer::singleShot(0, [hasSettled] { *hasSettled = true; });
        return QString();
    });
    input.waitUntil([hasSettled] { return *hasSettled; }, maxSettlingMs);
}

// A window, with its root, keeps the focus where it is.
void typeIntoItem(QObject *object, QObject *root, const std::vector<TypedKey> &keys,
                  InputSequence &input)
{
    revealSceneItem(root ? root : object, input);
    const QPointer<QWidget> widget = widgetOf(object);
    const QPointer<QWindow> window = widget ? widget->window()->windowHandle()
                                            : SceneAccess::self()->windowOf(root ? root : object);
    const QPointer<QObject> item = root ? nullptr : object;
    input.add([widget, item] {
        if (widget)
            widget->setFocus(Qt::OtherFocusReason);
        if (item)
            SceneAccess::self()->giveFocus(item);
        return QString();
    });
    for (const TypedKey &key : keys) {
        waitForSceneAtRest(root ? root : object, input);
        input.add([window, key] {
            if (!window)
                return QStringLiteral("the window no longer exists");
            sendKeyTo(window, key);
            return QString();
        });
    }
}

} // namespace

QString closeWindow(QObject *object, InputSequence &input)
{
    QWindow *shown = qobject_cast<QWindow *>(object);
    if (object->isWidgetType())
        shown = static_cast<QWidget *>(object)->window()->windowHandle();
    else if (isSceneItem(object))
        shown = SceneAccess::self()->windowOf(object);
    const QString error = object->isWindowType() ? QString() : whyBlocked(object);
    if (!error.isEmpty())
        return error;
    if (const QPointer<QMdiSubWindow> inner = qobject_cast<QMdiSubWindow *>(object)) {
        input.add([inner] {
            if (inner)
                inner->close();
            return QString();
        });
        return {};
    }
    if (!shown || !shown->isVisible())
        return QStringLiteral("there is no window to be closed");
    input.add([window = QPointer<QWindow>(shown)] {
        if (window)
            window->close();
        return QString();
    });
    return {};
}

QString useMouse(const MouseUse &use, InputSequence &input)
{
    QString error;
    const bool isClick = use.gesture == QLatin1String("click");
    if (QAction *action = actionWithoutPlace(use.from))
        return isClick && use.button == Qt::LeftButton
                   ? triggerAction(action, input)
                   : QStringLiteral("the action is nowhere to be seen, and can only be clicked");
    const auto target = MouseTarget::make(use.from, &error);
    if (!target)
        return error;
    if (use.gesture != QLatin1String("drag")) {
        target->reveal(input);
        if (isClick && use.hold > 0)
            addHold(target, use, input);
        else
            input.add([target, use] { return useAt(target, use); });
        return {};
    }
    const auto to = MouseTarget::make(use.to, &error);
    if (!to)
        return error;
    to->setEnd();
    target->reveal(input);
    to->reveal(input);
    addDrag(target, to, use, input);
    return {};
}

QString typeText(QObject *object, const QString &text, InputSequence &input)
{
    std::vector<TypedKey> keys;
    QObject *root = SceneAccess::self() ? SceneAccess::self()->rootOf(object) : nullptr;
    QString error = whyBlocked(root ? root : object);
    if (error.isEmpty())
        error = readTypedKeys(text, &keys);
    if (!error.isEmpty())
        return error;
    if (root || isSceneItem(object)) {
        typeIntoItem(object, root, keys, input);
        return {};
    }
    const QPointer<QWidget> widget = static_cast<QWidget *>(object);
    if (!takesKeys(widget))
        return QStringLiteral("the widget does not accept keyboard input");
    waitForActiveWindow(widget, input);
    giveFocus(widget, input);
    addKeys(widget, keys, input);
    return {};
}

QString typeKeys(QWidget *widget, const QString &text, InputSequence &input)
{
    std::vector<TypedKey> keys;
    const QString error = readTypedKeys(text, &keys);
    if (error.isEmpty())
        addKeys(widget, keys, input);
    return error;
}

} // namespace Morvex
