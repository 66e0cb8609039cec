#pragma once

#include "runner/scriptapi.h"
#include "runner/scriptengine.h"
#include "test/testcase.h"

namespace Morvex {

/// A test case whose body is the file script.js in its directory.
class ScriptTestCase : public TestCase
{
public:
    struct Options
    {
        QString suiteDir;
        QString resultDir;
        QStringList scriptArguments;
        double snoozeFactor = 0;
    };

    ScriptTestCase(TestResult *result, const QDir &dir, const Options &options);

    void execute() override;

private:
    void runScript(const QString &path, const QString &program);

    Options m_options;
};

} // namespace Morvex
