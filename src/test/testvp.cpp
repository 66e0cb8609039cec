#include "test/testvp.h"

#include "shared/environment.h"
#include "shared/files/writefile.h"
#include "shared/points/pointtypes.h"
#include "test/objectnameresolverinterface.h"
#include "test/runnerinterface.h"
#include "test/verification/vpcall.h"
#include "test/verification/vpdocument.h"
#include "test/verification/vpimages.h"

#include <QElapsedTimer>
#include <QFile>
#include <QRegularExpression>
#include <QTextStream>

#include <optional>

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
    if (type == PointType::properties)
        return TestResult::PROPERTY_VP;
    if (type == PointType::screenshot)
        return TestResult::SCREENSHOT_VP;
    if (type == PointType::table)
        return TestResult::TABLE_VP;
    return type == PointType::visual ? TestResult::VISUAL_VP : TestResult::NO_VP;
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

// What is wrong with the file; nothing when it could be read.
std::optional<VPResult> readDocument(const QString &name, const QString &path,
                                     QDomDocument *document)
{
    const QString message = QStringLiteral("Verification point file '%1' cannot be opened.");
    const QFileInfo info(path);
    // To open a pipe would wait for its other end.
    if (info.exists() && !info.isFile())
        return fileError(message.arg(name), QStringLiteral("It is not a regular file."));
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return fileError(message.arg(name), file.errorString());
    const QString error = parseDocument(file.readAll(), document);
    if (!error.isEmpty())
        return fileError(QStringLiteral("Verification point file '%1' cannot be read.").arg(name),
                         error);
    if (document->documentElement().tagName() != rootTag)
        return fileError(QStringLiteral("Verification point file '%1' is malformed.").arg(name),
                         QStringLiteral("File does not contain '%1' root element").arg(rootTag));
    return std::nullopt;
}

std::optional<VPResult> readVersion(const QString &name, const QDomElement &root, int *version)
{
    const QString text = root.attribute(QStringLiteral("version"), QStringLiteral("1"));
    if (!isNumber(text))
        return fileError(QStringLiteral("Verification point file '%1' is malformed.").arg(name),
                         QStringLiteral("Version '%1' is not a number").arg(text));
    *version = versionNumber(text);
    if (*version <= maxVersion)
        return std::nullopt;
    return fileError(
        QStringLiteral("Unsupported version in verification point file '%1'.").arg(name),
        QStringLiteral(
            "Verification point version %1 is greater than the maximum supported version %2")
            .arg(text, QString::number(maxVersion)));
}

VPResult lastResult(VPResult::Summary summary, const VPCall &call)
{
    return VPResult(summary, call.logger.lastResultMessage(), call.logger.lastResultDetails());
}

FileWriteResult saveDocument(const QDomDocument &document, const QString &path)
{
    QByteArray text;
    QTextStream stream(&text, QIODevice::WriteOnly);
    stream.setCodec("UTF-8");
    document.save(stream, 4, QDomNode::EncodingFromTextStream);
    stream.flush();
    return writeFileSafely(path, text);
}

// The outcome stays, but the results before say that the file was updated.
void saveUpdated(VPCall &call)
{
    const QString path = call.file.filePath();
    const FileWriteResult result = saveDocument(call.document, path);
    const QString details = QStringLiteral("Could not write '%1': %2").arg(path, result.error);
    switch (result.outcome) {
    case FileWriteResult::Written:
        break;
    case FileWriteResult::NotOpened:
        // A file that nobody may write to was not meant to learn.
        qWarning("%s: %s", qUtf8Printable(call.name), qUtf8Printable(details));
        break;
    case FileWriteResult::NotWritten:
        call.addError(QStringLiteral(": The Verification Point could not be saved"), details);
        call.logger.processResults();
        break;
    }
}

} // namespace

ObjectNameResolverInterface::~ObjectNameResolverInterface() = default;

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
    QDomDocument document;
    if (const auto error = readDocument(m_name, m_file.filePath(), &document))
        return *error;
    int version = 0;
    if (const auto error = readVersion(m_name, document.documentElement(), &version))
        return *error;
    const bool learn = Environment::getVariable("MORVEX_LEARN_SCREENSHOTS") == "1";
    VPResultLogger logger(result, lines, info, options, runner);
    const QString typeName = document.documentElement().attribute(QStringLiteral("type"));
    VPCall call{m_name, m_file,     logger, runner,   resolver, options,
                record, expectFail, learn,  document, version,  vpTypeOf(typeName)};
    return verifyDocument(call);
}

VPResult TestVP::verifyDocument(VPCall &call) const
{
    const QDomElement root = call.document.documentElement();
    if (!call.resolver->allowsSeveralObjects() && namesSeveralObjects(root))
        return fileError(QStringLiteral("Too many objects in VP file"),
                         QStringLiteral("VP file contains more than a single object"));
    bool hasFailed = false;
    for (QDomElement element = root.firstChildElement(verificationTag); !element.isNull();
         element = element.nextSiblingElement(verificationTag)) {
        if (call.type == TestResult::NO_VP)
            return fileError(
                QStringLiteral("Unknown verification type."),
                QStringLiteral("Verification type '%1' is not known by this Morvex version")
                    .arg(root.attribute(QStringLiteral("type"))));
        if (!verifyElement(element, call))
            hasFailed = true;
        if (hasFailed && call.options.testFlag(VerificationOptions::StopOnFail))
            return lastResult(VPResult::SummaryFailed, call);
    }
    const VPResult result =
        lastResult(hasFailed ? VPResult::SummaryFailed : VPResult::SummaryPassed, call);
    if (call.updated)
        saveUpdated(call);
    return result;
}

bool TestVP::verifyElement(QDomElement &element, VPCall &call) const
{
    // Not the time of day, which would retry for a day when midnight passes.
    QElapsedTimer timer;
    timer.start();
    bool isExpected = false;
    for (int attempts = 1;; ++attempts) {
        call.logger.clearResults();
        isExpected = attempt(element, call);
        if (isExpected && attempts > 1)
            call.addResult(TestResult::WARNING,
                           QStringLiteral("%1: It took %2 attempts to verify prior verification")
                               .arg(m_name, QString::number(attempts)),
                           QString());
        if (isExpected || timer.elapsed() >= call.options.retryDuration())
            break;
    }
    call.logger.processResults();
    return isExpected;
}

bool TestVP::attempt(QDomElement &element, VPCall &call) const
{
    switch (call.type) {
    case TestResult::PROPERTY_VP:
        return performPropertyVerification(element, call);
    case TestResult::SCREENSHOT_VP:
        return performScreenshotVerification(element, call);
    case TestResult::TABLE_VP:
        return performTableVerification(element, call);
    case TestResult::VISUAL_VP:
        return performTitanVerification(element, call);
    case TestResult::NO_VP:
        break;
    }
    return false;
}

QString TestVP::failedImageDir(RunnerInterface *runner) const
{
    return Morvex::failedImageDir(m_name, m_file, runner);
}

bool TestVP::wantLogScreenshotForResult(const VerificationOptions &options,
                                        TestResult::ResultType type)
{
    return wantsDesktopPicture(options, type);
}

QString TestVP::logScreenshot(RunnerInterface *runner, TestResult::ResultType type,
                              const QImage &image)
{
    return Morvex::logScreenshot(runner, type, image);
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

} // namespace Morvex
