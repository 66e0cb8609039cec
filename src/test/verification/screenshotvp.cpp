#include "test/testvp.h"

#include "shared/imagecomparison.h"
#include "shared/imageequality.h"
#include "shared/imagemask.h"
#include "shared/uiabstraction/loadimage.h"
#include "test/verification/comparisonapplication.h"
#include "test/verification/maskelement.h"
#include "test/verification/vpdocument.h"
#include "test/verification/vpimages.h"
#include "test/verification/vpresultlogger.h"

#include <QBuffer>
#include <QDir>
#include <QDomDocument>
#include <QFile>

namespace Morvex {
namespace {

// File versions from which on something holds.
const int algorithmVersion = 3;
const int optionsVersion = 4;

ImageMask readMask(const QDomElement &list)
{
    ImageMask mask;
    for (QDomElement element = list.firstChildElement(); !element.isNull();
         element = element.nextSiblingElement())
        mask.addMaskRect(maskRectOf(element));
    return mask;
}

// Null when it can't be read.
QImage storedImage(const QDomElement &element, const QString &format)
{
    const QByteArray bytes =
        QByteArray::fromBase64(element.firstChild().toText().data().toLatin1());
    // A new file has none yet, of which the decoder would complain.
    return bytes.isEmpty() ? QImage() : loadImage(bytes, format.toLatin1());
}

QStringList parametersOf(const QDomElement &algorithm)
{
    QStringList parameters;
    for (QDomElement element = algorithm.firstChildElement(QStringLiteral("Parameter"));
         !element.isNull(); element = element.nextSiblingElement())
        parameters += element.text();
    return parameters;
}

// False when the pictures together are larger than any comparison is worth.
bool maskImages(const ImageMask &mask, QImage *actual, QImage *expected)
{
    if (actual->size() != expected->size() && mask.hasPositive()) {
        const QRect both(QPoint(), actual->size().expandedTo(expected->size()));
        if (isTooLargePicture(both.size()))
            return false;
        *actual = actual->copy(both);
        *expected = expected->copy(both);
    }
    for (QImage *image : {actual, expected}) {
        // In this order, as masking takes the transparency away.
        normalizeTransparency(image);
        mask.drawToImage(image);
    }
    return true;
}

ApplicationComparison strictComparison(bool areEqual)
{
    return {areEqual,
            areEqual ? QStringLiteral("Screenshots are considered identical")
                     : QStringLiteral("Screenshots do not match"),
            QString()};
}

ApplicationComparison compareImages(const QDomElement &element, int version, const QImage &actual,
                                    const QImage &expected)
{
    const QDomElement algorithm = element.firstChildElement(QStringLiteral("Algorithm"));
    const QString name =
        version < algorithmVersion ? QString() : algorithm.attribute(QStringLiteral("name"));
    if (!name.isEmpty() && name != QLatin1String("strict"))
        return runComparisonApplication(name, parametersOf(algorithm), actual, expected);
    return strictComparison(haveEqualPixels(actual, expected));
}

// A null picture leaves no file, not that of an earlier check either.
void saveBeside(const QImage &image, const QString &failedImage, const QString &name)
{
    const QFileInfo info(failedImage);
    const QString path =
        info.dir().filePath(info.fileName().replace(QLatin1String("failed"), name));
    QFile::remove(path);
    image.save(path, "PNG");
}

void learnImage(QDomElement &element, QDomDocument &document, const QImage &image)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    const QString data = QString::fromLatin1(buffer.data().toBase64());
    QDomText text = element.firstChild().toText();
    if (text.isNull())
        element.insertBefore(document.createTextNode(data), element.firstChild());
    else
        text.setData(data);
    element.setAttribute(QStringLiteral("type"), QStringLiteral("PNG"));
}

} // namespace

bool TestVP::performScreenshotVerification(QDomElement &element, int version,
                                           VPResultLogger *logger,
                                           ObjectNameResolverInterface *resolver,
                                           const VerificationOptions &options,
                                           RunnerInterface *runner, bool learn,
                                           QDomDocument &document, bool &updated,
                                           bool expectFail) const
{
    const QString objectName = element.attribute(QStringLiteral("object"));
    const auto log = [&](TestResult::ResultType type, const QString &message,
                         const QString &details) {
        addResult(logger, type, m_name + message.arg(objectName), details,
                  TestResult::SCREENSHOT_VP);
    };
    expectFail = expectFail || hasExpectedFailure(element);
    const SharedPtr<Object> object =
        resolve(logger, resolver, objectName, TestResult::SCREENSHOT_VP);
    if (!object)
        return false;

    QString error;
    const QImage taken =
        version < optionsVersion
            ? grabObjectPixmap(object, &error)
            : grabObjectScreenshot(object, element.attribute(QStringLiteral("options")).toInt(),
                                   options.screenshotDelay(), &error);
    if (taken.isNull()) {
        log(TestResult::FAIL,
            QStringLiteral(": Internal error while taking screenshot of object '%1'"), error);
        return false;
    }
    const QString format = element.attribute(QStringLiteral("type"), QStringLiteral("XPM"));
    const QImage stored = storedImage(element, format);
    QImage actual = taken;
    QImage expected = stored;
    const ImageMask mask = readMask(element.firstChild().nextSibling().toElement());
    const ApplicationComparison comparison = maskImages(mask, &actual, &expected)
                                                 ? compareImages(element, version, actual, expected)
                                                 : strictComparison(false);
    if (!comparison.error.isEmpty()) {
        addResult(logger, TestResult::ERROR,
                  m_name + QStringLiteral(": Comparison application error"), comparison.error,
                  TestResult::SCREENSHOT_VP);
        return false;
    }
    if (comparison.matches) {
        log(verificationType(true, expectFail),
            QStringLiteral(": Screenshot comparison of '%1' passed"), comparison.details);
        return !expectFail;
    }
    if (learn) {
        learnImage(element, document, taken);
        updated = true;
        log(TestResult::WARNING,
            QStringLiteral(": Screenshot comparison of '%1' failed, Verification Point was updated "
                           "due to the MORVEX_LEARN_SCREENSHOTS environment variable"),
            comparison.details);
        return !expectFail;
    }
    log(verificationType(false, expectFail),
        QStringLiteral(": Screenshot comparison of '%1' failed"),
        comparison.details + QLatin1String(". "));
    logger->deferDetails([=] {
        if (stored.isNull())
            qWarning("%s: the stored picture cannot be read as %s", qUtf8Printable(m_name),
                     qUtf8Printable(format));
        return storeDifferingImages(runner, taken, stored);
    });
    return expectFail;
}

QString TestVP::storeDifferingImages(RunnerInterface *runner, const QImage &actual,
                                     const QImage &expected) const
{
    const QString dir = failedImageDir(runner);
    if (!QDir().mkpath(dir))
        return QStringLiteral("Could not store differing screenshot; creating directory for failed "
                              "images failed.");
    const QString path = numberedFile(dir, QStringLiteral("failed"), QStringLiteral(".png"));
    actual.save(path, "PNG");
    // For reports, which show them side by side.
    saveBeside(expected, path, QStringLiteral("expected"));
    saveBeside(ImageComparison::normalizedCorrelationDiff(expected, actual, 0, 1), path,
               QStringLiteral("difference"));
    return QStringLiteral("Differing screenshot saved as '%1'").arg(path);
}

} // namespace Morvex
