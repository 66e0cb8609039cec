#include "shared/loadimage.h"

#include <QBuffer>
#include <QImageReader>
#include <QtEndian>

namespace Morvex {
namespace {

// Two screens of 7680x4320.
const qint64 maxPixels = qint64(1) << 26;

// The densest that zlib packs.
const qint64 maxCompressionRatio = 1032;

} // namespace

bool isTooLargePicture(const QSize &size)
{
    return qint64(size.width()) * size.height() > maxPixels;
}

QImage loadImage(const QByteArray &bytes, const QByteArray &format)
{
    QBuffer buffer;
    buffer.setData(bytes);
    QImageReader reader(&buffer, format);
    const QSize size = reader.size();
    if (!size.isValid() || isTooLargePicture(size))
        return {};
    return reader.read();
}

QByteArray uncompress(const QByteArray &bytes)
{
    const int headerSize = 4;
    if (bytes.size() <= headerSize)
        return {};
    const qint64 promised = qFromBigEndian<quint32>(bytes.constData());
    return promised > (bytes.size() - headerSize) * maxCompressionRatio ? QByteArray()
                                                                        : qUncompress(bytes);
}

} // namespace Morvex
