#pragma once

#include "morvex_export.h"

#include <QRect>

#include <vector>

class QBrush;
class QImage;
class QPainter;
class QPoint;

namespace Morvex {

/// The regions of a picture that count in a comparison. Negative rectangles are left out; as soon
/// as there is a positive one, all that is in none of these is left out too.
class MORVEX_EXPORT ImageMask
{
public:
    enum Type { POSITIVE = 1, NEGATIVE = 2 };

    struct MORVEX_EXPORT MaskRect
    {
        /// Of Type; any other number hides as a negative one does.
        int type = NEGATIVE;
        QRect geometry;
        bool selected = false;
    };

    ImageMask() = default;

    int count() const { return static_cast<int>(m_rects.size()); }
    bool hasPositive() const;

    /// @p index counts from 0, here and below. Where there is none, nothing happens, and this one
    /// is a default one.
    const MaskRect &maskRect(int index) const;

    void addMaskRect(const MaskRect &rect);
    void setGeometry(int index, const QRect &geometry);
    /// Later rectangles move up. The selection goes when it was this one.
    void remove(int index);

    /// -1 for none.
    int selected() const { return m_selected; }
    void select(int index);

    /// The rectangle at a point, for an editor: the topmost negative one, else the topmost
    /// positive one; -1 for none. @p grown takes two pixels around each for part of it.
    int maskAt(const QPoint &point, bool grown) const;

    void scale(double factor);

    /// Paints the rectangles that @p clip touches, for an editor; @p outlines adds a frame around
    /// the selected one.
    void drawToPainter(QPainter *painter, const QRect &clip, const QBrush &positive,
                       const QBrush &negative, bool outlines) const;

    /// Fills what does not count with one colour. A picture in which something was filled has no
    /// alpha channel afterwards. Without rectangles the outermost line of pixels is filled on each
    /// side.
    void drawToImage(QImage *image) const;

    /// Whether two pictures are the same in all that drawToImage would leave of them. Compares
    /// bytes and makes no copies: false may also mean that this can't be said so.
    bool leavesEqual(const QImage &a, const QImage &b) const;

private:
    bool hasRect(int index) const;

    std::vector<MaskRect> m_rects;
    int m_selected = -1;
};

} // namespace Morvex
