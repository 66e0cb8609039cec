#include "qtbackend/actionwatch.h"

#include "qtbackend/closeorigin.h"
#include "qtbackend/objecttree.h"
#include "qtbackend/secretinputs.h"

#include <QApplication>
#include <QDateTimeEdit>
#include <QDropEvent>
#include <QKeyEvent>
#include <QMdiSubWindow>
#include <QMouseEvent>
#include <QShortcutEvent>
#include <QWindow>

#include <utility>

namespace Morvex {
namespace {

QWidget *widgetShownIn(const QWindow *window)
{
    const QWidgetList widgets = QApplication::topLevelWidgets();
    for (QWidget *widget : widgets) {
        if (widget->windowHandle() == window)
            return widget;
    }
    return nullptr;
}

// Null for a window that no script can close, or that was closed before: a key that is held closes
// it again and again.
const QObject *closedObject(QWindow *window)
{
    if (!window->isVisible())
        return nullptr;
    return sceneRootOf(window) ? static_cast<const QObject *>(window) : widgetShownIn(window);
}

} // namespace

ActionWatch::ActionWatch(QtModel &model, const ActionReport::Sink &sink)
    : m_report(model, sink)
    , m_focus(m_report)
    , m_menus(m_report)
    , m_mouse(m_report, m_menus)
    , m_wheel(m_report)
    , m_keys(m_report, m_focus, m_menus)
    , m_scenes(m_report)
    , m_points(m_report)
{
    const QWidgetList widgets = QApplication::allWidgets();
    for (const QWidget *widget : widgets) {
        noteSecretInput(widget);
        m_mouse.noteShown(widget);
    }
    QCoreApplication::instance()->installEventFilter(this);
}

// Whether it is input of the user. What else matters to a recording is noted here.
bool ActionWatch::isInput(QObject *receiver, QEvent *event)
{
    switch (event->type()) {
    case QEvent::MouseButtonRelease:
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::ShortcutOverride:
    case QEvent::ContextMenu:
        return event->spontaneous();
    case QEvent::Close:
        if (auto *inner = qobject_cast<QMdiSubWindow *>(receiver))
            m_mouse.closeSubWindow(inner);
        return event->spontaneous();
    // Where it goes on to another widget it is no longer spontaneous.
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
    case QEvent::Wheel:
    case QEvent::DragEnter:
    case QEvent::DragMove:
    case QEvent::Drop:
    case QEvent::Shortcut:
    case QEvent::InputMethod:
        return true;
    case QEvent::MouseMove:
        if (event->spontaneous() && receiver->isWindowType()) {
            m_mouse.move(*static_cast<QMouseEvent *>(event));
            m_scenes.move(*static_cast<QMouseEvent *>(event));
        }
        return false;
    case QEvent::FocusOut:
        m_keys.focusOut(receiver);
        return false;
    case QEvent::Show:
        noteSecretInput(receiver);
        m_mouse.noteShown(receiver);
        m_menus.noteShown(receiver);
        Q_FALLTHROUGH();
    case QEvent::EnabledChange:
        m_report.changes().note(receiver, *event);
        return false;
    default:
        return false;
    }
}

bool ActionWatch::eventFilter(QObject *receiver, QEvent *event)
{
    if (!isInput(receiver, event))
        return false;
    if (isForPoints(receiver, event))
        return PointMenu::isOpenedBy(*static_cast<QKeyEvent *>(event));
    if (m_points.owns(receiver))
        return false;
    if (receiver->isWindowType())
        filterForWindow(static_cast<QWindow *>(receiver), event);
    else if (event->type() == QEvent::Shortcut)
        shortcut(receiver, *static_cast<QShortcutEvent *>(event));
    else if (event->type() == QEvent::InputMethod)
        inputMethod(receiver, *static_cast<QInputMethodEvent *>(event));
    else if (receiver->isWidgetType())
        filterForWidget(static_cast<QWidget *>(receiver), event);
    return false;
}

void ActionWatch::filterForWindow(QWindow *window, QEvent *event)
{
    m_report.changes().begin();
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
        if (!event->spontaneous())
            return;
        m_mouse.beginPress();
        settle();
        m_focus.beginPress();
        m_keys.beginAction(m_report.lastNumber());
        m_scenes.mouse(window, event);
        break;
    case QEvent::MouseButtonRelease:
        m_focus.endPress();
        m_keys.beginAction(m_mouse.pressNumber() > 0 ? m_mouse.pressNumber() - 1
                                                     : m_report.lastNumber());
        m_mouse.beginRelease(*static_cast<QMouseEvent *>(event));
        m_scenes.mouse(window, event);
        break;
    case QEvent::KeyPress:
    case QEvent::ShortcutOverride:
        key(window, *static_cast<QKeyEvent *>(event));
        break;
    case QEvent::ContextMenu:
        settle();
        m_keys.menuKey();
        break;
    case QEvent::KeyRelease:
        m_scenes.releaseKey();
        m_points.release(*static_cast<QKeyEvent *>(event));
        break;
    case QEvent::Wheel:
        settle();
        m_wheel.begin();
        m_scenes.mouse(window, event);
        break;
    case QEvent::DragEnter:
    case QEvent::DragMove:
        m_mouse.dragMoved();
        m_scenes.dragData();
        break;
    case QEvent::Drop:
        drop(window, *static_cast<QDropEvent *>(event));
        break;
    case QEvent::Close:
        settle();
        m_keys.beginAction(m_report.lastNumber());
        if (const QObject *closed = isClosedByProgram() ? nullptr : closedObject(window))
            m_report.add(QStringLiteral("close"), closed);
        break;
    default:
        break;
    }
    settleOnceHandled();
}

// After the event, in whatever loop it is handled.
void ActionWatch::settleOnceHandled()
{
    if (std::exchange(m_isSettling, true))
        return;
    QMetaObject::invokeMethod(
        this,
        [this] {
            m_isSettling = false;
            settle();
            m_report.changes().settle();
            beFirst();
        },
        Qt::QueuedConnection);
}

void ActionWatch::key(QWindow *window, const QKeyEvent &event)
{
    if (m_keys.isKnown(event)) {
        m_heldKey = 0;
        return;
    }
    m_mouse.endDrag();
    settle();
    const int before = m_report.lastNumber();
    m_keys.beginAction(before);
    if (!m_scenes.pressKey(window, event))
        pressKey(event);
    const bool isReported = m_report.lastNumber() > before;
    m_heldKey = isReported && event.type() == QEvent::ShortcutOverride ? m_report.lastNumber() : 0;
}

// Also before a filter that the application has installed later, and with which it takes events.
// That of a drag has to come before.
void ActionWatch::beFirst()
{
    if (QGuiApplication::mouseButtons() == Qt::NoButton)
        QCoreApplication::instance()->installEventFilter(this);
}

void ActionWatch::drop(QWindow *window, const QDropEvent &event)
{
    m_scenes.dropData(window, event.pos());
    m_mouse.dropAt(window->mapToGlobal(event.pos()), event.dropAction() == Qt::MoveAction);
}

void ActionWatch::shortcut(QObject *owner, const QShortcutEvent &event)
{
    m_heldKey = 0;
    if (!m_scenes.shortcut(event))
        m_keys.shortcut(owner, event);
}

void ActionWatch::inputMethod(QObject *receiver, const QInputMethodEvent &event)
{
    if (!m_scenes.inputMethod(receiver, event))
        m_keys.inputMethod(receiver, event);
}

void ActionWatch::filterForWidget(QWidget *widget, QEvent *event)
{
    if (m_scenes.mouse(widget, event))
        return;
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
        m_mouse.press(widget, *static_cast<QMouseEvent *>(event));
        break;
    case QEvent::MouseButtonRelease:
        m_mouse.release(widget, *static_cast<QMouseEvent *>(event));
        break;
    case QEvent::Wheel:
        m_wheel.turn(widget);
        break;
    default:
        break;
    }
}

// In the calendar of a date they choose one.
void ActionWatch::pressKey(const QKeyEvent &event)
{
    if (QDateTimeEdit *edit = dateOfCalendar(QApplication::activePopupWidget()))
        m_mouse.expectChange(edit);
    else
        m_keys.press(event);
}

// The keys are none of the application. Those in the open menu are.
bool ActionWatch::isForPoints(QObject *receiver, QEvent *event)
{
    const bool isKey =
        event->type() == QEvent::KeyPress || event->type() == QEvent::ShortcutOverride;
    if (!isKey || !receiver->isWindowType())
        return false;
    auto *key = static_cast<QKeyEvent *>(event);
    if (!PointMenu::isOpenedBy(*key))
        return m_points.isOpen();
    if (!m_keys.isKnown(*key)) {
        settle();
        m_points.expect();
    }
    return true;
}

void ActionWatch::settle()
{
    // It does nothing without those that follow it in a shortcut.
    m_report.cancel(std::exchange(m_heldKey, 0));
    m_mouse.settle();
    m_wheel.settle();
    m_keys.settle();
    m_focus.settle();
    m_scenes.settle();
    m_menus.settle();
}

} // namespace Morvex
