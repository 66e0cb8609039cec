#pragma once

#include "morvex_export.h"

#include <QMetaType>
#include <QString>

class QDataStream;

namespace Morvex::UIAbstraction {

/// A kind of thing that users do to elements, by its name.
class MORVEX_EXPORT UIEvent
{
public:
    UIEvent() = default;
    explicit UIEvent(const QString &name);

    QString name() const { return m_name; }

    void serialize(QDataStream *stream) const;
    void deserialize(QDataStream *stream);

    bool operator==(const UIEvent &other) const { return m_name == other.m_name; }
    bool operator!=(const UIEvent &other) const { return !(*this == other); }
    bool operator<(const UIEvent &other) const { return m_name < other.m_name; }

private:
    QString m_name;
};

} // namespace Morvex::UIAbstraction

Q_DECLARE_METATYPE(Morvex::UIAbstraction::UIEvent)
