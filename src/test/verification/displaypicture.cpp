#include "test/verification/displaypicture.h"

#include <QByteArray>
#include <QString>

#include <chrono>
#include <cstdlib>
#include <cstring>
#include <future>
#include <memory>
#include <thread>
#include <xcb/xcb.h>

namespace Morvex {
namespace {

const std::chrono::seconds timeout(5);

struct Picture
{
    QImage image;
    QString error;
};

QString unreachable()
{
    return QStringLiteral("'%1' can't be connected to")
        .arg(QString::fromLocal8Bit(qgetenv("DISPLAY")));
}

Picture none(const QString &reason)
{
    return {QImage(), QStringLiteral("The display gives no picture: ") + reason};
}

struct Freed
{
    void operator()(void *reply) const { std::free(reply); }
};
using ImageReply = std::unique_ptr<xcb_get_image_reply_t, Freed>;

// Null when there is none of that number.
const xcb_screen_t *screenOf(const xcb_setup_t *setup, int number)
{
    xcb_screen_iterator_t screens = xcb_setup_roots_iterator(setup);
    while (screens.rem > 0 && number > 0) {
        xcb_screen_next(&screens);
        --number;
    }
    return screens.rem > 0 ? screens.data : nullptr;
}

QImage::Format formatOf(const xcb_setup_t *setup, int depth)
{
    if (setup->image_byte_order != XCB_IMAGE_ORDER_LSB_FIRST)
        return QImage::Format_Invalid;
    switch (depth) {
    case 16:
        return QImage::Format_RGB16;
    case 24:
    case 32:
        return QImage::Format_RGB32;
    case 30:
        return QImage::Format_RGB30;
    default:
        return QImage::Format_Invalid;
    }
}

Picture pictureOf(const xcb_screen_t &screen, QImage::Format format, xcb_get_image_reply_t *reply)
{
    QImage image(screen.width_in_pixels, screen.height_in_pixels, format);
    if (image.isNull())
        return none(QStringLiteral("it is too large"));
    // Its lines are padded to four bytes, as those of the image are.
    if (xcb_get_image_data_length(reply) < image.sizeInBytes())
        return none(QStringLiteral("its answer is too short"));
    std::memcpy(image.bits(), xcb_get_image_data(reply),
                static_cast<std::size_t>(image.sizeInBytes()));
    return {image, QString()};
}

Picture grab(xcb_connection_t *connection, int screenNumber)
{
    if (xcb_connection_has_error(connection) != 0)
        return none(unreachable());
    const xcb_setup_t *setup = xcb_get_setup(connection);
    const xcb_screen_t *screen = screenOf(setup, screenNumber);
    if (!screen)
        return none(QStringLiteral("it has no screen"));
    const QImage::Format format = formatOf(setup, screen->root_depth);
    if (format == QImage::Format_Invalid)
        return none(QStringLiteral("its pixels are of an unknown format"));
    const xcb_get_image_cookie_t request =
        xcb_get_image(connection, XCB_IMAGE_FORMAT_Z_PIXMAP, screen->root, 0, 0,
                      screen->width_in_pixels, screen->height_in_pixels, ~0U);
    const ImageReply reply(xcb_get_image_reply(connection, request, nullptr));
    return reply ? pictureOf(*screen, format, reply.get())
                 : none(QStringLiteral("it does not answer"));
}

// In a thread, which is left alone when it takes too long: no call of the library has a bound.
template <typename Result>
Result soon(Result (*task)(), const Result &otherwise)
{
    std::packaged_task<Result()> packaged(task);
    std::future<Result> answer = packaged.get_future();
    std::thread(std::move(packaged)).detach();
    return answer.wait_for(timeout) == std::future_status::ready ? answer.get() : otherwise;
}

bool connects()
{
    xcb_connection_t *connection = xcb_connect(nullptr, nullptr);
    const bool isConnected = xcb_connection_has_error(connection) == 0;
    xcb_disconnect(connection);
    return isConnected;
}

Picture grabDisplay()
{
    int screenNumber = 0;
    xcb_connection_t *connection = xcb_connect(nullptr, &screenNumber);
    const Picture picture = grab(connection, screenNumber);
    xcb_disconnect(connection);
    return picture;
}

} // namespace

bool hasDisplay()
{
    const QByteArray platform = qgetenv("QT_QPA_PLATFORM");
    return !qEnvironmentVariableIsEmpty("DISPLAY") &&
           (platform.isEmpty() ? qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY")
                               : platform.startsWith("xcb"));
}

QString whyNoDisplay()
{
    return soon(connects, false) ? QString() : QStringLiteral("the display ") + unreachable();
}

QImage pictureOfDisplay(QString *error)
{
    const Picture picture = soon(grabDisplay, none(QStringLiteral("it does not answer")));
    *error = picture.error;
    return picture.image;
}

} // namespace Morvex
