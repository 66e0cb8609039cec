#include "qtbackend/pictures.h"

#include "qtbackend/objecttree.h"
#include "qtbackend/quickwidgets.h"
#include "qtbackend/restinglook.h"
#include "qtbackend/sceneaccess.h"
#include "qtbackend/turneventloop.h"
#include "shared/pictures/imageequality.h"

#include <QGuiApplication>
#include <QPainter>
#include <QPixmap>
#include <QPointer>
#include <QScreen>
#include <QWidget>
#include <QWindow>

#include <algorithm>
#include <optional>

namespace Morvex {
namespace {

Screenshot withPlace(const QImage &image, const QPoint &origin)
{
    const qreal density = image.devicePixelRatio();
    QTransform transform;
    transform.translate(origin.x(), origin.y());
    transform.scale(1 / density, 1 / density);
    return Screenshot(image, transform, density);
}

// The lowest first: nothing covers an open menu or list.
std::vector<QWidget *> visibleWindows(const std::vector<QObject *> &objects)
{
    std::vector<QWidget *> windows;
    for (QObject *object : objects) {
        auto *widget = qobject_cast<QWidget *>(object);
        if (widget && widget->isWindow() && widget->isVisible())
            windows.push_back(widget);
    }
    std::stable_partition(windows.begin(), windows.end(),
                          [](const QWidget *window) { return window->windowType() != Qt::Popup; });
    return windows;
}

// Some platforms have no picture of the screen as a whole.
QImage paintWindows(const QRect &area, const std::vector<QObject *> &objects)
{
    QImage image(area.size(), QImage::Format_RGB32);
    if (image.isNull())
        return {};
    image.fill(Qt::black);
    QPainter painter(&image);
    for (QWidget *window : visibleWindows(objects))
        painter.drawPixmap(window->frameGeometry().topLeft() - area.topLeft(), window->grab());
    return image;
}

QPoint originOf(QObject *object)
{
    if (object->isWidgetType())
        return static_cast<QWidget *>(object)->mapToGlobal(QPoint());
    const SceneAccess &access = *SceneAccess::self();
    if (const QWidget *widget = widgetOf(object))
        return widget->mapToGlobal(access.visiblePlaceOf(object).topLeft());
    const QWindow *window =
        access.isItem(object) ? access.windowOf(object) : qobject_cast<const QWindow *>(object);
    return window->mapToGlobal(window == object ? QPoint()
                                                : access.visiblePlaceOf(object).topLeft());
}

QString whyNoPicture(const QObject *object)
{
    if (isSceneItem(object) || object->isWindowType())
        return QStringLiteral("there is no picture of the item; Qt Quick needs a display for one");
    return object->isWidgetType() ? QStringLiteral("the widget has no size")
                                  : QStringLiteral("the object is not a widget");
}

} // namespace

QImage grabWidget(QObject *object)
{
    if (object && object->isWidgetType())
        return static_cast<QWidget *>(object)->grab().toImage();
    const SceneAccess *access = SceneAccess::self();
    if (QWidget *widget = widgetOf(object))
        return widget->grab(access->visiblePlaceOf(object)).toImage();
    return access && object ? access->grab(object) : QImage();
}

QImage paintWidget(QWidget *widget)
{
    const RestingLook restingLook(widget);
    QImage image(widget->size(), QImage::Format_ARGB32_Premultiplied);
    if (image.isNull())
        return {};
    image.fill(Qt::transparent);
    widget->render(&image);
    return image;
}

Screenshot grabScreenshot(QObject *object, int delay, QString *error)
{
    const QPointer<QObject> alive = object;
    turnEventLoop(delay);
    if (!alive) {
        *error = QStringLiteral("the object no longer exists");
        return {};
    }
    // It is where the user has asked for the picture, or where a script has clicked last.
    std::optional<HiddenMouse> mouse;
    if (auto *widget = qobject_cast<QWidget *>(alive.data()))
        mouse.emplace(widget);
    QImage image = grabWidget(alive);
    mouse.reset();
    if (image.isNull()) {
        *error = whyNoPicture(alive);
        return {};
    }
    // On their way pictures lose their transparency, and with it what made these pixels alike.
    normalizeTransparency(&image);
    return withPlace(image, originOf(object));
}

QVariant rawPicture(const Screenshot &picture)
{
    if (picture.isNull())
        return {};
    // Without transparency, as pictures travel.
    QImage image = picture.convertToFormat(picture.hasAlphaChannel() ? QImage::Format_ARGB32
                                                                     : QImage::Format_RGB32);
    if (picture.hasAlphaChannel()) {
        for (int y = 0; y < image.height(); ++y) {
            auto *line = reinterpret_cast<QRgb *>(image.scanLine(y));
            std::for_each(line, line + image.width(), [](QRgb &pixel) { pixel |= 0xff000000; });
        }
    }
    const QTransform t = picture.transform();
    return QVariantMap{
        {QStringLiteral("pixels"), QByteArray(reinterpret_cast<const char *>(image.constBits()),
                                              static_cast<int>(image.sizeInBytes()))},
        {QStringLiteral("size"), image.size()},
        {QStringLiteral("transform"),
         QVariantList{t.m11(), t.m12(), t.m21(), t.m22(), t.dx(), t.dy()}},
        {QStringLiteral("density"), picture.density()}};
}

Screenshot grabDesktop(const std::vector<QObject *> &objects)
{
    QScreen *screen = QGuiApplication::primaryScreen();
    if (!screen)
        return {};
    const QImage grabbed = QGuiApplication::platformName() == QLatin1String("offscreen")
                               ? QImage()
                               : screen->grabWindow(0).toImage();
    const QRect area = grabbed.isNull() ? screen->virtualGeometry() : screen->geometry();
    return withPlace(grabbed.isNull() ? paintWindows(area, objects) : grabbed, area.topLeft());
}

} // namespace Morvex
