#include "runner/scriptrunner.h"

#include <QDir>
#include <QFileInfo>

namespace Morvex {

ScriptRunner::ScriptRunner(TestResult *result, const QString &script, const QString &resultDir)
    : DummyRunnerInterface(result)
    , m_script(script)
    , m_resultDir(resultDir)
{
}

QString ScriptRunner::testCaseName()
{
    return QFileInfo(m_script).dir().dirName();
}

QString ScriptRunner::testSuiteName()
{
    return QFileInfo(QFileInfo(m_script).path()).dir().dirName();
}

} // namespace Morvex
