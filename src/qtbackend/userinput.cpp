#include "qtbackend/userinput.h"

#include "qtbackend/identification.h"
#include "qtbackend/turneventloop.h"
#include "qtbackend/typedkeys.h"
#include "qtbackend/usagecounter.h"
#include "qtbackend/whyblocked.h"

#include <QAbstractScrollArea>
#include <QAction>
#include <QCheckBox>
#include <QCoreApplication>
#include <QDateTime>
#include <QGroupBox>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPointer>
#include <QRadioButton>
#include <QStyle>
#include <QStyleOption>
#include <QWidget>
#include <QWindow>

// The way of the keyboard into a window, which the toolkit exports for its own library for tests.
QT_BEGIN_NAMESPACE
extern Q_GUI_EXPORT void qt_handleKeyEvent(QWindow *window, QEvent::Type type, int key,
                                           Qt::KeyboardModifiers modifiers, const QString &text,
                                           bool isRepeated, ushort count);
QT_END_NAMESPACE

namespace Morvex {
namespace {

QPoint indicatorOf(const QWidget *button, QStyle::SubElement indicator)
{
    QStyleOptionButton option;
    option.initFrom(button);
    return button->style()->subElementRect(indicator, &option, button).center();
}

QPoint checkBoxOf(const QGroupBox *box)
{
    QStyleOptionGroupBox option;
    option.initFrom(box);
    option.text = box->title();
    option.textAlignment = box->alignment();
    option.subControls |= QStyle::SC_GroupBoxCheckBox | QStyle::SC_GroupBoxLabel;
    return box->style()
        ->subControlRect(QStyle::CC_GroupBox, &option, QStyle::SC_GroupBoxCheckBox, box)
        .center();
}

// Some widgets react only in a part that may be far from the middle.
QPoint reactingPlace(const QWidget *widget)
{
    if (qobject_cast<const QCheckBox *>(widget))
        return indicatorOf(widget, QStyle::SE_CheckBoxIndicator);
    if (qobject_cast<const QRadioButton *>(widget))
        return indicatorOf(widget, QStyle::SE_RadioButtonIndicator);
    const auto *box = qobject_cast<const QGroupBox *>(widget);
    return box && box->isCheckable() ? checkBoxOf(box) : widget->rect().center();
}

bool isInSight(const QWidget *widget, QPoint place)
{
    while (widget->rect().contains(place) && !widget->isWindow()) {
        place = widget->mapToParent(place);
        widget = widget->parentWidget();
    }
    return widget->rect().contains(place);
}

// The widget that a click at this place gets; null when it is none within widget.
QWidget *receiverOf(QWidget *widget, const QPoint &place, QString *error)
{
    QWidget *window = widget->window();
    QWidget *child = window->childAt(widget->mapTo(window, place));
    QWidget *topmost = child ? child : window;
    const bool isOutside = !isInSight(widget, place);
    if (!isOutside && (topmost == widget || widget->isAncestorOf(topmost) ||
                       widget->testAttribute(Qt::WA_TransparentForMouseEvents)))
        return topmost;
    *error = QStringLiteral("%1,%2 in the widget is %3")
                 .arg(place.x())
                 .arg(place.y())
                 .arg(isOutside ? QStringLiteral("out of sight")
                                : QLatin1String("covered by ") + realNameOf(topmost));
    return nullptr;
}

// Somewhere in the part that can be seen when the best place can't.
QPoint placeToClick(QWidget *widget)
{
    const QPoint best = reactingPlace(widget);
    const QPoint visible = widget->visibleRegion().boundingRect().center();
    QString error;
    return !receiverOf(widget, best, &error) && receiverOf(widget, visible, &error) ? visible
                                                                                    : best;
}

void giveFocusByClick(QWidget *widget)
{
    while (!widget->isWindow() && !(widget->focusPolicy() & Qt::ClickFocus))
        widget = widget->parentWidget();
    if (widget->focusPolicy() & Qt::ClickFocus)
        widget->setFocus(Qt::MouseFocusReason);
}

void sendMouse(QWidget *widget, QEvent::Type type, const QPoint &place, Qt::MouseButtons buttons)
{
    QMouseEvent event(type, place, widget->mapTo(widget->window(), place),
                      widget->mapToGlobal(place), Qt::LeftButton, buttons, Qt::NoModifier);
    event.setTimestamp(static_cast<ulong>(QDateTime::currentMSecsSinceEpoch()));
    QCoreApplication::sendEvent(widget, &event);
}

void activateWindowOf(QWidget *widget)
{
    if (widget->isActiveWindow())
        return;
    widget->activateWindow();
    turnEventLoop(0);
}

void pressAndRelease(const QPointer<QWidget> &target, const QPoint &place, QEvent::Type press)
{
    if (target)
        sendMouse(target, press, place, Qt::LeftButton);
    if (target)
        sendMouse(target, QEvent::MouseButtonRelease, place, Qt::NoButton);
}

void clickWidget(const QPointer<QWidget> &target, const QPoint &place, ClickKind kind)
{
    activateWindowOf(target);
    if (target)
        giveFocusByClick(target);
    pressAndRelease(target, place, QEvent::MouseButtonPress);
    if (kind == ClickKind::Double)
        pressAndRelease(target, place, QEvent::MouseButtonDblClick);
    turnEventLoop(0);
}

QString triggerAction(QAction *action)
{
    const QString error = whyBlocked(action);
    if (!error.isEmpty())
        return error;
    QEvent choice(choiceEventType());
    QCoreApplication::sendEvent(action, &choice);
    action->trigger();
    turnEventLoop(0);
    return {};
}

// Shortcuts are for the active window only.
void takeFocus(const QPointer<QWidget> &widget)
{
    activateWindowOf(widget);
    if (widget)
        widget->setFocus(Qt::OtherFocusReason);
}

// Windows and popups take them without the focus, for their shortcuts.
bool takesKeys(const QWidget *widget)
{
    while (widget->focusProxy())
        widget = widget->focusProxy();
    return widget->isWindow() || widget->window()->windowType() == Qt::Popup ||
           widget->focusPolicy() != Qt::NoFocus;
}

void sendKey(QWidget *widget, QEvent::Type type, const TypedKey &key)
{
    QWidget *window = widget->window();
    QWindow *handle = window->graphicsProxyWidget() ? nullptr : window->windowHandle();
    if (handle) {
        qt_handleKeyEvent(handle, type, key.key, key.modifiers, key.text, false, 1);
        return;
    }
    // A window that is drawn within a scene gets no keys from the screen.
    QKeyEvent event(type, key.key, key.modifiers, key.text);
    QCoreApplication::sendEvent(window->focusWidget() ? window->focusWidget() : widget, &event);
}

void pressKey(const QPointer<QWidget> &widget, const TypedKey &key)
{
    sendKey(widget, QEvent::KeyPress, key);
    if (widget)
        sendKey(widget, QEvent::KeyRelease, key);
}

} // namespace

QString clickObject(QObject *object, const std::optional<QPoint> &place, ClickKind kind)
{
    if (auto *action = qobject_cast<QAction *>(object))
        return triggerAction(action);
    QString error = whyBlocked(object);
    if (!error.isEmpty())
        return error;
    auto *widget = static_cast<QWidget *>(object);
    // What a scroll area shows is a widget of its own.
    if (auto *area = qobject_cast<QAbstractScrollArea *>(widget))
        widget = area->viewport();
    const QPoint where = place ? *place : placeToClick(widget);
    if (!widget->rect().contains(where))
        return QStringLiteral("%1,%2 is outside the widget").arg(where.x()).arg(where.y());
    QWidget *target = receiverOf(widget, where, &error);
    const QString reason = target ? whyBlocked(target) : QString();
    if (!reason.isEmpty())
        return QStringLiteral("%1: %2").arg(realNameOf(target), reason);
    if (target)
        clickWidget(target, target->mapFromGlobal(widget->mapToGlobal(where)), kind);
    return error;
}

bool activateForInput(QObject *object)
{
    auto *widget = qobject_cast<QWidget *>(object);
    if (!widget || !whyBlocked(widget).isEmpty() || widget->isActiveWindow())
        return false;
    widget->activateWindow();
    return true;
}

QString typeText(QObject *object, const QString &text)
{
    std::vector<TypedKey> keys;
    QString error = whyBlocked(object);
    if (error.isEmpty())
        error = readTypedKeys(text, &keys);
    if (!error.isEmpty())
        return error;
    const QPointer<QWidget> widget = static_cast<QWidget *>(object);
    if (!takesKeys(widget))
        return QStringLiteral("the widget does not accept keyboard input");
    takeFocus(widget);
    for (std::size_t typed = 0; typed < keys.size(); ++typed) {
        error =
            widget ? whyBlockedWhileTyping(widget) : QStringLiteral("the widget no longer exists");
        if (!error.isEmpty())
            return QStringLiteral("%1, after %2 of %3 keys")
                .arg(error, QString::number(typed), QString::number(keys.size()));
        pressKey(widget, keys[typed]);
    }
    turnEventLoop(0);
    return {};
}

} // namespace Morvex
