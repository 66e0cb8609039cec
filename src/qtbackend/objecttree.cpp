#include "qtbackend/objecttree.h"

#include "qtbackend/creationorder.h"
#include "qtbackend/quickwidgets.h"
#include "qtbackend/sceneaccess.h"

#include <QGuiApplication>
#include <QWidget>
#include <QWindow>

#include <algorithm>

namespace Morvex {
namespace {

bool isSceneWindow(const QWindow *window)
{
    return window->inherits("QQuickWindow");
}

// One that is declared in another window, or in an item, is found there.
bool isWithinScene(const SceneAccess &access, const QWindow *window)
{
    const QObject *around = window->QObject::parent();
    while (around && !around->isWindowType() && !access.isItem(around))
        around = around->parent();
    return around;
}

// Of items that have no place in a scene, such as a component's, the toolkit's tree is all there
// is.
bool isPlacedItem(const SceneAccess &access, const QObject *object)
{
    return access.isItem(object) && access.parentOf(object);
}

} // namespace

bool isSceneItem(const QObject *object)
{
    const SceneAccess *access = SceneAccess::self();
    return access && object && access->isItem(object);
}

QObjectList childObjectsOf(const QObject *object)
{
    const SceneAccess *access = SceneAccess::self();
    if (!access || object->isWidgetType()) {
        QObjectList children = inCreationOrder(object->children());
        if (QObject *root = rootItemOf(object))
            children += root;
        return children;
    }
    QObjectList children;
    for (QObject *child : object->children()) {
        if (!isPlacedItem(*access, child))
            children += child;
    }
    if (access->isItem(object))
        children += access->childrenOf(object);
    else if (QObject *root = access->rootOf(const_cast<QObject *>(object)))
        children += root;
    // Where an item has no parent of its own, the window has it both ways.
    std::sort(children.begin(), children.end());
    children.erase(std::unique(children.begin(), children.end()), children.end());
    return inCreationOrder(children);
}

QObject *parentObjectOf(const QObject *object)
{
    const SceneAccess *access = SceneAccess::self();
    if (!access || !access->isItem(object))
        return object->parent();
    if (QObject *parent = access->parentOf(object))
        return parent;
    QObject *widget = widgetOf(object);
    return widget ? widget : access->windowOf(object);
}

QObjectList sceneWindows()
{
    QObjectList windows;
    const SceneAccess *access = SceneAccess::self();
    const QWindowList all = access ? QGuiApplication::allWindows() : QWindowList();
    for (QWindow *window : all) {
        if (isSceneWindow(window) && !isOfWidget(window) && !isWithinScene(*access, window))
            windows += window;
    }
    return windows;
}

QObject *sceneRootOf(QObject *receiver)
{
    if (receiver->isWidgetType())
        return rootItemOf(receiver);
    auto *window = qobject_cast<QWindow *>(receiver);
    SceneAccess *access = SceneAccess::self();
    return access && window && !isOfWidget(window) ? access->rootOf(window) : nullptr;
}

QString typeNameOf(const QMetaObject *type)
{
    const QString name = QString::fromLatin1(type->className());
    for (const char *mark : {"_QMLTYPE_", "_QML_"}) {
        const int at = name.indexOf(QLatin1String(mark));
        if (at > 0)
            return name.left(at);
    }
    return name;
}

} // namespace Morvex
