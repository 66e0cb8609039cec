#include "objectmodel/eventdata.h"

namespace Morvex {

EventData::EventData(int kind)
    : m_kind(kind)
{
}

EventData::EventData(const QString &method, const QStringList &arguments, const QString &resultName)
    : m_kind(GLOBAL_CALL)
    , m_methodName(method)
    , m_resultName(resultName)
{
    for (const QString &argument : arguments)
        addArgument({argument, EventDataArg::TEXT});
}

QString EventData::methodName() const
{
    return m_kind == METHOD_CALL || m_kind == GLOBAL_CALL ? m_methodName : QString();
}

} // namespace Morvex
