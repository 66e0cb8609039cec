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

void WireWriter::kind(WireKind kind)
{
    number(static_cast<quint8>(kind));
}

void WireWriter::reals(WireKind wireKind, std::initializer_list<double> numbers)
{
    kind(wireKind);
    for (const double each : numbers)
        real(each);
}

void WireWriter::wholes(WireKind wireKind, std::initializer_list<int> numbers)
{
    kind(wireKind);
    for (const int each : numbers)
        number(each);
}

void WireWriter::value(const QVariant &value, int depth)
{
    if (!value.isValid())
        kind(WireKind::Invalid);
    else if (!integer(value) && !plain(value) && !nested(value, depth) && !geometry(value) &&
             !color(value))
        opaque(value);
}

// Each writes a value of its kinds, and says whether it is one of them.

bool WireWriter::integer(const QVariant &value)
{
    if (!isWholeNumber(value))
        return false;
    kind(WireKind::Integer);
    number(static_cast<quint8>(value.userType()));
    number(isSignedNumber(value) ? value.toLongLong() : static_cast<qint64>(value.toULongLong()));
    return true;
}

bool WireWriter::plain(const QVariant &value)
{
    switch (static_cast<QMetaType::Type>(value.userType())) {
    case QMetaType::Bool:
        kind(WireKind::Boolean);
        number(static_cast<quint8>(value.toBool()));
        return true;
    case QMetaType::Double:
        reals(WireKind::Double, {value.toDouble()});
        return true;
    case QMetaType::Float:
        reals(WireKind::Float, {value.toDouble()});
        return true;
    case QMetaType::QString:
        kind(WireKind::Text);
        text(value.toString());
        return true;
    case QMetaType::QByteArray:
        kind(WireKind::Bytes);
        bytes(value.toByteArray());
        return true;
    default:
        return false;
    }
}

bool WireWriter::nested(const QVariant &value, int depth)
{
    const bool mayNest = depth < maxWireDepth;
    const int type = value.userType();
    if (type == qMetaTypeId<ObjectRef>()) {
        kind(WireKind::Object);
        object(*static_cast<const ObjectRef *>(value.constData()), depth);
    } else if (type == QMetaType::QStringList) {
        kind(WireKind::TextList);
        texts(value.toStringList());
    } else if (type == QMetaType::QVariantList && mayNest) {
        kind(WireKind::List);
        list(value.toList(), depth);
    } else if (type == QMetaType::QVariantMap && mayNest) {
        kind(WireKind::Map);
        map(value.toMap(), depth);
    } else {
        return false;
    }
    return true;
}

bool WireWriter::geometry(const QVariant &value)
{
    switch (static_cast<QMetaType::Type>(value.userType())) {
    case QMetaType::QPoint:
        wholes(WireKind::Point, {value.toPoint().x(), value.toPoint().y()});
        return true;
    case QMetaType::QPointF:
        reals(WireKind::PointF, {value.toPointF().x(), value.toPointF().y()});
        return true;
    case QMetaType::QSize:
        wholes(WireKind::Size, {value.toSize().width(), value.toSize().height()});
        return true;
    case QMetaType::QSizeF:
        reals(WireKind::SizeF, {value.toSizeF().width(), value.toSizeF().height()});
        return true;
    case QMetaType::QRect: {
        const QRect rect = value.toRect();
        wholes(WireKind::Rect, {rect.left(), rect.top(), rect.right(), rect.bottom()});
        return true;
    }
    case QMetaType::QRectF: {
        const QRectF rect = value.toRectF();
        reals(WireKind::RectF, {rect.x(), rect.y(), rect.width(), rect.height()});
        return true;
    }
    default:
        return false;
    }
}

bool WireWriter::color(const QVariant &value)
{
    // One that is none has no numbers.
    if (value.userType() != QMetaType::QColor || !value.value<QColor>().isValid())
        return false;
    kind(WireKind::Color);
    number(static_cast<quint64>(value.value<QColor>().rgba64()));
    return true;
}

void WireWriter::opaque(const QVariant &value)
{
    kind(WireKind::Opaque);
    const OpaqueValue *opaque = opaqueValueOf(value);
    text(opaque ? opaque->typeName : QString::fromLatin1(value.typeName()));
    text(textOfValue(value));
    number(static_cast<quint8>(hasText(value)));
}

} // namespace Morvex
