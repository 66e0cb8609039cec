#pragma once

#include "morvex_export.h"

#include <QByteArray>
#include <QImage>
#include <QPixmap>
#include <QTransform>
#include <QVariant>

namespace Morvex {

/// How the picture of a turned screen is turned upright, by number.
MORVEX_EXPORT extern const QTransform rotations[4];

/// A picture that knows where its pixels are in the coordinates of the application under test.
class MORVEX_EXPORT Screenshot : public QImage
{
public:
    Screenshot() = default;
    /// @p transform maps coordinates of the picture to native ones.
    Screenshot(const QImage &image, const QTransform &transform, double density);

    const QTransform &transform() const { return m_transform; }
    double density() const { return m_density; }

    /// The form in which screenshots travel: a map of "image", "transform" and "density". A null
    /// picture comes out of an invalid variant, broken data and a transform of less than six
    /// numbers; a null picture gives an invalid variant.
    static Screenshot fromVariant(const QVariant &variant);
    QVariant toVariant() const;

    /// The compressed picture as it is in the map, which may be of the older form with "origin" and
    /// "scale". Each of the other values is written where the map has it and the pointer is not
    /// null.
    static QByteArray raw(const QVariant &variant, QPoint *origin, double *scale, double *density);

    static Screenshot fromBmpData(const QByteArray &bmp, const QTransform &transform,
                                  double density);
    static Screenshot fromBmpZipData(const QByteArray &zip, const QTransform &transform,
                                     double density);
    /// The forms for the older map.
    static Screenshot fromBmpData(const unsigned char *bmp, int size, const QPoint &origin,
                                  double scale, double density);
    static Screenshot fromBmpData(const QByteArray &bmp, const QPoint &origin, double scale,
                                  double density);
    static Screenshot fromBmpZipData(const QByteArray &zip, const QPoint &origin, double scale,
                                     double density);

    QPoint nativeToImage(const QPoint &point) const;
    QRect nativeToImage(const QRect &rect) const;
    QPoint imageToNative(const QPoint &point) const;
    QRect imageToNative(const QRect &rect) const;

    /// Moves the transform by the top, then by the left edge of the rectangle: stored pairs of
    /// coordinates rely on this order.
    Screenshot copy(const QRect &rect) const;

    /// By one of the four rotations; any other number leaves the picture as it is.
    Screenshot rotated(int rotation) const;
    static QImage rotated(const QImage &image, int rotation);
    static QPixmap rotated(const QPixmap &pixmap, int rotation);

private:
    QTransform m_transform;
    double m_density = 1.0;
};

} // namespace Morvex
