#include "objectmodel/value/valueobject.h"

#include "objectmodel/value/opaquevalue.h"
#include "objectmodel/value/wholenumber.h"

#include <QColor>
#include <QLocale>
#include <QMetaType>
#include <QRect>
#include <QStringList>

#include <cmath>
#include <limits>

namespace Morvex {
namespace {

bool isNegative(const QVariant &wholeNumber)
{
    return isSignedNumber(wholeNumber) && wholeNumber.toLongLong() < 0;
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

QString textOfNumber(double number)
{
    return QString::number(number, 'g', QLocale::FloatingPointShortest);
}

// The shortest text that gives the same float; as a double it would have digits that nobody wrote.
QString textOfFloat(float number)
{
    int digits = std::numeric_limits<float>::digits10;
    QString text = QString::number(double(number), 'g', digits);
    while (text.toFloat() != number && digits < std::numeric_limits<float>::max_digits10)
        text = QString::number(double(number), 'g', ++digits);
    return text;
}

QString textOfWholeNumber(const QVariant &value)
{
    return isSignedNumber(value) ? QString::number(value.toLongLong())
                                 : QString::number(value.toULongLong());
}

double toDouble(const QVariant &number)
{
    return number.userType() == QMetaType::Float ? textOfFloat(number.toFloat()).toDouble()
                                                 : number.toDouble();
}

bool areEqualNumbers(const QVariant &a, const QVariant &b)
{
    if (isWholeNumber(a) && isWholeNumber(b))
        return isNegative(a) == isNegative(b) && a.toLongLong() == b.toLongLong();
    const double left = toDouble(a);
    const double right = toDouble(b);
    return std::isnan(left) ? std::isnan(right) : left == right;
}

QString textOfPoint(const QPointF &point)
{
    return textOfNumber(point.x()) + QLatin1Char(',') + textOfNumber(point.y());
}

QString textOfSize(const QSizeF &size)
{
    return textOfNumber(size.width()) + QLatin1Char('x') + textOfNumber(size.height());
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
        return hasText(m_value) && m_text == other->valueText();
    if (areNumbers(m_value, value))
        return areEqualNumbers(m_value, value);
    return value.isValid() && value.userType() == m_value.userType() && m_value == value;
}

bool hasText(const QVariant &value)
{
    if (isWholeNumber(value))
        return true;
    if (const OpaqueValue *opaque = opaqueValueOf(value))
        return opaque->hasText;
    switch (static_cast<QMetaType::Type>(value.userType())) {
    case QMetaType::QPointF:
    case QMetaType::QPoint:
    case QMetaType::QSizeF:
    case QMetaType::QSize:
    case QMetaType::QRectF:
    case QMetaType::QRect:
    case QMetaType::QStringList:
        return true;
    default:
        return value.isValid() && value.canConvert(QMetaType::QString);
    }
}

QString textOfValue(const QVariant &value)
{
    if (isWholeNumber(value))
        return textOfWholeNumber(value);
    if (const OpaqueValue *opaque = opaqueValueOf(value))
        return opaque->text;
    switch (static_cast<QMetaType::Type>(value.userType())) {
    case QMetaType::Double:
        return textOfNumber(value.toDouble());
    case QMetaType::Float:
        return textOfFloat(value.toFloat());
    case QMetaType::QColor:
        return value.value<QColor>().name(QColor::HexArgb);
    case QMetaType::QPointF:
    case QMetaType::QPoint:
        return textOfPoint(value.toPointF());
    case QMetaType::QSizeF:
    case QMetaType::QSize:
        return textOfSize(value.toSizeF());
    case QMetaType::QRectF:
    case QMetaType::QRect:
        return textOfPoint(value.toRectF().topLeft()) + QLatin1Char(' ') +
               textOfSize(value.toRectF().size());
    case QMetaType::QStringList:
        return value.toStringList().join(QLatin1Char('\n'));
    default:
        return hasText(value) ? value.toString()
                              : QStringLiteral("(%1)").arg(QLatin1String(value.typeName()));
    }
}

} // namespace Morvex
