#include "qtbackend/scenereveal.h"

#include "qtbackend/inputsequence.h"
#include "qtbackend/quickwidgets.h"
#include "qtbackend/sceneaccess.h"
#include "qtbackend/sceneview.h"
#include "qtbackend/windowactivation.h"

#include <QGuiApplication>
#include <QPointer>
#include <QWidget>
#include <QWindow>

#include <algorithm>
#include <memory>
#include <utility>

namespace Morvex {
namespace {

// Some never come to rest.
const int maxMovingMs = 2000;
// How often an item has to be seen at one place; some pictures may be drawn in between.
const int looksAtRest = 6;

QWindow *sceneWindowOf(QObject *item)
{
    return item ? SceneAccess::self()->windowOf(item) : nullptr;
}

bool isMoving(const QObject *item)
{
    return (item->inherits("QQuickStackView") && item->property("busy").toBool()) ||
           (item->inherits("QQuickFlickable") && item->property("moving").toBool());
}

// What opens and closes may move and cover it.
bool isAtRest(QObject *item)
{
    const SceneAccess &access = *SceneAccess::self();
    for (const QObject *around = item; around; around = access.parentOf(around)) {
        if (isMoving(around))
            return false;
    }
    QObject *root = access.rootOf(sceneWindowOf(item));
    const QObjectList popups = root ? access.popupsIn(root) : QObjectList();
    return std::all_of(popups.begin(), popups.end(),
                       [](const QObject *popup) { return popup->property("opened").toBool(); });
}

bool isInPages(const QObject *item)
{
    while (item && !isScenePaged(item))
        item = SceneAccess::self()->parentOf(item);
    return item;
}

// Pages that a program turns don't say that they move.
void waitForPages(QObject *item, InputSequence &input)
{
    if (!isInPages(item))
        return;
    const auto last = std::make_shared<std::pair<QRect, int>>();
    input.waitUntil(
        [alive = QPointer<QObject>(item), last] {
            const QRect place = alive ? SceneAccess::self()->placeOf(alive) : last->first;
            last->second = place == last->first ? last->second + 1 : 0;
            last->first = place;
            return last->second >= looksAtRest;
        },
        maxMovingMs);
}

// One that belongs to an active window calls itself active before it gets any keys.
bool isActive(const QWindow *window)
{
    const bool takesNoFocus = window->flags().testFlag(Qt::WindowDoesNotAcceptFocus) ||
                              window->type() == Qt::Popup || window->type() == Qt::ToolTip;
    return takesNoFocus ? window->isActive() : QGuiApplication::focusWindow() == window;
}

void activate(QObject *item, InputSequence &input)
{
    QWidget *widget = widgetOf(item);
    waitForActiveWindow(widget, input);
    QWindow *window = widget ? nullptr : sceneWindowOf(item);
    if (!window || isActive(window))
        return;
    window->requestActivate();
    waitForActivation(
        [alive = QPointer<QObject>(item)] {
            const QWindow *asked = sceneWindowOf(alive);
            return !asked || isActive(asked);
        },
        input);
}

} // namespace

void waitForSceneAtRest(QObject *item, InputSequence &input)
{
    const QPointer<QObject> alive = item;
    input.waitUntil([alive] { return !alive || isAtRest(alive); }, maxMovingMs);
}

void revealSceneItem(QObject *item, InputSequence &input)
{
    const QPointer<QObject> alive = item;
    activate(item, input);
    waitForSceneAtRest(item, input);
    waitForPages(item, input);
    input.add([alive] {
        if (alive)
            SceneAccess::self()->scrollIntoSight(alive);
        return QString();
    });
}

} // namespace Morvex
