#include "qtbackend/quickwidgets.h"

#include "qtbackend/loadedlibrary.h"
#include "qtbackend/sceneaccess.h"

#include <QApplication>
#include <QWidget>
#include <QWindow>

#include <algorithm>
#include <dlfcn.h>

namespace Morvex {
namespace {

// QQuickWidget::quickWindow() const, in a library that few applications have.
using QuickWindowFunction = QWindow *(*)(const QWidget *);
const char quickWindowName[] = "_ZNK12QQuickWidget11quickWindowEv";

QuickWindowFunction quickWindowFunction()
{
    static LoadedLibrary library("libQt5QuickWidgets.so.5");
    static QuickWindowFunction function = nullptr;
    if (!function && library.handle())
        function =
            reinterpret_cast<QuickWindowFunction>(::dlsym(library.handle(), quickWindowName));
    return function;
}

// Null for any other widget.
QWindow *sceneOf(const QWidget *widget)
{
    const QuickWindowFunction quickWindow = quickWindowFunction();
    return quickWindow && widget->inherits("QQuickWidget") ? quickWindow(widget) : nullptr;
}

QWidget *widgetWith(const QWindow *scene)
{
    if (!scene || !quickWindowFunction())
        return nullptr;
    const QWidgetList widgets = QApplication::allWidgets();
    const auto found = std::find_if(widgets.begin(), widgets.end(), [scene](const QWidget *widget) {
        return sceneOf(widget) == scene;
    });
    return found == widgets.end() ? nullptr : *found;
}

} // namespace

QObject *rootItemOf(const QObject *widget)
{
    SceneAccess *access = SceneAccess::self();
    if (!access || !widget || !widget->isWidgetType())
        return nullptr;
    QWindow *scene = sceneOf(static_cast<const QWidget *>(widget));
    return scene ? access->rootOf(scene) : nullptr;
}

QWidget *widgetOf(const QObject *item)
{
    const SceneAccess *access = SceneAccess::self();
    return access && item && access->isItem(item) ? widgetWith(access->windowOf(item)) : nullptr;
}

bool isOfWidget(const QWindow *window)
{
    return widgetWith(window);
}

} // namespace Morvex
