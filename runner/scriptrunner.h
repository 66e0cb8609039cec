#pragma once

#include "test/dummyrunnerinterface.h"

namespace Morvex {

/// This runner as the library sees it.
class ScriptRunner : public DummyRunnerInterface
{
public:
    ScriptRunner(TestResult *result, const QString &script, const QString &resultDir);

    QString currentTestCase() override { return m_script; }
    QString testCaseName() override;
    QString testSuiteName() override;
    QString resultDirectory() override { return m_resultDir; }
    void setResultDirectory(const QString &path) override { m_resultDir = path; }

private:
    QString m_script;
    QString m_resultDir;
};

} // namespace Morvex
