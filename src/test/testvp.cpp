#include "test/testvp.h"

#include "shared/environment.h"
#include "shared/writefile.h"
#include "test/objectnameresolverinterface.h"
#include "test/runnerinterface.h"
#include "test/verification/vpdocument.h"
#include "test/verification/vpimages.h"
#include "test/verification/vpresultlogger.h"

#include <QDir>
#include <QDomDocument>
#include <QElapsedTimer>
#include <QFile>
#include <QRegularExpression>
#include <QTextStream>

namespace Morvex {
namespace {

const int maxVersion = 5;
const QLatin1String rootTag("VerificationPoint");
const QLatin1String verificationTag("Verification");

VPResult fileError(const QString &message, const QString &details)
{
    return VPResult(VPResult::SummaryError, message, details);
}

bool isNumber(const QString &text)
{
    static const QRegularExpression number(QStringLiteral("\\A[0-9]+\\z"));
    return number.match(text).hasMatch();
}

// A number too large for its type is above all versions.
int versionNumber(const QString &digits)
{
    bool fits = false;
    const int number = digits.toInt(&fits);
    return fits ? number : maxVersion + 1;
}

// NO_VP for a type that is not known.
TestResult::VPType vpTypeOf(const QString &type)
{
    if (type == QLatin1String("ObjectProperties"))
        return TestResult::PROPERTY_VP;
    if (type == QLatin1String("Screenshot"))
        return TestResult::SCREENSHOT_VP;
    if (type == QLatin1String("Table"))
        return TestResult::TABLE_VP;
    return type == QLatin1String("Visual") ? TestResult::VISUAL_VP : TestResult::NO_VP;
}

bool namesSeveralObjects(const QDomElement &root)
{
    QString kept;
    for (QDomElement element = root.firstChildElement(verificationTag); !element.isNull();
         element = element.nextSiblingElement(verificationTag)) {
        const QString name = element.attribute(QStringLiteral("object"));
        if (kept.isEmpty())
            kept = name;
        else if (name != kept)
            return true;
    }
    return false;
}

// Returns an error text, empty on success.
QString saveDocument(const QDomDocument &document, const QString &path)
{
    QByteArray text;
    QTextStream stream(&text, QIODevice::WriteOnly);
    stream.setCodec("UTF-8");
    document.save(stream, 4, QDomNode::EncodingFromTextStream);
    return writeFileSafely(path, text).error;
}

} // namespace

ObjectNameResolverInterface::~ObjectNameResolverInterface() = default;

// What the steps of one verification have in common.
struct TestVP::Call
{
    VPResultLogger &logger;
    RunnerInterface *runner;
    ObjectNameResolverInterface *resolver;
    const VerificationOptions &options;
    const TestDataRecord *record;
    bool expectFail;
    bool learn;
    QDomDocument &document;
    int version;
    bool updated = false;
};

TestVP::TestVP(const QString &name, const QString &path)
    : m_name(name)
    , m_file(path)
{
}

VPResult TestVP::verify(TestResult *result, const std::vector<LineInfo> &lines,
                        RunnerInterface *runner, const QString &info,
                        ObjectNameResolverInterface *resolver, const VerificationOptions &options,
                        const TestDataRecord *record, bool expectFail) const
{
    QFile file(m_file.filePath());
    if (!file.open(QIODevice::ReadOnly))
        return fileError(
            QStringLiteral("Verification point file '%1' cannot be opened.").arg(m_name),
            file.errorString());
    QDomDocument document;
    const QString error = parseDocument(file.readAll(), &document);
    if (!error.isEmpty())
        return fileError(QStringLiteral("Verification point file '%1' cannot be read.").arg(m_name),
                         error);
    file.close();

    const QDomElement root = document.documentElement();
    if (root.tagName() != rootTag)
        return fileError(QStringLiteral("Verification point file '%1' is malformed.").arg(m_name),
                         QStringLiteral("File does not contain '%1' root element").arg(rootTag));
    const QString versionText = root.attribute(QStringLiteral("version"), QStringLiteral("1"));
    if (!isNumber(versionText))
        return fileError(QStringLiteral("Verification point file '%1' is malformed.").arg(m_name),
                         QStringLiteral("Version '%1' is not a number").arg(versionText));
    const int version = versionNumber(versionText);
    if (version > maxVersion)
        return fileError(
            QStringLiteral("Unsupported version in verification point file '%1'.").arg(m_name),
            QStringLiteral(
                "Verification point version %1 is greater than the maximum supported version %2")
                .arg(versionText)
                .arg(maxVersion));
    const bool learn = Environment::getVariable("MORVEX_LEARN_SCREENSHOTS") == "1";
    VPResultLogger logger(result, lines, info, options, runner);
    Call call{logger, runner, resolver, options, record, expectFail, learn, document, version};
    return verifyDocument(call, document);
}

VPResult TestVP::verifyDocument(Call &call, QDomDocument &document) const
{
    const QDomElement root = document.documentElement();
    if (!call.resolver->allowsSeveralObjects() && namesSeveralObjects(root))
        return fileError(QStringLiteral("Too many objects in VP file"),
                         QStringLiteral("VP file contains more than a single object"));
    const QString typeName = root.attribute(QStringLiteral("type"));
    const TestResult::VPType type = vpTypeOf(typeName);
    bool hasFailed = false;
    for (QDomElement element = root.firstChildElement(verificationTag); !element.isNull();
         element = element.nextSiblingElement(verificationTag)) {
        if (type == TestResult::NO_VP)
            return fileError(
                QStringLiteral("Unknown verification type."),
                QStringLiteral("Verification type '%1' is not known by this Morvex version")
                    .arg(typeName));
        if (!verifyElement(call, element, type))
            hasFailed = true;
        if (hasFailed && call.options.testFlag(VerificationOptions::StopOnFail))
            return VPResult(VPResult::SummaryFailed, call.logger.lastResultMessage(),
                            call.logger.lastResultDetails());
    }
    const VPResult result(hasFailed ? VPResult::SummaryFailed : VPResult::SummaryPassed,
                          call.logger.lastResultMessage(), call.logger.lastResultDetails());
    if (call.updated)
        saveUpdated(call, type);
    return result;
}

bool TestVP::verifyElement(Call &call, QDomElement &element, TestResult::VPType type) const
{
    // Not the time of day, which would retry for a day when midnight passes.
    QElapsedTimer timer;
    timer.start();
    bool isExpected = false;
    for (int attempts = 1;; ++attempts) {
        call.logger.clearResults();
        isExpected = attempt(call, element, type);
        if (isExpected && attempts > 1)
            addResult(&call.logger, TestResult::WARNING,
                      QStringLiteral("%1: It took %2 attempts to verify prior verification")
                          .arg(m_name, QString::number(attempts)),
                      QString(), type);
        if (isExpected || timer.elapsed() >= call.options.retryDuration())
            break;
    }
    call.logger.processResults();
    return isExpected;
}

bool TestVP::attempt(Call &call, QDomElement &element, TestResult::VPType type) const
{
    switch (type) {
    case TestResult::PROPERTY_VP:
        return performPropertyVerification(element, call.record, call.version, &call.logger,
                                           call.resolver, call.expectFail);
    case TestResult::SCREENSHOT_VP:
        return performScreenshotVerification(element, call.version, &call.logger, call.resolver,
                                             call.options, call.runner, call.learn, call.document,
                                             call.updated, call.expectFail);
    case TestResult::TABLE_VP:
        return performTableVerification(element, &call.logger, call.resolver, call.learn,
                                        call.updated, call.expectFail);
    case TestResult::VISUAL_VP:
        return performTitanVerification(element, &call.logger, call.resolver, call.runner,
                                        call.expectFail);
    case TestResult::NO_VP:
        break;
    }
    return false;
}

// The outcome stays, but the results before say that the file was updated.
void TestVP::saveUpdated(Call &call, TestResult::VPType type) const
{
    const QString error = saveDocument(call.document, m_file.filePath());
    if (error.isEmpty())
        return;
    addResult(&call.logger, TestResult::ERROR,
              m_name + QStringLiteral(": The Verification Point could not be saved"),
              QStringLiteral("Could not write '%1': %2").arg(m_file.filePath(), error), type);
    call.logger.processResults();
}

void TestVP::addResult(VPResultLogger *logger, TestResult::ResultType type, const QString &message,
                       const QString &details, TestResult::VPType vpType) const
{
    logger->addResult(type, message, details, m_name, vpType, m_file);
}

SharedPtr<Object> TestVP::resolve(VPResultLogger *logger, ObjectNameResolverInterface *resolver,
                                  const QString &objectName, TestResult::VPType vpType) const
{
    QString error;
    const SharedPtr<Object> object = resolver->resolve(objectName, &error);
    if (!object)
        addResult(logger, TestResult::ERROR,
                  m_name + QStringLiteral(": No such object '%1'").arg(objectName), error, vpType);
    return object;
}

QString TestVP::failedImageDir(RunnerInterface *runner) const
{
    const QLatin1String subDir("failedImages");
    if (runner->resultDirectory().isEmpty())
        return m_file.absolutePath() + QDir::separator() + subDir + QDir::separator();
    const QString name = QDir::isAbsolutePath(m_name) ? QFileInfo(m_name).fileName() : m_name;
    return testCaseResultDir(runner) + name + QDir::separator() + subDir + QDir::separator();
}

bool TestVP::wantLogScreenshotForResult(const VerificationOptions &options,
                                        TestResult::ResultType type)
{
    switch (type) {
    case TestResult::PASS:
    case TestResult::XFAIL:
        return options.testFlag(VerificationOptions::ScreenshotOnPass);
    case TestResult::FAIL:
    case TestResult::XPASS:
        return options.testFlag(VerificationOptions::ScreenshotOnFail);
    case TestResult::WARNING:
        return options.testFlag(VerificationOptions::ScreenshotOnWarning);
    case TestResult::FATAL:
    case TestResult::ERROR:
        return options.testFlag(VerificationOptions::ScreenshotOnError);
    default:
        return false;
    }
}

QString TestVP::logScreenshot(RunnerInterface *runner, TestResult::ResultType type,
                              const QImage &image)
{
    const QString stem = typeNameForTestResultType(type);
    const QString dir = failedOutputDir(runner, stem + QStringLiteral("Images"));
    if (!QDir().mkpath(dir))
        return {};
    const QString path = numberedFile(dir, stem, QStringLiteral(".png"));
    const QImage picture = image.isNull() ? desktopScreenshot() : image;
    if (picture.isNull())
        return QStringLiteral(" (Screenshot taken from the desktop is invalid)");
    return saveImage(picture, path, "PNG")
               ? QStringLiteral(" (Screenshot in \"%1\")").arg(path)
               : QStringLiteral(" (Invalid file path \"%1\" or unsupported image format)")
                     .arg(path);
}

QString TestVP::grabWindow(const SharedPtr<Object> &object, const QString &fileName,
                           const char *format, int options)
{
    const int delay = 1000;
    QString error;
    const QImage image = grabObjectScreenshot(object, options, delay, &error);
    if (!error.isEmpty())
        return error;
    if (image.isNull())
        return QStringLiteral("TestVP::grabWindow: grabObjectScreenshot returned null image.");
    if (saveImage(image, fileName, format))
        return {};
    // Each argument replaces all instances of the lowest number: both places of the size show the
    // width, that of the file name the height, and that of the format the file name.
    return QStringLiteral("TestVP::grabWindow: QImage::save() (%1x%1 pixels) with fn = '%2' and "
                          "format = '%3' failed!\n")
        .arg(image.width())
        .arg(image.height())
        .arg(fileName);
}

TestResult::ResultType verificationType(bool passed, bool expectFail)
{
    if (passed)
        return expectFail ? TestResult::XPASS : TestResult::PASS;
    return expectFail ? TestResult::XFAIL : TestResult::FAIL;
}

} // namespace Morvex
