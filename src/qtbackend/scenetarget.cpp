#include "qtbackend/scenetarget.h"

#include "qtbackend/quickwidgets.h"
#include "qtbackend/sceneaccess.h"
#include "qtbackend/scenehandlers.h"
#include "qtbackend/scenelinks.h"
#include "qtbackend/scenevalue.h"
#include "qtbackend/sceneview.h"

#include <QWindow>

#include <algorithm>

namespace Morvex {
namespace {

// One that is larger, and has no text, may be a canvas.
const int maxPlainSize = 100;

bool inheritsOneOf(const QObject *item, std::initializer_list<const char *> types)
{
    return std::any_of(types.begin(), types.end(),
                       [item](const char *type) { return item->inherits(type); });
}

// They take the mouse lest something below them gets it, or to be scrolled.
bool isPassive(const QObject *item)
{
    const QObject *around = SceneAccess::self()->parentOf(item);
    const bool isDimmer = around && around->inherits("QQuickOverlay");
    return isDimmer || inheritsOneOf(item, {"QQuickPane", "QQuickOverlay", "QQuickPopupItem",
                                            "QQuickFlickable", "QQuickPathView", "QQuickScrollBar",
                                            "QQuickScrollIndicator", "QQuickSplitView",
                                            "QQuickMenuBar", "QQuickContainer", "QQuickRootItem"});
}

QPoint centreOf(const QObject *item)
{
    return SceneAccess::self()->visiblePlaceOf(item).center();
}

// An area is for the item that it is in, unless that has other parts, too.
QObject *meantItem(QObject *taker)
{
    const SceneAccess &access = *SceneAccess::self();
    const bool isArea = inheritsOneOf(taker, {"QQuickMouseArea", "QQuickDropArea"});
    QObject *around = isArea ? access.parentOf(taker) : nullptr;
    const bool isWhole = around && access.parentOf(around) && access.isAt(taker, centreOf(around));
    return isWhole ? around : taker;
}

bool isCanvas(const QObject *item)
{
    if (inheritsOneOf(item, {"QQuickCanvasItem", "QQuickPaintedItem"}))
        return true;
    const QRect place = SceneAccess::self()->placeOf(item);
    return !item->inherits("QQuickControl") &&
           std::min(place.width(), place.height()) > maxPlainSize && shownTextOf(item).isEmpty();
}

bool isNamed(const QObject *item)
{
    return !item->objectName().isEmpty() || !item->property("text").toString().isEmpty();
}

RecordedTarget targetOf(RecordedTarget::Kind kind, QObject *object)
{
    RecordedTarget target;
    target.kind = kind;
    target.object = object;
    return target;
}

// What is clicked on in a row is the row, unless it is something by itself.
bool isRow(const SceneRow &row, const QObject *item)
{
    return row.owner && !row.selector.isEmpty() && (row.delegate == item || !isNamed(item));
}

RecordedTarget itemTarget(const SceneRow &row, QObject *item)
{
    RecordedTarget target = targetOf(RecordedTarget::Click, isRow(row, item) ? row.owner : item);
    if (isRow(row, item))
        target.item = row.selector;
    return target;
}

// The text by which a user knows an item that the program has made of several.
QObject *labelIn(const QObject *item)
{
    const SceneAccess &access = *SceneAccess::self();
    for (QObject *child : access.childrenOf(item)) {
        const bool isLabel =
            child->inherits("QQuickText") && !child->property("text").toString().isEmpty();
        QObject *label = !access.isShown(child) ? nullptr : isLabel ? child : labelIn(child);
        if (label)
            return label;
    }
    return nullptr;
}

// Null for an item with a name of its own, and where a click on the text goes elsewhere.
QObject *labelOfNameless(QObject *item, const QObject *taker, Qt::MouseButton button)
{
    const SceneAccess &access = *SceneAccess::self();
    const bool isNameless = !isNamed(item) && access.idOf(item).isEmpty() && !isDragged(taker);
    QObject *label = isNameless ? labelIn(item) : nullptr;
    QObject *root = access.rootOf(access.windowOf(item));
    return label && access.takerAt(root, centreOf(label), button) == taker ? label : nullptr;
}

RecordedTarget clickTarget(QObject *taker, const QPoint &windowPlace, Qt::MouseButton button)
{
    const SceneAccess &access = *SceneAccess::self();
    QObject *item = meantItem(taker);
    const SceneRow row = sceneRowOf(item);
    RecordedTarget target = itemTarget(row, item);
    QObject *label = isRow(row, item) ? nullptr : labelOfNameless(item, taker, button);
    if (label)
        return targetOf(RecordedTarget::Click, label);
    QObject *shown = isRow(row, item) ? row.delegate : item;
    QObject *root = access.rootOf(access.windowOf(item));
    if (isCanvas(shown) || access.takerAt(root, centreOf(shown), button) != taker)
        target.place = access.fromWindow(shown, windowPlace);
    return target;
}

} // namespace

QPoint placeInSceneTarget(QObject *taker, const QPoint &windowPlace)
{
    QObject *item = meantItem(taker);
    const SceneRow row = sceneRowOf(item);
    return SceneAccess::self()->fromWindow(isRow(row, item) ? row.delegate : item, windowPlace);
}

RecordedTarget sceneItemTarget(QObject *item)
{
    QObject *meant = meantItem(item);
    return itemTarget(sceneRowOf(meant), meant);
}

QObject *sceneItemAt(QObject *root, const QPoint &windowPlace)
{
    const SceneAccess &access = *SceneAccess::self();
    QObject *taker = access.takerAt(root, windowPlace, Qt::LeftButton);
    if (taker && !isPassive(taker))
        return sceneOwnerOf(meantItem(taker));
    QObject *drawn = access.drawnAt(root, windowPlace);
    return drawn ? drawn : root;
}

bool isSceneText(const QObject *item)
{
    return item && inheritsOneOf(item, {"QQuickTextInput", "QQuickTextEdit"});
}

QObject *sceneWindowOf(QObject *item)
{
    QObject *widget = widgetOf(item);
    return widget ? widget : SceneAccess::self()->windowOf(item);
}

QObject *sceneOwnerOf(QObject *item)
{
    QObject *around = SceneAccess::self()->parentOf(item);
    return around && inheritsOneOf(around, {"QQuickSpinBox", "QQuickComboBox"}) ? around : item;
}

RecordedTarget sceneTarget(QObject *taker, const QPoint &windowPlace, Qt::MouseButton button)
{
    const bool isLeft = button == Qt::LeftButton;
    if (isLeft && !sceneValuesOf(taker).empty())
        return targetOf(RecordedTarget::Value, taker);
    if (isPassive(taker))
        return {};
    QObject *text = meantItem(taker);
    const QVariantList link = isLeft ? sceneLinkAt(text, windowPlace) : QVariantList();
    if (!link.isEmpty()) {
        RecordedTarget target = targetOf(RecordedTarget::Click, text);
        target.item = link;
        return target;
    }
    if (isLeft && isSceneText(taker))
        return targetOf(RecordedTarget::Cursor, taker);
    if (isLeft && isSceneComboBox(taker))
        return {};
    return clickTarget(taker, windowPlace, button);
}

} // namespace Morvex
