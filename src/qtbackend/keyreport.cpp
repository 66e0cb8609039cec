#include "qtbackend/keyreport.h"

#include "qtbackend/actionreport.h"

namespace Morvex {

bool KeyReport::isContinued(const QObject *target) const
{
    return m_typedInto == target && m_lastTyped == m_report.lastNumber();
}

void KeyReport::keepName(QObject *target)
{
    m_named = target;
    m_keptName = isContinued(target) ? m_typedIntoName : m_report.nameOf(target);
}

// Goes on with a text under the name that it began with, as to find one takes long.
int KeyReport::add(QObject *target, const QString &keys)
{
    const QVariantMap more{{QStringLiteral("text"), keys}};
    const QString what = QStringLiteral("type");
    if (isContinued(target)) {
        m_lastTyped = m_report.add(what, m_typedIntoName, more);
    } else {
        m_typedIntoName = m_named == target ? m_keptName : m_report.nameOf(target);
        m_lastTyped = m_report.add(what, m_typedIntoName, target, more);
    }
    m_typedInto = target;
    m_named = nullptr;
    return m_lastTyped;
}

void KeyReport::addSecret(QObject *target)
{
    if (m_lastSecret == 0 || m_lastSecret != m_report.lastNumber())
        m_lastSecret = m_report.add(QStringLiteral("password"), target);
}

} // namespace Morvex
