#include "test/webreport/picturedifference.h"

#include "shared/files/writefile.h"
#include "test/webreport/webreportruns.h"

#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRect>

#include <algorithm>
#include <utility>
#include <vector>

namespace Morvex {
namespace {

// Differences in cells that touch are one region.
const int cellSize = 16;

// A page frames no more of them.
const int mostRegions = 50;

// The bounds of what differs in each cell of a grid, empty where nothing does.
class Cells
{
public:
    // Both pictures have four bytes a pixel and one size.
    Cells(const QImage &a, const QImage &b)
        : m_columns((a.width() + cellSize - 1) / cellSize)
        , m_rows((a.height() + cellSize - 1) / cellSize)
        , m_bounds(std::size_t(m_columns) * m_rows)
    {
        for (int y = 0; y < a.height(); ++y) {
            const auto *left = reinterpret_cast<const QRgb *>(a.constScanLine(y));
            const auto *right = reinterpret_cast<const QRgb *>(b.constScanLine(y));
            for (int x = 0; x < a.width(); ++x) {
                if (left[x] == right[x])
                    continue;
                ++m_count;
                at(x / cellSize, y / cellSize) |= QRect(x, y, 1, 1);
            }
        }
    }

    qint64 differingPixels() const { return m_count; }

    // The bounds of the cells that touch, the largest first. Leaves nothing in the cells.
    std::vector<QRect> takeRegions()
    {
        std::vector<QRect> regions;
        for (int row = 0; row < m_rows; ++row) {
            for (int column = 0; column < m_columns; ++column) {
                if (!at(column, row).isEmpty())
                    regions.push_back(takeRegion(column, row));
            }
        }
        const auto area = [](const QRect &one) { return qint64(one.width()) * one.height(); };
        std::stable_sort(regions.begin(), regions.end(), [&](const QRect &one, const QRect &other) {
            return area(one) > area(other);
        });
        return regions;
    }

private:
    QRect &at(int column, int row) { return m_bounds[std::size_t(row) * m_columns + column]; }

    QRect take(int column, int row) { return std::exchange(at(column, row), QRect()); }

    QRect takeRegion(int column, int row)
    {
        QRect region = take(column, row);
        std::vector<QPoint> waiting{{column, row}};
        while (!waiting.empty()) {
            const QPoint cell = waiting.back();
            waiting.pop_back();
            const QRect around =
                QRect(cell - QPoint(1, 1), cell + QPoint(1, 1)) & QRect(0, 0, m_columns, m_rows);
            for (int y = around.top(); y <= around.bottom(); ++y) {
                for (int x = around.left(); x <= around.right(); ++x) {
                    if (at(x, y).isEmpty())
                        continue;
                    region |= take(x, y);
                    waiting.push_back({x, y});
                }
            }
        }
        return region;
    }

    int m_columns;
    int m_rows;
    std::vector<QRect> m_bounds;
    qint64 m_count = 0;
};

QJsonObject differenceOf(Cells cells)
{
    const std::vector<QRect> regions = cells.takeRegions();
    QJsonArray largest;
    for (std::size_t i = 0; i < std::min<std::size_t>(regions.size(), mostRegions); ++i) {
        const QRect &one = regions[i];
        largest.append(QJsonArray{one.x(), one.y(), one.width(), one.height()});
    }
    return {{QStringLiteral("pixels"), double(cells.differingPixels())},
            {QStringLiteral("regions"), int(regions.size())},
            {QStringLiteral("largest"), largest}};
}

} // namespace

bool writePictureDifference(const QString &failedImage)
{
    const QString expectedImage = expectedPictureOf(failedImage);
    if (expectedImage.isEmpty())
        return true;
    const QImage expected = QImage(expectedImage).convertToFormat(QImage::Format_ARGB32);
    const QImage failed = QImage(failedImage).convertToFormat(QImage::Format_ARGB32);
    if (failed.isNull() || failed.size() != expected.size())
        return true;
    const QByteArray json =
        QJsonDocument(differenceOf(Cells(expected, failed))).toJson(QJsonDocument::Compact);
    return writeFileSafely(failedImage + QStringLiteral(".js"),
                           "morvexPictureDifference(" + json + ");\n")
               .outcome == FileWriteResult::Written;
}

} // namespace Morvex
