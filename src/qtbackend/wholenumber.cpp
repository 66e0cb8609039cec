#include "qtbackend/wholenumber.h"

#include <QMetaType>
#include <QVariant>

namespace Morvex {

bool isSignedNumber(const QVariant &value)
{
    switch (static_cast<QMetaType::Type>(value.userType())) {
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

bool isWholeNumber(const QVariant &value)
{
    switch (static_cast<QMetaType::Type>(value.userType())) {
    case QMetaType::UInt:
    case QMetaType::ULongLong:
    case QMetaType::ULong:
    case QMetaType::UShort:
    case QMetaType::UChar:
        return true;
    default:
        return isSignedNumber(value);
    }
}

} // namespace Morvex
