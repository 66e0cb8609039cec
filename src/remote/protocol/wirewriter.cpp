#include "remote/protocol/wirewriter.h"

#include "objectmodel/value/opaquevalue.h"
#include "objectmodel/value/valueobject.h"
#include "objectmodel/value/wholenumber.h"
#include "remote/protocol/objectref.h"
#include "remote/protocol/wirekinds.h"

#include <QColor>
#include <QPointF>
#include <QRectF>
#include <QSizeF>
#include <QStringList>

#include <cstring>
#include <initializer_list>

namespace Morvex {

bool WireWriter::hasRoom(qint64 size)
{
    m_isGood = m_isGood && size <= maxMessageSize - m_bytes->size();
    return m_isGood;
}

void WireWriter::elementCount(int count)
{
    m_isGood = m_isGood && static_cast<quint32>(count) <= maxWireElements - m_elements;
    m_elements += m_isGood ? static_cast<quint32>(count) : 0;
    number(static_cast<quint32>(count));
}

void WireWriter::text(const QString &text)
{
    if (!hasRoom(static_cast<qint64>(sizeof(quint16)) * text.size()))
        return;
    number(static_cast<quint32>(text.size()));
    for (const QChar character : text)
        number(static_cast<quint16>(character.unicode()));
}

void WireWriter::texts(const QStringList &texts)
{
    elementCount(texts.size());
    for (auto it = texts.cbegin(); it != texts.cend() && m_isGood; ++it)
        text(*it);
}

void WireWriter::bytes(const QByteArray &bytes)
{
    if (!hasRoom(bytes.size()))
        return;
    number(static_cast<quint32>(bytes.size()));
    m_bytes->append(bytes);
}

void WireWriter::real(double real)
{
    quint64 bits;
    std::memcpy(&bits, &real, sizeof bits);
    number(bits);
}

void WireWriter::list(const QVariantList &values, int depth)
{
    elementCount(values.size());
    for (auto it = values.cbegin(); it != values.cend() && m_isGood; ++it)
        value(*it, depth + 1);
}

void WireWriter::map(const QVariantMap &values, int depth)
{
    elementCount(values.size());
    for (auto it = values.cbegin(); it != values.cend() && m_isGood; ++it) {
        text(it.key());
        value(it.value(), depth + 1);
    }
}

void WireWriter::object(const ObjectRef &object, int depth)
{
    number(static_cast<quint8>(object.kind));
    number(object.id);
    number(object.handle);
    number(object.classNumber);
    number(static_cast<quint8>(object.isCast));
    text(object.text);
    value(object.value, depth + 1);
}

void WireWriter::value(const QVariant &value, int depth)
{
    const auto kind = [this](WireKind wireKind) { number(static_cast<quint8>(wireKind)); };
    const auto reals = [this, &kind](WireKind wireKind, std::initializer_list<double> numbers) {
        kind(wireKind);
        for (const double each : numbers)
            real(each);
    };
    const auto wholes = [this, &kind](WireKind wireKind, std::initializer_list<int> numbers) {
        kind(wireKind);
        for (const int each : numbers)
            number(each);
    };
    if (!value.isValid())
        return kind(WireKind::Invalid);
    if (isWholeNumber(value)) {
        kind(WireKind::Integer);
        number(static_cast<quint8>(value.userType()));
        return number(isSignedNumber(value) ? value.toLongLong()
                                            : static_cast<qint64>(value.toULongLong()));
    }
    if (value.userType() == qMetaTypeId<ObjectRef>()) {
        kind(WireKind::Object);
        return object(*static_cast<const ObjectRef *>(value.constData()), depth);
    }
    const bool mayNest = depth < maxWireDepth;
    switch (static_cast<QMetaType::Type>(value.userType())) {
    case QMetaType::Bool:
        kind(WireKind::Boolean);
        return number(static_cast<quint8>(value.toBool()));
    case QMetaType::Double:
        return reals(WireKind::Double, {value.toDouble()});
    case QMetaType::Float:
        return reals(WireKind::Float, {value.toDouble()});
    case QMetaType::QString:
        kind(WireKind::Text);
        return text(value.toString());
    case QMetaType::QByteArray:
        kind(WireKind::Bytes);
        return bytes(value.toByteArray());
    case QMetaType::QStringList:
        kind(WireKind::TextList);
        return texts(value.toStringList());
    case QMetaType::QVariantList:
        if (!mayNest)
            break;
        kind(WireKind::List);
        return list(value.toList(), depth);
    case QMetaType::QVariantMap:
        if (!mayNest)
            break;
        kind(WireKind::Map);
        return map(value.toMap(), depth);
    case QMetaType::QPoint:
        return wholes(WireKind::Point, {value.toPoint().x(), value.toPoint().y()});
    case QMetaType::QPointF:
        return reals(WireKind::PointF, {value.toPointF().x(), value.toPointF().y()});
    case QMetaType::QSize:
        return wholes(WireKind::Size, {value.toSize().width(), value.toSize().height()});
    case QMetaType::QSizeF:
        return reals(WireKind::SizeF, {value.toSizeF().width(), value.toSizeF().height()});
    case QMetaType::QRect: {
        const QRect area = value.toRect();
        return wholes(WireKind::Rect, {area.left(), area.top(), area.right(), area.bottom()});
    }
    case QMetaType::QRectF: {
        const QRectF area = value.toRectF();
        return reals(WireKind::RectF, {area.x(), area.y(), area.width(), area.height()});
    }
    case QMetaType::QColor:
        // One that is none has no numbers.
        if (!value.value<QColor>().isValid())
            break;
        kind(WireKind::Color);
        return number(static_cast<quint64>(value.value<QColor>().rgba64()));
    default:
        break;
    }
    kind(WireKind::Opaque);
    const OpaqueValue *opaque = opaqueValueOf(value);
    text(opaque ? opaque->typeName : QString::fromLatin1(value.typeName()));
    text(textOfValue(value));
    number(static_cast<quint8>(hasText(value)));
}

} // namespace Morvex
