#pragma once

#include "morvex_export.h"
#include "test/testreportgenerator.h"

#include <QFlags>
#include <QLatin1String>
#include <QString>
#include <QStringList>

#include <vector>

namespace Morvex {

/// Turns the values of --reportgen, "keyword" or "keyword,path", into a generator.
class MORVEX_EXPORT TestReportGeneratorFactory
{
public:
    /// What the path in a value names.
    enum Target { NoTarget, File, Directory, Connection };

    enum Trait {
        /// An entry is in the report as soon as it was handled; otherwise all come at the end.
        Grows = 1,
        /// A file that holds something is left alone; otherwise it is replaced or added to.
        TakesFreeName = 2,
        /// The report is not whole without generateSummary.
        NeedsSummary = 4,
        /// Each run adds to what the target holds.
        HoldsSeveralRuns = 8
    };
    Q_DECLARE_FLAGS(Traits, Trait)

    /// All that the system knows of a format beside its own sources.
    struct Keyword
    {
        QLatin1String name;
        /// One line for the user's eye; empty for a keyword that is not for users.
        QLatin1String description;
        Target target;
        Traits traits;
        /// That the report names; empty when it names none.
        QLatin1String version;
        /// In the directory of the report; empty for other targets.
        QLatin1String file;
    };

    /// One generator for all of @p values; a console report when there are none. A format that
    /// makes a result directory records it in @p resultDir, and a second one then fails.
    static TestReportGenerator::Result create(const QStringList &values, QString *resultDir,
                                              TestReportGenerator::TestType type);

    /// Ends the process with exit code 1 and a text on standard error when a value is bad.
    static TestReportGenerator *create(const QStringList &values,
                                       TestReportGenerator::TestType type);

    static std::vector<Keyword> keywords();
    /// Of the format that @p value, one of --reportgen, names; none when there is no such format.
    static Traits traitsOf(const QString &value);
};

Q_DECLARE_OPERATORS_FOR_FLAGS(TestReportGeneratorFactory::Traits)

} // namespace Morvex
