#include "shared/pictures/uncompress.h"

#include <QtEndian>

namespace Morvex {
namespace {

// The densest that zlib packs.
const qint64 maxCompressionRatio = 1032;

} // namespace

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
