#include "shared/richimage.h"

#include "shared/pictures/uncompress.h"
#include "shared/uiabstraction/pictures/loadimage.h"

#include <QBuffer>
#include <QPoint>
#include <QRect>

#include <cmath>

namespace Morvex {
namespace {

const QLatin1String imageKey("image");
const QLatin1String transformKey("transform");
const QLatin1String densityKey("density");
// Of one that comes from an application: 32 bits each, as they are in memory.
const QLatin1String pixelsKey("pixels");
const QLatin1String sizeKey("size");
const QLatin1String originKey("origin");
const QLatin1String scaleKey("scale");

const int affineNumbers = 6;

QTransform olderTransform(const QPoint &origin, double scale)
{
    QTransform transform;
    const double factor = std::isfinite(1 / scale) && std::isfinite(scale) ? 1 / scale : 1;
    transform.scale(factor, factor);
    transform.translate(origin.x(), origin.y());
    return transform;
}

bool readTransform(const QVariantMap &map, QTransform *transform)
{
    if (!map.contains(transformKey))
        return true;
    const QVariantList numbers = map.value(transformKey).toList();
    if (numbers.size() < affineNumbers)
        return false;
    const auto number = [&numbers](int index) { return numbers.at(index).toDouble(); };
    *transform = QTransform(number(0), number(1), number(2), number(3), number(4), number(5));
    return true;
}

// Null unless there are as many pixels as the size says.
QImage imageOfPixels(const QVariantMap &map)
{
    const QByteArray pixels = map.value(pixelsKey).toByteArray();
    const QSize size = map.value(sizeKey).toSize();
    if (size.isEmpty() || qint64(size.width()) * size.height() * 4 != pixels.size())
        return {};
    auto *kept = new QByteArray(pixels);
    return QImage(
        reinterpret_cast<const uchar *>(kept->constData()), size.width(), size.height(),
        size.width() * 4, QImage::Format_RGB32,
        [](void *bytes) { delete static_cast<QByteArray *>(bytes); }, kept);
}

QTransform rotationOf(int index)
{
    return index >= 0 && index < 4 ? rotations[index] : QTransform();
}

} // namespace

const QTransform rotations[4] = {
    QTransform(1, 0, 0, 1, 0, 0),
    QTransform(0, -1, 1, 0, 0, 0),
    QTransform(0, 1, -1, 0, 0, 0),
    QTransform(-1, 0, 0, -1, 0, 0),
};

Screenshot::Screenshot(const QImage &image, const QTransform &transform, double density)
    : QImage(image)
    , m_transform(transform)
    , m_density(density)
{
}

Screenshot Screenshot::fromVariant(const QVariant &variant)
{
    if (!variant.isValid())
        return {};
    const QVariantMap map = variant.toMap();
    QTransform transform;
    if (!readTransform(map, &transform))
        return {};
    const double density = map.value(densityKey, 1.0).toDouble();
    if (map.contains(pixelsKey))
        return Screenshot(imageOfPixels(map), transform, density);
    return fromBmpZipData(map.value(imageKey).toByteArray(), transform, density);
}

QVariant Screenshot::toVariant() const
{
    if (isNull())
        return {};
    QBuffer bmp;
    bmp.open(QIODevice::WriteOnly);
    save(&bmp, "BMP", 100);
    const QTransform &t = m_transform;
    return QVariantMap{
        {imageKey, qCompress(bmp.data(), 1)},
        {transformKey, QVariantList{t.m11(), t.m12(), t.m21(), t.m22(), t.dx(), t.dy()}},
        {densityKey, m_density}};
}

QByteArray Screenshot::raw(const QVariant &variant, QPoint *origin, double *scale, double *density)
{
    if (!variant.isValid())
        return {};
    const QVariantMap map = variant.toMap();
    if (origin && map.contains(originKey))
        *origin = map.value(originKey).toPoint();
    if (scale && map.contains(scaleKey))
        *scale = map.value(scaleKey).toDouble();
    if (density && map.contains(densityKey))
        *density = map.value(densityKey).toDouble();
    return map.value(imageKey).toByteArray();
}

Screenshot Screenshot::fromBmpData(const QByteArray &bmp, const QTransform &transform,
                                   double density)
{
    return Screenshot(loadImage(bmp, QByteArrayLiteral("BMP")), transform, density);
}

Screenshot Screenshot::fromBmpZipData(const QByteArray &zip, const QTransform &transform,
                                      double density)
{
    return fromBmpData(uncompress(zip), transform, density);
}

Screenshot Screenshot::fromBmpData(const unsigned char *bmp, int size, const QPoint &origin,
                                   double scale, double density)
{
    const QByteArray bytes =
        bmp && size > 0 ? QByteArray::fromRawData(reinterpret_cast<const char *>(bmp), size)
                        : QByteArray();
    return fromBmpData(bytes, origin, scale, density);
}

Screenshot Screenshot::fromBmpData(const QByteArray &bmp, const QPoint &origin, double scale,
                                   double density)
{
    return fromBmpData(bmp, olderTransform(origin, scale), density);
}

Screenshot Screenshot::fromBmpZipData(const QByteArray &zip, const QPoint &origin, double scale,
                                      double density)
{
    return fromBmpZipData(zip, olderTransform(origin, scale), density);
}

QPoint Screenshot::nativeToImage(const QPoint &point) const
{
    return m_transform.inverted().map(point);
}

QRect Screenshot::nativeToImage(const QRect &rect) const
{
    return m_transform.inverted().mapRect(rect);
}

QPoint Screenshot::imageToNative(const QPoint &point) const
{
    return m_transform.map(point);
}

QRect Screenshot::imageToNative(const QRect &rect) const
{
    return m_transform.mapRect(rect);
}

Screenshot Screenshot::copy(const QRect &rect) const
{
    QTransform transform = m_transform;
    if (rect.isValid())
        transform.translate(rect.top(), rect.left());
    return Screenshot(QImage::copy(rect), transform, m_density);
}

Screenshot Screenshot::rotated(int rotation) const
{
    const QTransform turn = rotationOf(rotation);
    const QPoint corner = turn.map(rect().bottomRight());
    QTransform back = turn.inverted();
    back.translate(qMin(corner.x(), 0), qMin(corner.y(), 0));
    return Screenshot(transformed(turn, Qt::FastTransformation), m_transform * back, m_density);
}

QImage Screenshot::rotated(const QImage &image, int rotation)
{
    return image.transformed(rotationOf(rotation));
}

QPixmap Screenshot::rotated(const QPixmap &pixmap, int rotation)
{
    return pixmap.transformed(rotationOf(rotation));
}

} // namespace Morvex
