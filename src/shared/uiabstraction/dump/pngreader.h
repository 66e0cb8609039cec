#pragma once

#include <QImage>

class QDataStream;

namespace Morvex::UIAbstraction {

/// Reads the pictures of one stream, in the stream form of QImage. All of them together have no
/// more pixels than one picture may have: what is too large is read over and is a null picture.
/// Bytes that are no picture make the stream fail.
class PngReader
{
public:
    explicit PngReader(QDataStream *stream);

    QImage read();

private:
    QByteArray takeBytes();
    bool takeChunk(QByteArray *bytes, bool *isLast);
    bool take(QByteArray *bytes, qint64 count);

    QDataStream *m_stream;
    qint64 m_pixelsLeft;
};

} // namespace Morvex::UIAbstraction
