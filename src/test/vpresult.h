#pragma once

#include "morvex_export.h"

#include <QString>

namespace Morvex {

/// The outcome of a verification point.
class MORVEX_EXPORT VPResult
{
public:
    enum Summary {
        /// The file could not be processed at all.
        SummaryError = 0,
        SummaryPassed = 1,
        SummaryFailed = 2
    };

    VPResult(Summary summary, const QString &message, const QString &details)
        : m_summary(summary)
        , m_message(message)
        , m_details(details)
    {
    }

    Summary summary() const { return m_summary; }
    /// Those of the last result that was logged; of an error what is wrong with the file.
    QString message() const { return m_message; }
    QString details() const { return m_details; }

private:
    Summary m_summary;
    QString m_message;
    QString m_details;
};

} // namespace Morvex
