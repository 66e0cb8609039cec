#include "test/verification/vpimages.h"

#include "objectmodel/class.h"
#include "objectmodel/inspector.h"
#include "objectmodel/methodlist.h"
#include "shared/files/writefile.h"
#include "shared/realpath.h"
#include "shared/richimage.h"
#include "shared/uiabstraction/pictures/loadimage.h"
#include "test/runnerinterface.h"
#include "test/verification/displaypicture.h"

#include <QBuffer>
#include <QDir>
#include <QFileInfo>

namespace Morvex {
namespace {

QVariant callFunction(const QString &name, const QVariantList &arguments, QString *error)
{
    if (Inspector *inspector = Inspector::self())
        return inspector->callFunction(name, arguments, error);
    *error = QStringLiteral("There is no application");
    return {};
}

QImage imageOf(const QVariant &value)
{
    return value.userType() != QMetaType::QImage && value.canConvert<QByteArray>()
               ? loadImage(value.toByteArray(), QByteArrayLiteral("PNG"))
               : value.value<QImage>();
}

QString testCaseDir(RunnerInterface *runner)
{
    return cleanedPath(QFileInfo(runner->currentTestCase()).path());
}

} // namespace

QString testCaseResultDir(RunnerInterface *runner)
{
    const QChar separator = QDir::separator();
    const QFileInfo testCase(testCaseDir(runner));
    const QFileInfo suite(testCase.path());
    return runner->resultDirectory() + separator + suite.fileName() + separator +
           testCase.fileName() + separator;
}

QString failedOutputDir(RunnerInterface *runner, const QString &subDir)
{
    const QString dir = runner->resultDirectory().isEmpty()
                            ? testCaseDir(runner) + QDir::separator()
                            : testCaseResultDir(runner);
    return dir + subDir + QDir::separator();
}

QString typeNameForTestResultType(TestResult::ResultType type)
{
    switch (type) {
    case TestResult::LOG:
        return QStringLiteral("log");
    case TestResult::ERROR:
        return QStringLiteral("error");
    case TestResult::PASS:
    case TestResult::XFAIL:
        return QStringLiteral("passed");
    case TestResult::FAIL:
    case TestResult::XPASS:
        return QStringLiteral("failed");
    case TestResult::WARNING:
        return QStringLiteral("warned");
    default:
        return QStringLiteral("unknown");
    }
}

NewFile writeNumberedFile(const QString &dir, const QString &stem, const QString &extension,
                          const QByteArray &content)
{
    const auto pathOf = [&](int number) {
        return dir + stem + QLatin1Char('_') + QString::number(number) + extension;
    };
    return writeNewFile(pathOf, content);
}

QByteArray pngOf(const QImage &image)
{
    QBuffer buffer;
    image.save(&buffer, "PNG");
    return buffer.data();
}

bool saveImage(const QImage &image, const QString &path, const char *format)
{
    const QByteArray suffix = QFileInfo(path).suffix().toLatin1();
    QBuffer buffer;
    return image.save(&buffer, format && *format ? format : suffix.constData()) &&
           writeFileSafely(path, buffer.data()).outcome == FileWriteResult::Written;
}

QImage desktopScreenshot()
{
    QString error;
    const QImage picture = hasDisplay() ? pictureOfDisplay(&error) : QImage();
    Inspector *inspector = Inspector::self();
    return picture.isNull() && inspector ? Screenshot::fromVariant(inspector->askForReport(
                                               QStringLiteral("desktopScreenshot"), &error))
                                         : picture;
}

QImage grabObjectScreenshot(const SharedPtr<Object> &object, int options, int delay, QString *error)
{
    QString reason = QStringLiteral("there is no such object");
    QVariant answer;
    if (object)
        answer = callFunction(QStringLiteral("grabObjectScreenshot"),
                              {object->id(), options, delay}, &reason);
    if (!answer.isValid())
        *error = QStringLiteral("TestVP::grabObjectScreenshot: calling grabObjectScreenshot "
                                "returned invalid variant! %1")
                     .arg(reason);
    else if (answer.isNull())
        *error = QStringLiteral("TestVP::grabObjectScreenshot: calling grabObjectScreenshot "
                                "returned null variant! %1")
                     .arg(reason);
    else if (answer.userType() != QMetaType::QVariantMap)
        *error = QStringLiteral("TestVP::grabObjectScreenshot: calling grabObjectScreenshot "
                                "returned non-screenshot variant!");
    if (!error->isEmpty())
        return {};
    const QImage image = Screenshot::fromVariant(answer);
    if (image.isNull())
        *error = QStringLiteral("grabObjectScreenshot: calling grabObjectScreenshot returned an "
                                "invalid image!");
    return image;
}

QImage grabObjectPixmap(const SharedPtr<Object> &object, QString *error)
{
    Inspector *inspector = Inspector::self();
    const MethodList *method =
        inspector ? inspector->globalClass()->methods(QStringLiteral("grabWidget")) : nullptr;
    SharedPtr<Object> pixmap;
    if (!method || !method->invoke(SharedPtr<Object>(), {object}, &pixmap) || !pixmap)
        return {};
    return imageOf(callFunction(QStringLiteral("getPixmapAsImage"), {pixmap->id()}, error));
}

QString failedImageDir(const QString &vpName, const QFileInfo &vpFile, RunnerInterface *runner)
{
    const QLatin1String subDir("failedImages");
    if (runner->resultDirectory().isEmpty())
        return cleanedPath(vpFile.path()) + QDir::separator() + subDir + QDir::separator();
    const QString name = QDir::isAbsolutePath(vpName) ? QFileInfo(vpName).fileName() : vpName;
    return testCaseResultDir(runner) + name + QDir::separator() + subDir + QDir::separator();
}

bool wantsDesktopPicture(const VerificationOptions &options, TestResult::ResultType type)
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

QString logScreenshot(RunnerInterface *runner, TestResult::ResultType type, const QImage &image)
{
    const QString stem = typeNameForTestResultType(type);
    const QString dir = failedOutputDir(runner, stem + QStringLiteral("Images"));
    if (!QDir().mkpath(dir))
        return {};
    const QImage picture = image.isNull() ? desktopScreenshot() : image;
    if (picture.isNull())
        return QStringLiteral(" (Screenshot taken from the desktop is invalid)");
    const NewFile file = writeNumberedFile(dir, stem, QStringLiteral(".png"), pngOf(picture));
    return file.error.isEmpty()
               ? QStringLiteral(" (Screenshot in \"%1\")").arg(file.path)
               : QStringLiteral(" (Invalid file path \"%1\" or unsupported image format)")
                     .arg(file.path);
}

} // namespace Morvex
