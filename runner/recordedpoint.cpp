#include "runner/recordedpoint.h"

#include "objectmodel/inspector.h"
#include "runner/pointdraft.h"
#include "test/dummyrunnerinterface.h"
#include "test/nullreportgenerator.h"
#include "test/objectnameresolverinterface.h"
#include "test/testresult.h"
#include "test/testvp.h"

namespace Morvex {
namespace {

class InstalledResolver : public ObjectNameResolverInterface
{
public:
    SharedPtr<Object> resolve(const QString &objectName, QString *error) override
    {
        return Inspector::self()->waitForObject(objectName, 0, error);
    }

    bool allowsSeveralObjects() const override { return false; }
};

// The content of screenshots and tables is that of a check that learns.
[[nodiscard]] QString fillIn(const QString &path)
{
    qputenv("MORVEX_LEARN_SCREENSHOTS", "1");
    TestResult result(NullReportGenerator::create().generator);
    DummyRunnerInterface runner(&result);
    InstalledResolver resolver;
    VerificationOptions options;
    options.setFlag(VerificationOptions::SilentVerification);
    options.setScreenshotDelay(0);
    const VPResult outcome =
        TestVP(QString(), path)
            .verify(&result, {}, &runner, QString(), &resolver, options, nullptr, false);
    return outcome.summary() == VPResult::SummaryPassed
               ? QString()
               : QStringLiteral("what it would hold does not stay the same. %1")
                     .arg(outcome.details());
}

} // namespace

QString makeRecordedPoint(const QString &path, const PointRequest &request)
{
    QString error;
    const SharedPtr<Object> object =
        Inspector::self() ? Inspector::self()->waitForObject(request.objectName, 0, &error)
                          : SharedPtr<Object>();
    if (!object)
        return error;
    const PointDraft draft(path);
    error = draft.error();
    if (error.isEmpty())
        error = makePointFile(draft.path(), request, object);
    if (error.isEmpty())
        error = fillIn(draft.path());
    if (!error.isEmpty())
        return error;
    switch (draft.takePlace(&error)) {
    case PointDraft::Placed:
        break;
    case PointDraft::Taken:
        return QStringLiteral("'%1' already exists").arg(path);
    case PointDraft::Failed:
        break;
    }
    return error;
}

} // namespace Morvex
