#pragma once

#include <QCache>
#include <QImage>

namespace Morvex {

class BrowserElement;
struct VisualScreenshotCheck;

/// The element's own picture: cut out of that of the nearest element which has one, with the places
/// of the children blanked. False when there is none.
bool _maskImage(const BrowserElement *element, QImage *image);

/// Keeps the pictures of elements that are compared with several others, as far as they fit into a
/// bounded memory.
class ElementPictures
{
public:
    ElementPictures();

    bool _maskImages(const BrowserElement *expected, const BrowserElement *actual,
                     QImage *expectedImage, QImage *actualImage, bool sameSize);

    /// Whether the pictures of both are there and fulfil the check.
    bool match(const BrowserElement *expected, const BrowserElement *actual,
               const VisualScreenshotCheck &check);

private:
    QImage pictureOf(const BrowserElement *element);

    QCache<const BrowserElement *, QImage> m_pictures;
};

} // namespace Morvex
