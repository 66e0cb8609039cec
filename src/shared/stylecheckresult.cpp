#include "shared/stylecheckresult.h"

namespace Morvex {

StyleCheckResult StyleCheckResult::sufficientMenuItems()
{
    static const StyleCheckResult rule = [] {
        StyleCheckResult result;
        result.setDescription(
            tr("Sufficient menu items"),
            tr("Avoid menu categories with only one or two menu items.\n"
               "If sensible, consolidate with other menu categories, perhaps using a submenu.\n"
               "\u2014 Microsoft Windows User Experience Interaction Guidelines"));
        result.addSource(
            QStringLiteral("Microsoft Windows User Experience Interaction Guidelines"),
            QUrl(QStringLiteral("https://learn.microsoft.com/windows/win32/uxguide/cmd-menus")));
        result.setExpectedDescriptionSuffix(QStringLiteral("at least"));
        return result;
    }();
    return rule;
}

QString StyleCheckResult::description(bool withValues) const
{
    if (!withValues || (!m_actual.isValid() && !m_expected.isValid()))
        return m_description;
    const QString suffix =
        m_expectedSuffix.isEmpty() ? QString() : m_expectedSuffix + QLatin1Char(' ');
    if (!m_expected.isValid())
        return tr("%1 (Actual: %2)").arg(m_description, m_actual.toString());
    if (!m_actual.isValid())
        return tr("%1 (Expected: %2%3)").arg(m_description, suffix, m_expected.toString());
    return tr("%1 (Actual: %2, Expected: %3%4)")
        .arg(m_description, m_actual.toString(), suffix, m_expected.toString());
}

void StyleCheckResult::setResult(Result result, const QVariant &actual, const QVariant &expected)
{
    m_result = result;
    m_actual = actual;
    m_expected = expected;
}

void StyleCheckResult::setDescription(const QString &description, const QString &details)
{
    m_description = description;
    if (!details.isNull())
        m_details = details;
}

void StyleCheckResult::addSource(const QString &displayName, const QUrl &url)
{
    m_sources += Source(displayName, url);
}

} // namespace Morvex
