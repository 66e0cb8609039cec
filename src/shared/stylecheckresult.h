#pragma once

#include "morvex_export.h"

#include <QCoreApplication>
#include <QList>
#include <QString>
#include <QUrl>
#include <QVariant>

namespace Morvex {

/// The outcome of a style rule for an element, filled in by the code that checks the rule.
class MORVEX_EXPORT StyleCheckResult
{
    Q_DECLARE_TR_FUNCTIONS(Morvex::StyleCheckResult)

public:
    /// Any other value counts as not passed.
    enum Result { NotSet = 0, Passed = 1, Failed = 2 };

    /// What backs a rule.
    class Source
    {
    public:
        Source(const QString &displayName, const QUrl &url)
            : m_displayName(displayName)
            , m_url(url)
        {
        }

        QString displayName() const { return m_displayName; }
        QUrl url() const { return m_url; }

    private:
        QString m_displayName;
        QUrl m_url;
    };

    /// The rule that menus are long enough to be worth one; without a result.
    static StyleCheckResult sufficientMenuItems();

    bool isValid() const { return m_result != NotSet; }
    bool hasPassed() const { return m_result == Passed; }
    /// With the values that are valid when @p withValues is set.
    QString description(bool withValues) const;
    QString details() const { return m_details; }
    QList<Source> sources() const { return m_sources; }

    void setResult(Result result, const QVariant &actual, const QVariant &expected);
    void setDetails(const QString &details) { m_details = details; }
    /// Null details leave those that are there.
    void setDescription(const QString &description, const QString &details);
    /// What is between "Expected:" and the value, such as "at least".
    void setExpectedDescriptionSuffix(const QString &suffix) { m_expectedSuffix = suffix; }
    void addSource(const QString &displayName, const QUrl &url);

private:
    Result m_result = NotSet;
    QString m_description;
    QString m_details;
    QString m_expectedSuffix;
    QVariant m_actual;
    QVariant m_expected;
    QList<Source> m_sources;
};

} // namespace Morvex
