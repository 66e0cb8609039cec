#pragma once

#include "morvex_export.h"

#include <QMetaType>
#include <QString>

class QDataStream;

namespace Morvex::UIAbstraction {

/// What an element is to a user, whatever the toolkit: "button", "label", "table". Unknown unless
/// it is given a name.
class MORVEX_EXPORT StandardType
{
public:
    StandardType() = default;
    explicit StandardType(const QString &name);

    bool isKnown() const { return !m_name.isNull(); }
    /// "unknown" for a type that is not known.
    QString toString() const;

    void serialize(QDataStream *stream) const;
    void deserialize(QDataStream *stream);

    bool operator==(const StandardType &other) const { return m_name == other.m_name; }
    bool operator!=(const StandardType &other) const { return !(*this == other); }

private:
    QString m_name;
};

} // namespace Morvex::UIAbstraction

Q_DECLARE_METATYPE(Morvex::UIAbstraction::StandardType)
