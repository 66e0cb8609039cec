#include "shared/uiabstraction/uievent.h"

#include <QDataStream>

namespace Morvex::UIAbstraction {

UIEvent::UIEvent(const QString &name)
    : m_name(name)
{
    static const int metaType = qRegisterMetaType<UIEvent>("Morvex::UIAbstraction::UIEvent");
    Q_UNUSED(metaType)
}

void UIEvent::serialize(QDataStream *stream) const
{
    *stream << m_name;
}

void UIEvent::deserialize(QDataStream *stream)
{
    *stream >> m_name;
}

} // namespace Morvex::UIAbstraction
