#include "objectmodel/value/wholenumber.h"

#include <QMetaType>
#include <QVariant>

namespace Morvex {

bool isSignedNumberType(int type)
{
    switch (static_cast<QMetaType::Type>(type)) {
    case QMetaType::Int:
    case QMetaType::LongLong:
    case QMetaType::Long:
    case QMetaType::Short:
    case QMetaType::Char:
    case QMetaType::SChar:
        return true;
    default:
        return false;
    }
}

bool isWholeNumberType(int type)
{
    switch (static_cast<QMetaType::Type>(type)) {
    case QMetaType::UInt:
    case QMetaType::ULongLong:
    case QMetaType::ULong:
    case QMetaType::UShort:
    case QMetaType::UChar:
        return true;
    default:
        return isSignedNumberType(type);
    }
}

bool isSignedNumber(const QVariant &value)
{
    return isSignedNumberType(value.userType());
}

bool isWholeNumber(const QVariant &value)
{
    return isWholeNumberType(value.userType());
}

} // namespace Morvex
