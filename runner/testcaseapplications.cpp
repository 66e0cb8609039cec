#include "runner/testcaseapplications.h"

#include "runner/applicationdeaths.h"
#include "runner/applications.h"
#include "runner/applicationsettings.h"
#include "runner/failurescreenshots.h"
#include "runner/runneroptions.h"
#include "runner/scriptapplication.h"
#include "runner/scriptcontexts.h"
#include "runner/scriptrunner.h"
#include "runner/scriptverification.h"
#include "runner/uicoverage.h"

#include <QDir>

namespace Morvex {
namespace {

class TestCaseApplications : public ApplicationAccess
{
public:
    explicit TestCaseApplications(const TestCase &testCase)
        : m_testCase(testCase)
        , m_searchDirs{testCase.testCaseDir, testCase.suiteDir}
        , m_applications(m_searchDirs, applicationSettings(*testCase.options))
        , m_runner(testCase.result, testCase.script, testCase.resultDir, &m_applications)
        , m_deaths(&m_applications, testCase.result, &m_runner, testCase.engine)
        , m_application(&m_applications)
        , m_screenshots(m_runner, [this] { return m_application.wasStarted(); })
        , m_verification(testCase.engine, &m_application, testCase.result, m_runner, m_searchDirs)
        , m_contexts(&m_applications)
    {
    }

    QString prepare() override
    {
        const RunnerOptions &options = *m_testCase.options;
        QString error;
        if (!options.objectMap.isEmpty())
            error = m_application.loadObjectMap(options.objectMap);
        if (error.isEmpty() && !options.aut.isEmpty())
            error = m_application.start({});
        m_application.setBeforeStart([this] { m_deaths.reportCaught(); });
        m_application.setBeforeStop([this](int context) {
            m_deaths.reportBeforeStop(context);
            keepUsage();
            // One that has died meanwhile.
            m_deaths.reportBeforeStop(context);
        });
        return error;
    }

    QObject *application() override { return &m_application; }
    QObject *contexts() override { return &m_contexts; }
    QObject *verification() override { return &m_verification; }

    QString screenshot(TestResult::ResultType type) override { return m_screenshots.textFor(type); }

    bool reportThrown(const QString &thrown, const QString &details,
                      const std::vector<LineInfo> &stack) override
    {
        return m_deaths.reportThrown(thrown, details, stack);
    }

    void finish() override
    {
        m_deaths.reportRest(m_testCase.script);
        m_application.forEachContext([this] { keepUsage(); });
        m_deaths.reportRest(m_testCase.script);
        m_deaths.stopAll(m_testCase.script);
    }

private:
    void keepUsage()
    {
        attachUsage(m_testCase.result, QDir(m_testCase.testCaseDir).dirName(), m_testCase.resultDir,
                    m_applications.countError());
    }

    TestCase m_testCase;
    QStringList m_searchDirs;
    Applications m_applications;
    ScriptRunner m_runner;
    ApplicationDeaths m_deaths;
    ScriptApplication m_application;
    FailureScreenshots m_screenshots;
    ScriptVerification m_verification;
    ScriptContexts m_contexts;
};

} // namespace

std::unique_ptr<ApplicationAccess>
makeTestCaseApplications(const ApplicationAccess::TestCase &testCase)
{
    return std::make_unique<TestCaseApplications>(testCase);
}

} // namespace Morvex
