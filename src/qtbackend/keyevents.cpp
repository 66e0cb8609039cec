#include "qtbackend/keyevents.h"

#include "qtbackend/embedded.h"
#include "qtbackend/typedkeys.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QGraphicsView>
#include <QKeyEvent>
#include <QWidget>
#include <QWindow>

// The way of the keyboard into a window, which the toolkit exports for its own library for tests.
QT_BEGIN_NAMESPACE
extern Q_GUI_EXPORT void qt_handleKeyEvent(QWindow *window, QEvent::Type type, int key,
                                           Qt::KeyboardModifiers modifiers, const QString &text,
                                           bool isRepeated, ushort count);
QT_END_NAMESPACE

namespace Morvex {

void sendKey(QWidget *widget, QEvent::Type type, const TypedKey &key)
{
    QWidget *window = widget->window();
    const QGraphicsView *view = viewOfEmbedded(widget);
    // Null while no window of the application is active.
    const QWidget *focus = view ? focusWithin(QApplication::focusWidget()) : nullptr;
    const bool isInFocus = focus && focus->window() == window;
    QWindow *handle = proxyOf(widget) ? nullptr : window->windowHandle();
    if (isInFocus)
        handle = view->window()->windowHandle();
    if (handle) {
        qt_handleKeyEvent(handle, type, key.key, key.modifiers, key.text, false, 1);
        return;
    }
    // A window in a scene that has not got the focus gets no keys from the screen.
    QKeyEvent event(type, key.key, key.modifiers, key.text);
    QCoreApplication::sendEvent(window->focusWidget() ? window->focusWidget() : widget, &event);
}

void askForContextMenu(const QWidget *widget, const TypedKey &key)
{
    QWindow *handle = widget->window()->windowHandle();
    QContextMenuEvent menu(QContextMenuEvent::Keyboard, QPoint(), QPoint(), key.modifiers);
    if (handle)
        QCoreApplication::sendEvent(handle, &menu);
}

void sendKeyTo(QWindow *window, const TypedKey &key)
{
    for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease})
        qt_handleKeyEvent(window, type, key.key, key.modifiers, key.text, false, 1);
}

} // namespace Morvex
