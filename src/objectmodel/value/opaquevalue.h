#pragma once

#include <QMetaType>
#include <QString>
#include <QVariant>

namespace Morvex {

/// What is known in this process of a value of a type that only another one has.
struct OpaqueValue
{
    QString typeName;
    /// As textOfValue gives it there.
    QString text;
    /// As hasText says there.
    bool hasText = false;
};

} // namespace Morvex

Q_DECLARE_METATYPE(Morvex::OpaqueValue)

namespace Morvex {

/// Null for any other value. Lives as long as @p value.
inline const OpaqueValue *opaqueValueOf(const QVariant &value)
{
    return value.userType() == qMetaTypeId<OpaqueValue>()
               ? static_cast<const OpaqueValue *>(value.constData())
               : nullptr;
}

} // namespace Morvex
