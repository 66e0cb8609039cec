#include "shared/imagemask.h"

#include <QBrush>
#include <QImage>
#include <QPainter>

#include <algorithm>
#include <cstring>

namespace Morvex {
namespace {

const QRgb filling = 0xff000102;
const int grownBy = 2;

struct Interval
{
    int begin;
    int end;
};

// Goes down the rows of a picture and knows what is hidden in each, in a time that does not depend
// on how the rectangles overlap.
class HiddenRows
{
public:
    HiddenRows(const std::vector<ImageMask::MaskRect> &rects, const QRect &image, bool hasPositive)
        : m_hasPositive(hasPositive)
        , m_positive(static_cast<std::size_t>(image.width()) + 1)
        , m_negative(m_positive.size())
    {
        for (const ImageMask::MaskRect &rect : rects) {
            const QRect part = rect.geometry.isValid() ? rect.geometry & image : QRect();
            if (part.isEmpty())
                continue;
            m_edges.push_back({part.top(), 1, part, rect.type});
            m_edges.push_back({part.bottom() + 1, -1, part, rect.type});
        }
        std::sort(m_edges.begin(), m_edges.end(),
                  [](const Edge &a, const Edge &b) { return a.row < b.row; });
        m_next = m_edges.begin();
        findIntervals();
    }

    // To be called for each row from 0 on.
    const std::vector<Interval> &at(int row)
    {
        const auto first = m_next;
        for (; m_next != m_edges.end() && m_next->row == row; ++m_next) {
            auto &covers = m_next->type == ImageMask::POSITIVE ? m_positive : m_negative;
            covers[static_cast<std::size_t>(m_next->rect.left())] += m_next->change;
            covers[static_cast<std::size_t>(m_next->rect.right()) + 1] -= m_next->change;
        }
        if (m_next != first)
            findIntervals();
        return m_intervals;
    }

private:
    // Where a rectangle begins or ends.
    struct Edge
    {
        int row;
        int change;
        QRect rect;
        int type;
    };

    void findIntervals()
    {
        m_intervals.clear();
        int positive = 0;
        int negative = 0;
        bool wasHidden = false;
        const auto width = static_cast<int>(m_positive.size()) - 1;
        for (int x = 0; x < width; ++x) {
            positive += m_positive[static_cast<std::size_t>(x)];
            negative += m_negative[static_cast<std::size_t>(x)];
            const bool isHidden = negative > 0 || (m_hasPositive && positive == 0);
            if (isHidden && !wasHidden)
                m_intervals.push_back({x, x});
            if (isHidden)
                m_intervals.back().end = x + 1;
            wasHidden = isHidden;
        }
    }

    bool m_hasPositive;
    // By how many rectangles more than the pixel to its left a pixel is covered.
    std::vector<int> m_positive;
    std::vector<int> m_negative;
    std::vector<Edge> m_edges;
    std::vector<Edge>::const_iterator m_next;
    std::vector<Interval> m_intervals;
};

ImageMask::MaskRect negativeRect(int x, int y, int width, int height)
{
    ImageMask::MaskRect rect;
    rect.type = ImageMask::NEGATIVE;
    rect.geometry = QRect(x, y, width, height);
    return rect;
}

// A frame one pixel wide hides the outermost pixels where no mask says what to hide.
std::vector<ImageMask::MaskRect> frameOf(const QSize &size)
{
    const int width = size.width();
    const int height = size.height();
    return {negativeRect(0, 0, width, 1), negativeRect(0, height - 1, width, 1),
            negativeRect(0, 0, 1, height), negativeRect(width - 1, 0, 1, height)};
}

std::vector<ImageMask::MaskRect> effectiveRects(const std::vector<ImageMask::MaskRect> &rects,
                                                const QSize &size)
{
    return rects.empty() ? frameOf(size) : rects;
}

bool haveEqualBytes(const QImage &a, const QImage &b, int row, int begin, int end)
{
    const auto line = [row, begin](const QImage &image) {
        return reinterpret_cast<const QRgb *>(image.constScanLine(row)) + begin;
    };
    return begin >= end ||
           std::memcmp(line(a), line(b), static_cast<std::size_t>(end - begin) * sizeof(QRgb)) == 0;
}

bool haveEqualBytesOutside(const std::vector<Interval> &hidden, const QImage &a, const QImage &b,
                           int row)
{
    int begin = 0;
    for (const Interval &interval : hidden) {
        if (!haveEqualBytes(a, b, row, begin, interval.begin))
            return false;
        begin = interval.end;
    }
    return haveEqualBytes(a, b, row, begin, a.width());
}

void useMaskFormat(QImage *image)
{
    if (image->format() != QImage::Format_RGB32)
        *image = std::move(*image).convertToFormat(QImage::Format_RGB32);
}

void fillRow(QImage *image, int row, const std::vector<Interval> &intervals,
             const std::vector<QRgb> &line)
{
    auto *pixels = reinterpret_cast<QRgb *>(image->scanLine(row));
    for (const Interval &interval : intervals)
        std::memcpy(pixels + interval.begin, line.data(),
                    static_cast<std::size_t>(interval.end - interval.begin) * sizeof(QRgb));
}

} // namespace

bool ImageMask::hasPositive() const
{
    return std::any_of(m_rects.begin(), m_rects.end(),
                       [](const MaskRect &rect) { return rect.type == POSITIVE; });
}

bool ImageMask::hasRect(int index) const
{
    return index >= 0 && index < count();
}

const ImageMask::MaskRect &ImageMask::maskRect(int index) const
{
    static const MaskRect none;
    return hasRect(index) ? m_rects[static_cast<std::size_t>(index)] : none;
}

void ImageMask::addMaskRect(const MaskRect &rect)
{
    m_rects.push_back(rect);
}

void ImageMask::setGeometry(int index, const QRect &geometry)
{
    if (hasRect(index))
        m_rects[static_cast<std::size_t>(index)].geometry = geometry;
}

void ImageMask::remove(int index)
{
    if (!hasRect(index))
        return;
    m_rects.erase(m_rects.begin() + index);
    if (m_selected == index)
        m_selected = -1;
    else if (m_selected > index)
        --m_selected;
}

void ImageMask::select(int index)
{
    if (index != -1 && !hasRect(index))
        return;
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
    const std::vector<MaskRect> rects = effectiveRects(m_rects, image->size());
    HiddenRows hidden(rects, image->rect(), hasPositive());
    const std::vector<QRgb> line(static_cast<std::size_t>(image->width()), filling);
    // Positive rectangles that hide nothing leave the picture as it is.
    if (std::any_of(rects.begin(), rects.end(),
                    [](const MaskRect &rect) { return rect.type != POSITIVE; }))
        useMaskFormat(image);
    for (int row = 0; row < image->height(); ++row) {
        const std::vector<Interval> &intervals = hidden.at(row);
        if (intervals.empty())
            continue;
        useMaskFormat(image);
        if (!image->isNull())
            fillRow(image, row, intervals, line);
    }
}

bool ImageMask::leavesEqual(const QImage &a, const QImage &b) const
{
    if (a.isNull() || a.size() != b.size() || a.format() != b.format() || a.depth() != 32)
        return false;
    HiddenRows hidden(effectiveRects(m_rects, a.size()), a.rect(), hasPositive());
    for (int row = 0; row < a.height(); ++row) {
        if (!haveEqualBytesOutside(hidden.at(row), a, b, row))
            return false;
    }
    return true;
}

} // namespace Morvex
