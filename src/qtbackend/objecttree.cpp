#include "qtbackend/objecttree.h"

#include "qtbackend/creationorder.h"
#include "qtbackend/quickwidgets.h"
#include "qtbackend/sceneaccess.h"

#include <QGuiApplication>
#include <QWidget>
#include <QWindow>

namespace Morvex {
namespace {

// Those of widgets only hold what the widgets show.
bool isSceneWindow(const QObject *object)
{
    return object->inherits("QQuickWindow") && !isOfWidget(static_cast<const QWindow *>(object));
}

// Such as a dialog that an item declares.
bool isInAnother(const QWindow *window)
{
    const QObject *above = parentObjectOf(window);
    while (above && !above->isWidgetType() && !isSceneWindow(above))
        above = parentObjectOf(above);
    return above;
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
    if (access->isItem(object)) {
        children += access->childrenOf(object);
    } else {
        // It is among the children, too, when it has no parent of its own.
        QObject *root = access->rootOf(const_cast<QObject *>(object));
        if (root && !children.contains(root))
            children += root;
    }
    return inCreationOrder(children);
}

QObject *parentObjectOf(const QObject *object)
{
    const SceneAccess *access = SceneAccess::self();
    if (!access || !access->isItem(object))
        return object->parent();
    if (QObject *parent = access->parentOf(object))
        return parent;
    if (QObject *widget = widgetOf(object))
        return widget;
    QObject *window = access->windowOf(object);
    return window ? window : object->parent();
}

QObjectList sceneWindows()
{
    QObjectList windows;
    for (QWindow *window : QGuiApplication::allWindows()) {
        if (isSceneWindow(window) && !isInAnother(window))
            // The toolkit has the newest first.
            windows.prepend(window);
    }
    return inCreationOrder(windows);
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
