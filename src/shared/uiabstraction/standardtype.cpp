#include "shared/uiabstraction/standardtype.h"

#include <QDataStream>

namespace Morvex::UIAbstraction {

StandardType::StandardType(const QString &name)
    : m_name(name)
{
    static const int metaType =
        qRegisterMetaType<StandardType>("Morvex::UIAbstraction::StandardType");
    Q_UNUSED(metaType)
}

QString StandardType::toString() const
{
    return isKnown() ? m_name : QStringLiteral("unknown");
}

void StandardType::serialize(QDataStream *stream) const
{
    *stream << m_name;
}

void StandardType::deserialize(QDataStream *stream)
{
    *stream >> m_name;
}

} // namespace Morvex::UIAbstraction
