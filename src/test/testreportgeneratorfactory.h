#pragma once

#include "morvex_export.h"
#include "test/testreportgenerator.h"

#include <QLatin1String>
#include <QString>
#include <QStringList>

#include <vector>

namespace Morvex {

/// Turns the values of --reportgen, "keyword" or "keyword,path", into a generator.
class MORVEX_EXPORT TestReportGeneratorFactory
{
public:
    struct Keyword
    {
        QLatin1String name;
        /// One line for the user's eye; empty for a keyword that is not for users.
        QLatin1String description;
    };

    /// One generator for all of @p values; a console report when there are none. A format that
    /// makes a result directory records it in @p resultDir, and a second one then fails.
    static TestReportGenerator::Result create(const QStringList &values, QString *resultDir,
                                              TestReportGenerator::TestType type);

    /// Ends the process with exit code 1 and a text on standard error when a value is bad.
    static TestReportGenerator *create(const QStringList &values,
                                       TestReportGenerator::TestType type);

    /// All keywords, for help texts and tests.
    static std::vector<Keyword> keywords();
};

} // namespace Morvex
