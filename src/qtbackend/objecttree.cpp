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
    for (QWindow *window : QGuiApplication::allWindows()) {
        if (isSceneWindow(window) && !isOfWidget(window))
            windows += window;
    }
    return windows;
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
