#pragma once

#include "morvex_export.h"
#include "objectmodel/object.h"
#include "test/testresult.h"
#include "test/verificationoptions.h"
#include "test/vpresult.h"

#include <QFileInfo>
#include <QImage>
#include <QString>

#include <vector>

class QDomElement;

namespace Morvex {

class ObjectNameResolverInterface;
class RunnerInterface;
class TestDataRecord;
struct VPCall;

/// A verification point: a file with what an application looked like when the test was written.
/// Comparing needs an installed Inspector.
class MORVEX_EXPORT TestVP
{
public:
    /// The name is used in messages as it is given.
    TestVP(const QString &name, const QString &path);

    /// Compares the application with the file and logs the results of the last attempt. @p record
    /// gives values to properties that name a field of it; it may be null. With @p expectFail all
    /// checks of the file are expected to fail, whatever the file says. Blocks while it retries.
    VPResult verify(TestResult *result, const std::vector<LineInfo> &lines, RunnerInterface *runner,
                    const QString &info, ObjectNameResolverInterface *resolver,
                    const VerificationOptions &options, const TestDataRecord *record,
                    bool expectFail) const;

    /// Where pictures that differ are stored. Ends with a separator; may not exist yet.
    QString failedImageDir(RunnerInterface *runner) const;

    /// Whether the options ask for a picture of the desktop with results of this type.
    static bool wantLogScreenshotForResult(const VerificationOptions &options,
                                           TestResult::ResultType type);

    /// Stores a picture, of the desktop for a null one, and returns the text to add to the message
    /// of the result.
    static QString logScreenshot(RunnerInterface *runner, TestResult::ResultType type,
                                 const QImage &image);

    /// Writes a picture of an object to a file. Returns an error text, empty on success.
    [[nodiscard]] static QString grabWindow(const SharedPtr<Object> &object,
                                            const QString &fileName, const char *format,
                                            int options);

private:
    VPResult verifyDocument(VPCall &call) const;

    // Each is true when the outcome is the expected one.
    bool verifyElement(QDomElement &element, VPCall &call) const;
    bool attempt(QDomElement &element, VPCall &call) const;
    bool performPropertyVerification(const QDomElement &element, VPCall &call) const;
    bool performScreenshotVerification(QDomElement &element, VPCall &call) const;
    bool performTableVerification(QDomElement &element, VPCall &call) const;
    bool performTitanVerification(const QDomElement &element, VPCall &call) const;

    QString m_name;
    QFileInfo m_file;
};

} // namespace Morvex
