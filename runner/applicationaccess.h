#pragma once

#include "test/testresult.h"

#include <QString>
#include <QStringList>

#include <vector>

class QObject;

namespace Morvex {

class ScriptEngine;
struct RunnerOptions;

/// What a test case has to do with applications and verification points. It is in the library of
/// the runner, so that a script that does without them doesn't pay for it.
class ApplicationAccess
{
public:
    /// Nothing is owned.
    struct TestCase
    {
        const RunnerOptions *options;
        TestResult *result;
        ScriptEngine *engine;
        /// The path of the script.
        QString script;
        QString testCaseDir;
        QString suiteDir;
        /// Empty when there is none.
        QString resultDir;
    };

    virtual ~ApplicationAccess() = default;

    /// Reads the object map and starts the application of the suite, each if the options name it.
    /// Returns an error text, empty on success.
    [[nodiscard]] virtual QString prepare() = 0;

    /// What scripts call; owned by this object.
    virtual QObject *application() = 0;
    virtual QObject *contexts() = 0;
    virtual QObject *verification() = 0;

    /// The text to add to the message of a result of this type, which may have a picture.
    [[nodiscard]] virtual QString screenshot(TestResult::ResultType type) = 0;

    /// See ApplicationDeaths::reportThrown.
    virtual bool reportThrown(const QString &thrown, const QString &details,
                              const std::vector<LineInfo> &stack) = 0;

    /// Logs what is left to say of the applications, and ends them.
    virtual void finish() = 0;
};

} // namespace Morvex
