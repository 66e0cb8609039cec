#include "shared/uiabstraction/dump/pngreader.h"

#include "shared/uiabstraction/pictures/loadimage.h"

#include <QDataStream>
#include <QIODevice>
#include <QtEndian>

#include <limits>

namespace Morvex::UIAbstraction {
namespace {

const char signature[] = "\x89PNG\r\n\x1a\n";
const int signatureSize = 8;
// Length and type; a check sum follows the data.
const int chunkHeaderSize = 8;
const int checkSumSize = 4;

} // namespace

PngReader::PngReader(QDataStream *stream)
    : m_stream(stream)
    , m_pixelsLeft(maxPicturePixels)
{
}

QImage PngReader::read()
{
    qint32 marker = 0;
    if (m_stream->status() == QDataStream::Ok)
        *m_stream >> marker;
    if (m_stream->status() != QDataStream::Ok || marker == 0)
        return {};
    const QByteArray png = takeBytes();
    if (png.isEmpty()) {
        m_stream->setStatus(QDataStream::ReadCorruptData);
        return {};
    }
    const QImage image = loadImage(png, "PNG", m_pixelsLeft);
    if (image.isNull())
        qWarning("A picture that is damaged or too large is left out.");
    m_pixelsLeft -= pixelCount(image.size());
    return image;
}

// From the signature to the end of the last chunk; empty when that is not there.
QByteArray PngReader::takeBytes()
{
    QByteArray bytes;
    if (!take(&bytes, signatureSize) || bytes != QByteArray(signature, signatureSize))
        return {};
    bool isLast = false;
    while (!isLast) {
        if (!takeChunk(&bytes, &isLast))
            return {};
    }
    return bytes;
}

bool PngReader::takeChunk(QByteArray *bytes, bool *isLast)
{
    const int start = bytes->size();
    if (!take(bytes, chunkHeaderSize))
        return false;
    const auto length = qFromBigEndian<quint32>(bytes->constData() + start);
    *isLast = bytes->mid(start + 4, 4) == "IEND";
    return take(bytes, qint64(length) + checkSumSize);
}

bool PngReader::take(QByteArray *bytes, qint64 count)
{
    QIODevice *device = m_stream->device();
    const int size = bytes->size();
    if (!device || count > device->bytesAvailable() ||
        count > std::numeric_limits<int>::max() - size)
        return false;
    bytes->resize(size + static_cast<int>(count));
    return m_stream->readRawData(bytes->data() + size, static_cast<int>(count)) == count;
}

} // namespace Morvex::UIAbstraction
