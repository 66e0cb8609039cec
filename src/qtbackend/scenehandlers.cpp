#include "qtbackend/scenehandlers.h"

#include "qtbackend/sceneaccess.h"

#include <QGuiApplication>
#include <QMetaMethod>
#include <QObject>
#include <QPoint>
#include <QStyleHints>
#include <QVariant>

#include <algorithm>
#include <initializer_list>
#include <limits>

namespace Morvex {
namespace {

// What is shorter is a click to the user as well.
const int shortestHoldMs = 300;
const int noHold = std::numeric_limits<int>::max();

// By its name the function is one of all objects.
struct Signals : QObject
{
    using QObject::isSignalConnected;
};

bool isAnyConnected(const QObject *object, std::initializer_list<const char *> names)
{
    return std::any_of(names.begin(), names.end(),
                       [object](const char *name) { return isConnected(object, name); });
}

const QObject *handlerOf(const QObject *item, const char *type)
{
    const QObjectList &children = item->children();
    const auto found = std::find_if(children.begin(), children.end(), [type](const QObject *child) {
        return child->inherits(type) && child->property("enabled").toBool();
    });
    return found == children.end() ? nullptr : *found;
}

bool isHeld(const QObject *taker)
{
    const QObject *tap = handlerOf(taker, "QQuickTapHandler");
    const bool isButton = taker->inherits("QQuickAbstractButton");
    return (tap && isConnected(tap, "longPressed")) || taker->inherits("QQuickDelayButton") ||
           (isButton && taker->property("autoRepeat").toBool()) ||
           ((isButton || taker->inherits("QQuickMouseArea")) && isConnected(taker, "pressAndHold"));
}

} // namespace

bool isConnected(const QObject *item, const char *signal)
{
    const QMetaObject *metaObject = item->metaObject();
    for (int i = 0; i < metaObject->methodCount(); ++i) {
        const QMetaMethod method = metaObject->method(i);
        if (method.methodType() == QMetaMethod::Signal && method.name() == signal &&
            (item->*&Signals::isSignalConnected)(method))
            return true;
    }
    return false;
}

bool hasTapHandler(const QObject *item)
{
    const QObjectList &children = item->children();
    return std::any_of(children.begin(), children.end(),
                       [](const QObject *child) { return child->inherits("QQuickTapHandler"); });
}

bool movesItem(const QObject *taker)
{
    const auto *drag = taker->property("drag").value<QObject *>();
    return drag && drag->property("target").value<QObject *>();
}

bool isDragged(const QObject *taker)
{
    if (taker->inherits("QQuickSwipeDelegate"))
        return true;
    if (!taker->inherits("QQuickMouseArea"))
        return false;
    return movesItem(taker) ||
           isAnyConnected(taker, {"positionChanged", "mouseXChanged", "mouseYChanged"}) ||
           (isConnected(taker, "pressed") && isConnected(taker, "released"));
}

int holdIntervalOf(const QObject *taker)
{
    if (!isHeld(taker))
        return noHold;
    const QVariant own = taker->property("pressAndHoldInterval");
    const bool isAtOnce =
        taker->inherits("QQuickDelayButton") || taker->property("autoRepeat").toBool();
    const int usual = QGuiApplication::styleHints()->mousePressAndHoldInterval();
    return isAtOnce ? shortestHoldMs : own.isValid() ? own.toInt() : usual;
}

QObject *hoveredAround(const QObject *item, const QPoint &windowPlace)
{
    const SceneAccess &access = *SceneAccess::self();
    for (QObject *around = access.parentOf(item); around; around = access.parentOf(around)) {
        const QObject *handler = handlerOf(around, "QQuickHoverHandler");
        const QObjectList children = access.childrenOf(around);
        const bool isArea =
            std::any_of(children.begin(), children.end(), [&](const QObject *child) {
                return child->inherits("QQuickMouseArea") &&
                       child->property("hoverEnabled").toBool() && access.isAt(child, windowPlace);
            });
        if (isArea || (handler && handler->property("hovered").toBool()) ||
            (around->property("hovered").toBool() && isConnected(around, "hoveredChanged")))
            return around;
    }
    return nullptr;
}

QObject *wheeledAt(QObject *root, const QPoint &windowPlace)
{
    const SceneAccess &access = *SceneAccess::self();
    for (QObject *item :
         {access.takerAt(root, windowPlace, Qt::LeftButton), access.drawnAt(root, windowPlace)}) {
        for (; item && !isScrolling(item); item = access.parentOf(item)) {
            const bool isArea = item->inherits("QQuickMouseArea") && isConnected(item, "wheel");
            if (isArea || handlerOf(item, "QQuickWheelHandler"))
                return item;
        }
    }
    return nullptr;
}

QObject *dropAreaAt(const QObject *item, const QPoint &windowPlace)
{
    const SceneAccess &access = *SceneAccess::self();
    for (QObject *child : access.childrenOf(item)) {
        const bool isArea = child->inherits("QQuickDropArea") &&
                            child->property("containsDrag").toBool() &&
                            access.isAt(child, windowPlace);
        if (QObject *area = isArea ? child : dropAreaAt(child, windowPlace))
            return area;
    }
    return nullptr;
}

QObject *draggedAround(QObject *item)
{
    while (item && !handlerOf(item, "QQuickDragHandler"))
        item = SceneAccess::self()->parentOf(item);
    return item;
}

bool isDragging(const QObject *item)
{
    const QObject *handler = handlerOf(item, "QQuickDragHandler");
    return handler && handler->property("active").toBool();
}

bool isMoving(const QObject *item)
{
    return isScrolling(item) && item->property("moving").toBool();
}

bool isScrolling(const QObject *item)
{
    return item && (item->inherits("QQuickFlickable") || item->inherits("QQuickPathView"));
}

} // namespace Morvex
