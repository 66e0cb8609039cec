#pragma once

#include "morvex_export.h"

#include <QImage>

namespace Morvex {

/// Measures of how alike two pictures are.
class MORVEX_EXPORT ImageComparison
{
public:
    /// Opaque; each channel is cut to 0 to 255.
    static QRgb makeColor(double red, double green, double blue);

    /// @p other in the size of @p image.
    static QImage normalizeSize(const QImage &image, const QImage &other);

    /// 0 to 1 on the gray values of both pictures, the second in the size of the first. 0 for a
    /// null picture.
    static double normalizedCorrelation(const QImage &a, const QImage &b);

    /// The same on the distances from the mean, -1 to 1.
    static double normalizedCrossCorrelation(const QImage &a, const QImage &b);

    /// A picture of the differences in the size of @p b, greenish when @p value reaches
    /// @p threshold and reddish otherwise, with strong colours where the gray values differ. Null
    /// when one of the pictures is.
    static QImage normalizedCorrelationDiff(const QImage &a, const QImage &b, double value,
                                            double threshold);
};

} // namespace Morvex
