#include "objectmodel/qt/valueobject.h"

#include <QColor>
#include <QLocale>
#include <QMetaType>
#include <QRect>
#include <QStringList>

namespace Morvex {
namespace {

bool isWholeNumber(const QVariant &value)
{
    switch (static_cast<QMetaType::Type>(value.type())) {
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Long:
    case QMetaType::ULong:
    case QMetaType::Short:
    case QMetaType::UShort:
        return true;
    default:
        return false;
    }
}

bool isFloatingPoint(const QVariant &value)
{
    const int type = value.userType();
    return type == QMetaType::Double || type == QMetaType::Float;
}

bool areNumbers(const QVariant &a, const QVariant &b)
{
    return (isWholeNumber(a) || isFloatingPoint(a)) && (isWholeNumber(b) || isFloatingPoint(b));
}

bool areEqualNumbers(const QVariant &a, const QVariant &b)
{
    if (isWholeNumber(a) && isWholeNumber(b))
        return a.toLongLong() == b.toLongLong();
    return !(a.toDouble() < b.toDouble()) && !(a.toDouble() > b.toDouble());
}

QString textOfRect(const QRectF &rect)
{
    return QStringLiteral("%1,%2 %3x%4")
        .arg(rect.x())
        .arg(rect.y())
        .arg(rect.width())
        .arg(rect.height());
}

} // namespace

ValueObject::ValueObject(const QVariant &value, const Class *valueClass)
    : ValueObject(value, textOfValue(value), valueClass)
{
}

ValueObject::ValueObject(const QVariant &value, const QString &text, const Class *valueClass)
    : m_value(value)
    , m_text(text)
    , m_class(valueClass)
{
}

bool ValueObject::compare(const SharedPtr<Object> &other) const
{
    if (!other)
        return false;
    const QVariant value = other->value();
    // What has no type of its own in a verification point is compared as text.
    if (value.userType() == QMetaType::QString)
        return m_text == other->valueText();
    if (areNumbers(m_value, value))
        return areEqualNumbers(m_value, value);
    return value.isValid() && value.userType() == m_value.userType() && m_value == value;
}

QString textOfValue(const QVariant &value)
{
    switch (static_cast<QMetaType::Type>(value.userType())) {
    case QMetaType::Double:
    case QMetaType::Float:
        return QString::number(value.toDouble(), 'g', QLocale::FloatingPointShortest);
    case QMetaType::QColor:
        return value.value<QColor>().name(QColor::HexArgb);
    case QMetaType::QPoint:
        return QStringLiteral("%1,%2").arg(value.toPoint().x()).arg(value.toPoint().y());
    case QMetaType::QSize:
        return QStringLiteral("%1x%2").arg(value.toSize().width()).arg(value.toSize().height());
    case QMetaType::QRect:
    case QMetaType::QRectF:
        return textOfRect(value.toRectF());
    case QMetaType::QStringList:
        return value.toStringList().join(QLatin1Char('\n'));
    default:
        return value.toString();
    }
}

} // namespace Morvex
