#include "qtbackend/keyreport.h"

#include "qtbackend/actionreport.h"

namespace Morvex {

// Goes on with a text under the name that it began with, as to find one takes long.
int KeyReport::add(QObject *target, const QString &keys)
{
    const QVariantMap more{{QStringLiteral("text"), keys}};
    const QString what = QStringLiteral("type");
    if (m_typedInto == target && m_lastTyped == m_report.lastNumber()) {
        m_lastTyped = m_report.add(what, m_typedIntoName, more);
    } else {
        m_typedIntoName = m_report.nameOf(target);
        m_lastTyped = m_report.add(what, target, more);
    }
    m_typedInto = target;
    return m_lastTyped;
}

void KeyReport::addSecret(QObject *target)
{
    if (m_lastSecret == 0 || m_lastSecret != m_report.lastNumber())
        m_lastSecret = m_report.add(QStringLiteral("password"), target);
}

} // namespace Morvex
