#include "shared/imagemask.h"

#include <QBrush>
#include <QImage>
#include <QPainter>
#include <QRegion>

#include <algorithm>
#include <cstring>

namespace Morvex {
namespace {

const QRgb filling = 0xff000102;
const int grownBy = 2;

// What rectangles hide in a picture of that size.
QRegion hiddenRegion(const std::vector<ImageMask::MaskRect> &rects, const QRect &image,
                     bool hasPositive)
{
    QRegion visible(hasPositive ? image : QRect());
    QRegion negative;
    for (const ImageMask::MaskRect &rect : rects) {
        const QRect part = rect.geometry.isValid() ? rect.geometry & image : QRect();
        if (rect.type == ImageMask::POSITIVE)
            visible -= part;
        else
            negative += part;
    }
    return visible + negative;
}

QRegion frameOf(const QRect &image)
{
    return QRegion(image) - image.adjusted(1, 1, -1, -1);
}

void fillImageRect(QImage *image, const QRect &rect, const std::vector<QRgb> &line)
{
    const auto bytes = static_cast<std::size_t>(rect.width()) * sizeof(QRgb);
    for (int y = rect.top(); y <= rect.bottom(); ++y)
        std::memcpy(reinterpret_cast<QRgb *>(image->scanLine(y)) + rect.left(), line.data(), bytes);
}

} // namespace

bool ImageMask::hasPositive() const
{
    return std::any_of(m_rects.begin(), m_rects.end(),
                       [](const MaskRect &rect) { return rect.type == POSITIVE; });
}

const ImageMask::MaskRect &ImageMask::maskRect(int index) const
{
    return m_rects[static_cast<std::size_t>(index)];
}

void ImageMask::addMaskRect(const MaskRect &rect)
{
    m_rects.push_back(rect);
}

void ImageMask::setGeometry(int index, const QRect &geometry)
{
    m_rects[static_cast<std::size_t>(index)].geometry = geometry;
}

void ImageMask::remove(int index)
{
    m_rects.erase(m_rects.begin() + index);
    if (m_selected == index)
        m_selected = -1;
    else if (m_selected > index)
        --m_selected;
}

void ImageMask::select(int index)
{
    if (m_selected != -1)
        m_rects[static_cast<std::size_t>(m_selected)].selected = false;
    m_selected = index;
    if (index != -1)
        m_rects[static_cast<std::size_t>(index)].selected = true;
}

int ImageMask::maskAt(const QPoint &point, bool grown) const
{
    const int margin = grown ? grownBy : 0;
    int positive = -1;
    for (int i = count() - 1; i >= 0; --i) {
        const MaskRect &rect = maskRect(i);
        if (!rect.geometry.adjusted(-margin, -margin, margin, margin).contains(point))
            continue;
        if (rect.type != POSITIVE)
            return i;
        if (positive == -1)
            positive = i;
    }
    return positive;
}

void ImageMask::scale(double factor)
{
    for (MaskRect &rect : m_rects) {
        const QRect old = rect.geometry;
        rect.geometry = QRect(qRound(old.left() * factor), qRound(old.top() * factor),
                              qRound(old.width() * factor), qRound(old.height() * factor));
    }
}

void ImageMask::drawToPainter(QPainter *painter, const QRect &clip, const QBrush &positive,
                              const QBrush &negative, bool outlines) const
{
    for (const MaskRect &rect : m_rects) {
        if (!rect.geometry.intersects(clip))
            continue;
        painter->fillRect(rect.geometry, rect.type == POSITIVE ? positive : negative);
        if (outlines && rect.selected)
            painter->drawRect(rect.geometry.adjusted(0, 0, -1, -1));
    }
}

void ImageMask::drawToImage(QImage *image) const
{
    const QRegion hidden = m_rects.empty() ? frameOf(image->rect())
                                           : hiddenRegion(m_rects, image->rect(), hasPositive());
    // Positive rectangles that hide nothing leave the picture as it is.
    const bool onlyPositive = std::none_of(m_rects.begin(), m_rects.end(),
                                           [](const auto &rect) { return rect.type != POSITIVE; });
    if (image->isNull() || (hidden.isEmpty() && onlyPositive))
        return;
    if (image->format() != QImage::Format_RGB32)
        *image = std::move(*image).convertToFormat(QImage::Format_RGB32);
    const std::vector<QRgb> line(static_cast<std::size_t>(image->width()), filling);
    for (const QRect &rect : hidden)
        fillImageRect(image, rect, line);
}

} // namespace Morvex
