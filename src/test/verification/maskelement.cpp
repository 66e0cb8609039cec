#include "test/verification/maskelement.h"

#include "shared/uiabstraction/elementgeometry.h"

#include <QDomElement>

namespace Morvex {
namespace {

int attributeNumber(const QDomElement &element, const char *name)
{
    return element.attribute(QLatin1String(name)).toInt();
}

int lastPixel(int first, int size)
{
    return UIAbstraction::saturated(qint64(first) + size - 1);
}

} // namespace

ImageMask::MaskRect maskRectOf(const QDomElement &element)
{
    ImageMask::MaskRect rect;
    rect.type = element.attribute(QStringLiteral("type")) == QLatin1String("positive")
                    ? ImageMask::POSITIVE
                    : ImageMask::NEGATIVE;
    const int x = attributeNumber(element, "x");
    const int y = attributeNumber(element, "y");
    rect.geometry.setCoords(x, y, lastPixel(x, attributeNumber(element, "width")),
                            lastPixel(y, attributeNumber(element, "height")));
    return rect;
}

} // namespace Morvex
