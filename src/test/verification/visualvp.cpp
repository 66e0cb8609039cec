#include "shared/requestdumpobject.h"
#include "test/objectnameresolverinterface.h"
#include "test/testvp.h"
#include "test/verification/visualbody.h"
#include "test/verification/vpcall.h"
#include "test/verification/vpimages.h"

#include <QDir>

namespace Morvex {
namespace {

QString failureDetails(const QMap<BrowserElement::Id, TitanCompare> &result)
{
    const struct
    {
        TitanCompare::Check check;
        const char *text;
    } texts[] = {
        {TitanCompare::IdentifyingCheck, "Identifying properties matching error(s) found. "},
        {TitanCompare::ContentCheck, "Content matching error(s) found. "},
        {TitanCompare::HierarchyCheck, "Hierarchical structure error(s) found. "},
        {TitanCompare::GeometryCheck, "Geometry error(s) found. "},
        {TitanCompare::ScreenshotCheck, "Screenshot comparison error(s) found. "},
    };
    int failed = 0;
    for (const TitanCompare &outcome : result)
        failed |= outcome.failed;
    QString details;
    for (const auto &row : texts) {
        if (failed & row.check)
            details += QLatin1String(row.text);
    }
    return details;
}

// Returns what to add to the details of the failure.
[[nodiscard]] QString storeSnapshot(RunnerInterface *runner, const QFileInfo &vpFile,
                                    const QByteArray &xml)
{
    const QString directory = failedOutputDir(runner, QStringLiteral("failedSnapshots"));
    if (!QDir().mkpath(directory))
        return QStringLiteral(" Also failed to create directory '%1' for the snapshot.")
            .arg(directory);
    const NewFile file =
        writeNumberedFile(directory, vpFile.fileName(), QStringLiteral(".xml"), xml);
    if (file.error.isEmpty())
        return QStringLiteral(" Object snapshot saved as '%1')").arg(file.path);
    return QStringLiteral(" Also failed to save object snapshot as '%1': %2.")
        .arg(file.path, file.error);
}

} // namespace

bool TestVP::performTitanVerification(const QDomElement &element, VPCall &call) const
{
    const QString objectName = element.attribute(QStringLiteral("object"));
    const QString failed =
        QStringLiteral("%1: Visual comparison of object '%2' failed").arg(m_name, objectName);
    const auto fail = [&](TestResult::ResultType type, const QString &details) {
        call.addResult(type, failed, details);
        return false;
    };
    const SharedPtr<Object> object = call.resolver->resolve(objectName, nullptr);
    if (!object)
        return fail(TestResult::ERROR, QStringLiteral("Object %1 not found").arg(objectName));
    QString error;
    const QByteArray dump = requestObjectSnapshotForVisualVP(object, &error);
    const QByteArray xml = dump.isEmpty() ? QByteArray() : convertDumpToXml(dump, &error);
    if (xml.isEmpty())
        return fail(TestResult::ERROR,
                    QStringLiteral("Failed to fetch object snapshot: %1").arg(error));
    BrowserElement live(nullptr, QStringLiteral("live"));
    if (!BrowserElement::readXML(&live, xml, &error))
        return fail(TestResult::FAIL,
                    QStringLiteral("Failed to read current object tree: %1").arg(error));
    VisualBody body;
    if (!body.read(element))
        return fail(TestResult::FAIL, QStringLiteral("Failed to read object tree from VP"));
    QMap<BrowserElement::Id, TitanCompare> result;
    if (body.compare(&live, &result)) {
        call.addResult(
            TestResult::verificationType(true, call.expectFail),
            QStringLiteral("%1: Visual comparison of object '%2' passed").arg(m_name, objectName),
            QString());
        return !call.expectFail;
    }
    fail(TestResult::verificationType(false, call.expectFail), failureDetails(result));
    // Once the result counts: a check that is retried fails many times.
    if (!live.children().isEmpty())
        call.logger.deferDetails([runner = call.runner, file = m_file, xml] {
            return storeSnapshot(runner, file, xml);
        });
    return call.expectFail;
}

} // namespace Morvex
