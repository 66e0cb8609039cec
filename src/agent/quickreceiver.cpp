#include "agent/quickreceiver.h"

#include <QQuickItem>

#include <algorithm>
#include <functional>

namespace Morvex {
namespace {

using Condition = std::function<bool(const QQuickItem *)>;

bool isPopupModal(const QQuickItem *popupItem)
{
    return popupItem->isVisible() && popupItem->parent() &&
           popupItem->parent()->property("modal").toBool();
}

bool handles(const QObject *handler, Qt::MouseButton button)
{
    return handler->inherits("QQuickTapHandler") && handler->property("enabled").toBool() &&
           handler->property("acceptedButtons").toInt() & button;
}

bool hasHandler(const QQuickItem *item, Qt::MouseButton button)
{
    const QObjectList &children = item->children();
    return std::any_of(children.begin(), children.end(),
                       [button](const QObject *child) { return handles(child, button); });
}

// What a control shows its state by asks for presses and leaves them to the control.
bool isIndicator(const QQuickItem *item)
{
    const QQuickItem *control = item->parentItem();
    return control && control->inherits("QQuickControl") &&
           control->property("indicator").value<QQuickItem *>() == item;
}

// Texts want the mouse for links in them. What is above all for popups holds the mouse up for
// those that are modal.
bool takesMouse(const QQuickItem *item, Qt::MouseButton button = Qt::LeftButton)
{
    if (item->isEnabled() && hasHandler(item, button))
        return true;
    if (!item->isEnabled() || !(item->acceptedMouseButtons() & button) ||
        item->inherits("QQuickText") || isIndicator(item) ||
        item->property("propagateComposedEvents").toBool())
        return false;
    if (!item->inherits("QQuickOverlay"))
        return true;
    const QList<QQuickItem *> popups = item->childItems();
    return std::any_of(popups.begin(), popups.end(), isPopupModal);
}

bool isDrawn(const QQuickItem *item)
{
    return item->flags() & QQuickItem::ItemHasContents;
}

QList<QQuickItem *> topmostFirst(const QQuickItem *item)
{
    QList<QQuickItem *> items = item->childItems();
    std::reverse(items.begin(), items.end());
    std::stable_sort(
        items.begin(), items.end(),
        [](const QQuickItem *one, const QQuickItem *other) { return one->z() > other->z(); });
    return items;
}

// The topmost item at the place that fits; null for none.
QQuickItem *itemAt(QQuickItem *item, const QPointF &place, const Condition &fits)
{
    const bool isThere = item->contains(item->mapFromScene(place));
    if (!item->isVisible() || (item->clip() && !isThere))
        return nullptr;
    bool isOwnTurn = true;
    const QList<QQuickItem *> children = topmostFirst(item);
    for (QQuickItem *child : children) {
        if (isOwnTurn && child->z() < 0) {
            isOwnTurn = false;
            if (isThere && fits(item))
                return item;
        }
        if (QQuickItem *found = itemAt(child, place, fits))
            return found;
    }
    return isOwnTurn && isThere && fits(item) ? item : nullptr;
}

QQuickItem *clickable(QQuickItem *item)
{
    return item->inherits("QQuickMouseArea") && item->parentItem() ? item->parentItem() : item;
}

} // namespace

QQuickItem *takerAt(QQuickItem *root, const QPointF &place, Qt::MouseButton button)
{
    return itemAt(root, place,
                  [button](const QQuickItem *item) { return takesMouse(item, button); });
}

QQuickItem *drawnItem(QQuickItem *root, const QPointF &place)
{
    return itemAt(root, place, isDrawn);
}

QObjectList popupsOf(const QQuickItem &overlay)
{
    QObjectList popups;
    for (const QQuickItem *item : overlay.childItems()) {
        if (item->isVisible() && item->parent() && item->parent()->inherits("QQuickPopup"))
            popups += item->parent();
    }
    return popups;
}

QQuickItem *clickedItem(QQuickItem *root, const QPointF &place)
{
    if (QQuickItem *taker = takerAt(root, place, Qt::LeftButton))
        return clickable(taker);
    QQuickItem *drawn = drawnItem(root, place);
    return drawn ? drawn : root;
}

QQuickItem *coverOf(QQuickItem *root, const QQuickItem *item, const QPointF &place)
{
    QQuickItem *top = itemAt(root, place, [item](const QQuickItem *other) {
        return other == item || takesMouse(other);
    });
    if (!top || top == item || item->isAncestorOf(top))
        return nullptr;
    QQuickItem *cover = clickable(top);
    return cover == item || cover->isAncestorOf(item) ? nullptr : cover;
}

} // namespace Morvex
