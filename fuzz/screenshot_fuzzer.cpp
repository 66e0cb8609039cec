#include "shared/richimage.h"

#include <QDataStream>

using namespace Morvex;

// The first byte chooses between a map of numbers and a picture, a compressed picture and a plain
// one.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, std::size_t size)
{
    if (size == 0)
        return 0;
    const QByteArray bytes(reinterpret_cast<const char *>(data + 1), static_cast<int>(size - 1));
    switch (data[0] % 3) {
    case 0: {
        QVariantMap map{{QStringLiteral("image"), bytes.mid(64)}};
        QDataStream stream(bytes.left(64));
        QVariantList transform;
        while (!stream.atEnd()) {
            double number = 0;
            stream >> number;
            transform += number;
        }
        map.insert(QStringLiteral("transform"), transform);
        map.insert(QStringLiteral("density"), transform.value(0));
        const Screenshot screenshot = Screenshot::fromVariant(map);
        screenshot.nativeToImage(QPoint(1, 1));
        break;
    }
    case 1:
        Screenshot::fromBmpZipData(bytes, QTransform(), 1);
        break;
    default:
        Screenshot::fromBmpData(bytes, QTransform(), 1);
    }
    return 0;
}
