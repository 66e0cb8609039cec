#include "runner/settingcheck.h"

#include "objectmodel/value/opaquevalue.h"
#include "objectmodel/value/propertypath.h"
#include "objectmodel/value/wholenumber.h"

#include <QDateTime>
#include <QMetaType>

#include <cmath>

namespace Morvex {
namespace {

// Texts that a widget writes its own way.
bool isMarkup(const QString &property)
{
    return property == QLatin1String("html") || property == QLatin1String("markdown");
}

// A truth value would be made of any text and number, true of nearly all.
bool isTruthValue(const QVariant &value)
{
    if (value.userType() == QMetaType::Bool)
        return true;
    static const QStringList texts{QStringLiteral("true"), QStringLiteral("false"),
                                   QStringLiteral("1"), QStringLiteral("0")};
    return texts.contains(value.toString(), Qt::CaseInsensitive);
}

bool isScriptNumber(const QVariant &value)
{
    return value.userType() == QMetaType::Int || value.userType() == QMetaType::Double;
}

bool isReal(const QVariant &value)
{
    return value.userType() == QMetaType::Double || value.userType() == QMetaType::Float;
}

// The whole numbers of a type.
struct Range
{
    explicit Range(int type)
        : bits(8 * QMetaType::sizeOf(type) - (isSignedNumberType(type) ? 1 : 0))
        , isSigned(isSignedNumberType(type))
    {
    }

    bool contains(double number) const
    {
        const double end = std::ldexp(1.0, bits);
        return number >= (isSigned ? -end : 0) && number < end;
    }

    QString text() const
    {
        const quint64 last = ~quint64(0) >> (64 - bits);
        return QStringLiteral("from %1 to %2")
            .arg(isSigned ? -static_cast<qint64>(last) - 1 : 0)
            .arg(last);
    }

    int bits;
    bool isSigned;
};

QString whyNoWholeNumber(int type, const QVariant &wanted)
{
    const double number = wanted.toDouble();
    if (number != std::floor(number))
        return QStringLiteral("takes a whole number, not %1").arg(wanted.toString());
    const Range range(type);
    return range.contains(number) ? QString()
                                  : QStringLiteral("takes a whole number %1, not %2")
                                        .arg(range.text(), wanted.toString());
}

// How far a number may be from the one that is wanted. Spin boxes round to their decimals; an
// opacity is kept as one of 256.
double roundingOf(const SharedPtr<Object> &owner)
{
    const SharedPtr<Object> decimals = followProperties(owner, {QStringLiteral("decimals")});
    return decimals ? 0.5 * std::pow(10, -decimals->value().toInt()) : 1.0 / 255;
}

bool isClose(double wanted, double held, double rounding)
{
    return std::abs(wanted - held) <= rounding + 1e-6 * std::abs(wanted);
}

bool isMomentType(int type)
{
    return type == QMetaType::QDate || type == QMetaType::QTime || type == QMetaType::QDateTime;
}

// What the property holds, also when only another process has its type.
QVariant valueOf(const Object &object)
{
    const QVariant value = object.value();
    const OpaqueValue *opaque = opaqueValueOf(value);
    const int type = opaque ? QMetaType::type(opaque->typeName.toLatin1()) : 0;
    QVariant moment = opaque ? opaque->text : QString();
    return isMomentType(type) && moment.convert(type) ? moment : value;
}

// Fields of dates keep what the clock shows, whatever the zone of it is.
bool isSame(const QVariant &a, const QVariant &b)
{
    return a == b || (a.userType() == QMetaType::QDateTime && a.toDate() == b.toDate() &&
                      a.toTime() == b.toTime());
}

// Whether the property holds what it was set to. True when that can't be said.
bool isTaken(const QVariant &wanted, const QVariant &held, const QString &text)
{
    QVariant converted = wanted;
    return !held.isValid() || !converted.convert(held.userType()) || isSame(converted, held) ||
           wanted.toString() == text;
}

} // namespace

QString whyUnsuitable(const QVariant &held, const QVariant &wanted)
{
    if (held.userType() == QMetaType::Bool && !isTruthValue(wanted))
        return QStringLiteral("takes true or false");
    return isScriptNumber(wanted) && isWholeNumber(held) ? whyNoWholeNumber(held.userType(), wanted)
                                                         : QString();
}

QString whyNotTaken(const Setting &setting, const Object &after)
{
    const QVariant held = valueOf(after);
    if (isMarkup(setting.property) || isTaken(setting.wanted, held, after.valueText()))
        return {};
    const bool isKept = isReal(held) && isClose(setting.wanted.toDouble(), held.toDouble(),
                                                roundingOf(setting.owner));
    if (isKept)
        return {};
    if (isWholeNumber(held) || isReal(held) || isMomentType(held.userType()))
        return QStringLiteral("doesn't take %1, it is %2")
            .arg(setting.wanted.toString(), after.valueText());
    return setting.before && setting.before->value() == after.value()
               ? QStringLiteral("doesn't take this value, it has not changed")
               : QString();
}

} // namespace Morvex
