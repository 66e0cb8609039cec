#include "remote/protocol/wirereader.h"

#include "objectmodel/value/opaquevalue.h"
#include "objectmodel/value/wholenumber.h"
#include "remote/protocol/objectref.h"
#include "remote/protocol/wirekinds.h"

#include <QColor>
#include <QPointF>
#include <QRectF>
#include <QSizeF>

#include <cstring>

namespace Morvex {

bool WireReader::has(quint64 size)
{
    m_isGood = m_isGood && size <= static_cast<quint64>(m_bytes.size() - m_position);
    return m_isGood;
}

// Of elements that take this many bytes each, at least.
quint32 WireReader::count(quint64 leastSize)
{
    const auto announced = number<quint32>();
    return has(announced * leastSize) ? announced : 0;
}

quint32 WireReader::elementCount(quint64 leastSize)
{
    const quint32 announced = count(leastSize);
    m_isGood = m_isGood && announced <= maxWireElements - m_elements;
    m_elements += m_isGood ? announced : 0;
    return m_isGood ? announced : 0;
}

QVariant WireReader::fail()
{
    m_isGood = false;
    return {};
}

double WireReader::real()
{
    const auto bits = number<quint64>();
    double real;
    std::memcpy(&real, &bits, sizeof real);
    return real;
}

QString WireReader::text()
{
    const quint32 size = count(sizeof(quint16));
    QString text(static_cast<int>(size), Qt::Uninitialized);
    for (QChar &character : text)
        character = QChar(number<quint16>());
    return text;
}

QByteArray WireReader::bytes()
{
    const auto size = static_cast<int>(count(1));
    const QByteArray bytes = m_bytes.mid(m_position, size);
    m_position += size;
    return bytes;
}

QVariantList WireReader::list(int depth)
{
    QVariantList values;
    for (quint32 left = elementCount(1); left > 0 && m_isGood; --left)
        values += value(depth + 1);
    return m_isGood ? values : QVariantList();
}

QVariantMap WireReader::map(int depth)
{
    QVariantMap values;
    for (quint32 left = elementCount(sizeof(quint32) + 1); left > 0 && m_isGood; --left) {
        const QString key = text();
        values.insert(key, value(depth + 1));
    }
    return m_isGood ? values : QVariantMap();
}

QStringList WireReader::textList()
{
    QStringList texts;
    for (quint32 left = elementCount(sizeof(quint32)); left > 0 && m_isGood; --left)
        texts += text();
    return texts;
}

QVariant WireReader::integer()
{
    const int type = number<quint8>();
    const auto number64 = number<qint64>();
    if (!m_isGood || !isWholeNumberType(type))
        return fail();
    QVariant value =
        isSignedNumberType(type) ? QVariant(number64) : QVariant(static_cast<quint64>(number64));
    return value.convert(type) ? value : fail();
}

QVariant WireReader::opaque()
{
    OpaqueValue value;
    value.typeName = text();
    value.text = text();
    value.hasText = number<quint8>() != 0;
    return QVariant::fromValue(value);
}

QVariant WireReader::object(int depth)
{
    ObjectRef object;
    const auto kind = number<quint8>();
    if (kind > ObjectRef::Value)
        return fail();
    object.kind = static_cast<ObjectRef::Kind>(kind);
    object.id = number<qint32>();
    object.handle = number<quint32>();
    object.classNumber = number<quint32>();
    object.isCast = number<quint8>() != 0;
    object.text = text();
    object.value = value(depth + 1);
    return m_isGood ? QVariant::fromValue(object) : QVariant();
}

// Invalid for any other kind.
QVariant WireReader::geometry(WireKind kind)
{
    // In the order of the arguments, which that of their evaluation is not.
    const auto whole = [this](auto use) {
        const auto first = number<qint32>();
        return use(first, number<qint32>());
    };
    const auto pair = [this](auto use) {
        const double first = real();
        return use(first, real());
    };
    const auto point = [](double x, double y) { return QPointF(x, y); };
    const auto size = [](double width, double height) { return QSizeF(width, height); };
    switch (kind) {
    case WireKind::Point:
        return whole([](int x, int y) { return QPoint(x, y); });
    case WireKind::PointF:
        return pair(point);
    case WireKind::Size:
        return whole([](int width, int height) { return QSize(width, height); });
    case WireKind::SizeF:
        return pair(size);
    case WireKind::Rect: {
        const QPoint corner = whole([](int x, int y) { return QPoint(x, y); });
        return whole([&corner](int x, int y) { return QRect(corner, QPoint(x, y)); });
    }
    case WireKind::RectF: {
        const QPointF corner = pair(point);
        return QRectF(corner, pair(size));
    }
    default:
        return {};
    }
}

QVariant WireReader::value(int depth)
{
    // A nested value takes at least the room of its kind, but the stack has an end too.
    if (depth > maxWireDepth + 1)
        return fail();
    const auto kind = static_cast<WireKind>(number<quint8>());
    switch (kind) {
    case WireKind::Invalid:
        return {};
    case WireKind::Boolean:
        return number<quint8>() != 0;
    case WireKind::Integer:
        return integer();
    case WireKind::Double:
        return real();
    case WireKind::Float:
        return static_cast<float>(real());
    case WireKind::Text:
        return text();
    case WireKind::Bytes:
        return bytes();
    case WireKind::TextList:
        return textList();
    case WireKind::List:
        return list(depth);
    case WireKind::Map:
        return map(depth);
    case WireKind::Point:
    case WireKind::PointF:
    case WireKind::Size:
    case WireKind::SizeF:
    case WireKind::Rect:
    case WireKind::RectF:
        return geometry(kind);
    case WireKind::Color:
        return QColor(QRgba64::fromRgba64(number<quint64>()));
    case WireKind::Opaque:
        return opaque();
    case WireKind::Object:
        return object(depth);
    }
    return fail();
}

} // namespace Morvex
