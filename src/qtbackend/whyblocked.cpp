#include "qtbackend/whyblocked.h"

#include "qtbackend/embedded.h"
#include "qtbackend/identification.h"
#include "qtbackend/objecttree.h"
#include "qtbackend/quickwidgets.h"
#include "qtbackend/sceneaccess.h"

#include <QAction>
#include <QApplication>
#include <QGraphicsView>
#include <QWidget>
#include <QWindow>

#include <algorithm>

namespace Morvex {
namespace {

// That of a menu or another popup is where it belongs to, that of a widget in a scene is where the
// scene is shown.
const QWidget *windowOf(const QWidget *widget)
{
    if (const QGraphicsView *view = viewOfEmbedded(widget))
        return windowOf(view);
    const QWidget *window = widget->window();
    while (window->windowType() == Qt::Popup && window->parentWidget())
        window = window->parentWidget()->window();
    return window;
}

bool isWithin(const QWidget *window, const QWidget *ancestor)
{
    while (window && window != ancestor)
        window = window->parentWidget();
    return window;
}

const QWidget *outermost(const QWidget *widget)
{
    while (widget->parentWidget())
        widget = widget->parentWidget();
    return widget;
}

bool isBlockedBy(const QWidget *dialog, const QWidget *window)
{
    if (!dialog->isVisible() || !dialog->isModal() || isWithin(window, dialog))
        return false;
    return dialog->windowModality() == Qt::ApplicationModal ||
           outermost(dialog) == outermost(window);
}

// Null when there is none.
const QWidget *blockerOf(const QWidget *widget)
{
    const QWidget *window = windowOf(widget);
    const QWidget *newest = QApplication::activeModalWidget();
    if (!newest || isWithin(window, newest) || window->windowType() == Qt::Popup)
        return nullptr;
    if (isBlockedBy(newest, window))
        return newest;
    const QWidgetList windows = QApplication::topLevelWidgets();
    const auto blocker =
        std::find_if(windows.begin(), windows.end(),
                     [window](const QWidget *other) { return isBlockedBy(other, window); });
    return blocker == windows.end() ? nullptr : *blocker;
}

// A combo box has its list, a line edit its completions.
bool isOwner(const QWidget *widget, const QWidget *popup)
{
    for (const QWidget *owner : {popup->parentWidget(), popup->focusProxy()}) {
        if (owner && (owner == widget || owner->focusProxy() == widget))
            return true;
    }
    return false;
}

// Null when none takes what is meant for the widget.
const QWidget *popupBefore(const QWidget *widget)
{
    const QWidget *popup = QApplication::activePopupWidget();
    return popup && !isWithin(widget, popup) && !isOwner(widget, popup) ? popup : nullptr;
}

QString blockedBy(const char *what, const char *kind, const QWidget *blocker)
{
    return QStringLiteral("%1 is blocked by the %2 %3")
        .arg(QLatin1String(what), QLatin1String(kind), realNameOf(blocker));
}

// Null when the action can be reached somewhere, or is nowhere.
const QWidget *blockerOf(const QAction *action)
{
    QWidgetList places = action->associatedWidgets();
    if (places.isEmpty() && action->parentWidget())
        places += action->parentWidget();
    const QWidget *blocker = nullptr;
    for (const QWidget *place : qAsConst(places)) {
        blocker = blockerOf(place);
        if (!blocker)
            break;
    }
    return blocker;
}

QString whyItemIsBlocked(const QObject *item)
{
    const SceneAccess &access = *SceneAccess::self();
    if (!access.isShown(item))
        return QStringLiteral("the item is not visible");
    if (!access.isUsable(item))
        return QStringLiteral("the item is disabled");
    if (const QWidget *widget = widgetOf(item))
        return whyBlocked(widget);
    return access.windowOf(item)->isVisible() ? QString()
                                              : QStringLiteral("the window is not visible");
}

} // namespace

bool isBlockedByDialog(const QWidget *widget)
{
    return blockerOf(widget);
}

QString whyBlocked(const QObject *object)
{
    if (isSceneItem(object))
        return whyItemIsBlocked(object);
    const QString reason = whyBlockedWhileTyping(object);
    const QWidget *popup =
        reason.isEmpty() ? popupBefore(static_cast<const QWidget *>(object)) : nullptr;
    return popup ? blockedBy("the widget", "popup", popup) : reason;
}

QString whyBlockedWhileTyping(const QObject *object)
{
    if (!object->isWidgetType())
        return QStringLiteral("the object is not a widget");
    const auto *widget = static_cast<const QWidget *>(object);
    if (!widget->isVisible())
        return QStringLiteral("the widget is not visible");
    if (!widget->isEnabled())
        return QStringLiteral("the widget is disabled");
    const QWidget *blocker = blockerOf(widget);
    return blocker ? blockedBy("the widget", "dialog", blocker) : QString();
}

QString whyBlocked(const QAction *action)
{
    if (!action->isVisible())
        return QStringLiteral("the action is not visible");
    if (!action->isEnabled())
        return QStringLiteral("the action is disabled");
    const QWidget *blocker = blockerOf(action);
    return blocker ? blockedBy("the action", "dialog", blocker) : QString();
}

} // namespace Morvex
