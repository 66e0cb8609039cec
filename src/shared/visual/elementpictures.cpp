#include "shared/visual/elementpictures.h"

#include "shared/browserelement.h"
#include "shared/imagecomparison.h"
#include "shared/pictures/imageequality.h"
#include "shared/titanchecks.h"
#include "shared/uiabstraction/pictures/loadimage.h"

#include <QRegion>

#include <algorithm>
#include <cmath>
#include <cstring>

namespace Morvex {
namespace {

const int cacheKilobytes = 256 * 1024;
const double correlationTolerance = 1e-06;

// Coordinates come from files: differences and products are made where they fit.
struct Place
{
    qint64 x = 0;
    qint64 y = 0;
};

Place topLeft(const QRect &rect)
{
    return {rect.left(), rect.top()};
}

bool hasPicture(const BrowserElement *element)
{
    return element->geometry().rect().isValid() && !element->image().isNull();
}

// Null when no picture shows the element.
const BrowserElement *pictureOwner(const BrowserElement *element)
{
    while (element && !hasPicture(element))
        element = element->parent();
    return element;
}

// Where the element is in another one above it.
Place placeIn(const BrowserElement *owner, const BrowserElement *element)
{
    Place place;
    for (; element && element != owner; element = element->parent()) {
        const Place own = topLeft(element->geometry().rect());
        place.x += own.x;
        place.y += own.y;
        if (!element->geometry().isRelative()) {
            const QRect absolute = owner->absoluteGeometry();
            const Place base = topLeft(absolute.isValid() ? absolute : owner->geometry().rect());
            return {place.x - base.x, place.y - base.y};
        }
    }
    return place;
}

int scaled(qint64 number, double factor)
{
    return UIAbstraction::saturated(qRound64(std::clamp(double(number) * factor, -4.0e9, 4.0e9)));
}

// The part of the owner's picture that shows the element. Invalid when there is none, or one larger
// than a picture may be.
QRect cutRect(const BrowserElement *owner, const BrowserElement *element)
{
    const UIAbstraction::ElementGeometry geometry = element->geometry();
    if (!geometry.rect().isValid())
        return {};
    const UIAbstraction::ElementGeometry ownerGeometry = owner->geometry();
    const QSize pictureSize = owner->image().size();
    double factor = 1.0;
    if (pictureSize != QSize(ownerGeometry.width(), ownerGeometry.height()) &&
        ownerGeometry.width() != 0)
        factor = double(pictureSize.width()) / ownerGeometry.width();
    const Place place = placeIn(owner, element);
    const QSize size(scaled(geometry.width(), factor), scaled(geometry.height(), factor));
    const QPoint corner(scaled(place.x, factor), scaled(place.y, factor));
    const int farthest = 1 << 30;
    if (size.isEmpty() || isTooLargePicture(size) || qAbs(qint64(corner.x())) > farthest ||
        qAbs(qint64(corner.y())) > farthest)
        return {};
    return {corner, size};
}

QRect clipped(const Place &place, const UIAbstraction::ElementGeometry &geometry, const QSize &size)
{
    const qint64 right = std::min<qint64>(place.x + geometry.width(), size.width());
    const qint64 bottom = std::min<qint64>(place.y + geometry.height(), size.height());
    const qint64 left = std::max<qint64>(place.x, 0);
    const qint64 top = std::max<qint64>(place.y, 0);
    return left < right && top < bottom
               ? QRect(int(left), int(top), int(right - left), int(bottom - top))
               : QRect();
}

void blank(const QRect &rect, QImage *image)
{
    if (image->depth() < 8) {
        for (int y = rect.top(); y <= rect.bottom(); ++y) {
            for (int x = rect.left(); x <= rect.right(); ++x)
                image->setPixel(x, y, 0);
        }
        return;
    }
    const int bytesPerPixel = image->depth() / 8;
    for (int y = rect.top(); y <= rect.bottom(); ++y)
        std::memset(image->scanLine(y) + size_t(rect.left()) * size_t(bytesPerPixel), 0,
                    size_t(rect.width()) * size_t(bytesPerPixel));
}

void blankChildren(const BrowserElement *element, QImage *image)
{
    QRegion region;
    for (const BrowserElement *child : element->children()) {
        if (child->geometry().rect().isValid())
            region += clipped(placeIn(element, child), child->geometry(), image->size());
    }
    for (const QRect &rect : region)
        blank(rect, image);
}

QSize pictureSize(const BrowserElement *element)
{
    const BrowserElement *owner = pictureOwner(element);
    return owner ? cutRect(owner, element).size() : QSize();
}

bool haveEqualSizes(const BrowserElement *expected, const BrowserElement *actual)
{
    const QSize size = pictureSize(expected);
    return size.isValid() && size == pictureSize(actual);
}

} // namespace

bool _maskImage(const BrowserElement *element, QImage *image)
{
    const BrowserElement *owner = pictureOwner(element);
    const QRect rect = owner ? cutRect(owner, element) : QRect();
    if (!rect.isValid())
        return false;
    QImage own = owner->image().copy(rect);
    if (own.isNull())
        return false;
    blankChildren(element, &own);
    *image = own;
    return true;
}

ElementPictures::ElementPictures()
    : m_pictures(cacheKilobytes)
{
}

// Null for none.
QImage ElementPictures::pictureOf(const BrowserElement *element)
{
    if (const QImage *known = m_pictures.object(element))
        return *known;
    QImage image;
    _maskImage(element, &image);
    m_pictures.insert(element, new QImage(image), 1 + int(image.sizeInBytes() / 1024));
    return image;
}

bool ElementPictures::_maskImages(const BrowserElement *expected, const BrowserElement *actual,
                                  QImage *expectedImage, QImage *actualImage, bool sameSize)
{
    *expectedImage = pictureOf(expected);
    *actualImage = pictureOf(actual);
    if (expectedImage->isNull() || actualImage->isNull())
        return false;
    if (sameSize && expectedImage->size() != actualImage->size())
        *actualImage = ImageComparison::normalizeSize(*expectedImage, *actualImage);
    return true;
}

bool ElementPictures::match(const BrowserElement *expected, const BrowserElement *actual,
                            const VisualScreenshotCheck &check)
{
    const bool isStrict = check.algorithm == VisualScreenshotCheck::Strict;
    if (isStrict && !haveEqualSizes(expected, actual))
        return false;
    QImage expectedImage;
    QImage actualImage;
    if (!_maskImages(expected, actual, &expectedImage, &actualImage, !isStrict))
        return false;
    if (check.mask.count() > 0) {
        check.mask.drawToImage(&expectedImage);
        check.mask.drawToImage(&actualImage);
    }
    if (isStrict)
        return haveEqualPixels(expectedImage, actualImage);
    return check.algorithm == VisualScreenshotCheck::Correlation &&
           ImageComparison::normalizedCorrelation(expectedImage, actualImage) - check.threshold >
               -correlationTolerance;
}

} // namespace Morvex
