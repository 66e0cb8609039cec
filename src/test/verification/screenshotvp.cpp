#include "test/testvp.h"

#include "shared/imagecomparison.h"
#include "shared/imagemask.h"
#include "shared/pictures/imageequality.h"
#include "shared/uiabstraction/pictures/loadimage.h"
#include "test/verification/comparisonapplication.h"
#include "test/verification/maskelement.h"
#include "test/verification/vpcall.h"
#include "test/verification/vpdocument.h"
#include "test/verification/vpimages.h"

#include <QDir>
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
    const QString data = QString::fromLatin1(pngOf(image).toBase64());
    QDomText text = element.firstChild().toText();
    if (text.isNull())
        element.insertBefore(document.createTextNode(data), element.firstChild());
    else
        text.setData(data);
    element.setAttribute(QStringLiteral("type"), QStringLiteral("PNG"));
}

// What the comparison of two pictures has shown. An error says why there was none.
ApplicationComparison strictComparison(const ImageMask &mask, const QImage &actual,
                                       const QImage &expected)
{
    QImage maskedActual = actual;
    QImage maskedExpected = expected;
    // Nearly all checks pass, and need no copies then.
    const bool areEqual =
        mask.leavesEqual(actual, expected) || (maskImages(mask, &maskedActual, &maskedExpected) &&
                                               haveEqualPixels(maskedActual, maskedExpected));
    return {areEqual,
            areEqual ? QStringLiteral("Screenshots are considered identical")
                     : QStringLiteral("Screenshots do not match"),
            QString()};
}

ApplicationComparison comparisonBy(const QString &application, const QDomElement &algorithm,
                                   const ImageMask &mask, QImage actual, QImage expected)
{
    if (!maskImages(mask, &actual, &expected))
        return {false, QStringLiteral("Screenshots do not match"), QString()};
    return runComparisonApplication(application, parametersOf(algorithm), actual, expected);
}

// Returns a note on where the pictures are.
[[nodiscard]] QString storeDifferingImages(const QString &dir, const QImage &actual,
                                           const QImage &expected)
{
    if (!QDir().mkpath(dir))
        return QStringLiteral("Could not store differing screenshot; creating directory for failed "
                              "images failed.");
    const QString path =
        writeNumberedFile(dir, QStringLiteral("failed"), QStringLiteral(".png"), pngOf(actual))
            .path;
    // For reports, which show them side by side.
    saveBeside(expected, path, QStringLiteral("expected"));
    saveBeside(ImageComparison::normalizedCorrelationDiff(expected, actual, 0, 1), path,
               QStringLiteral("difference"));
    return QStringLiteral("Differing screenshot saved as '%1'").arg(path);
}

class ScreenshotCheck
{
public:
    ScreenshotCheck(QDomElement &element, VPCall &call)
        : m_element(element)
        , m_call(call)
        , m_objectName(element.attribute(QStringLiteral("object")))
        , m_format(element.attribute(QStringLiteral("type"), QStringLiteral("XPM")))
        , m_expectFail(call.expectFail || hasExpectedFailure(element))
    {
    }

    /// True when the outcome is the expected one.
    bool run()
    {
        if (!takePicture())
            return false;
        const ApplicationComparison comparison = compare();
        if (!comparison.error.isEmpty())
            return m_call.addError(QStringLiteral(": Comparison application error"),
                                   comparison.error);
        if (comparison.matches) {
            log(TestResult::verificationType(true, m_expectFail),
                QStringLiteral(": Screenshot comparison of '%1' passed"), comparison.details);
            return !m_expectFail;
        }
        if (m_call.learn) {
            learn(comparison.details);
            return !m_expectFail;
        }
        logMismatch(comparison.details);
        return m_expectFail;
    }

private:
    void log(TestResult::ResultType type, const QString &message, const QString &details)
    {
        m_call.addResult(type, m_call.name + message.arg(m_objectName), details);
    }

    bool takePicture()
    {
        const SharedPtr<Object> object = m_call.resolve(m_objectName);
        if (!object)
            return false;
        QString error;
        m_taken = m_call.version < optionsVersion
                      ? grabObjectPixmap(object, &error)
                      : grabObjectScreenshot(object,
                                             m_element.attribute(QStringLiteral("options")).toInt(),
                                             m_call.options.screenshotDelay(), &error);
        if (m_taken.isNull())
            log(TestResult::FAIL,
                QStringLiteral(": Internal error while taking screenshot of object '%1'"), error);
        return !m_taken.isNull();
    }

    ApplicationComparison compare()
    {
        m_stored = storedImage(m_element, m_format);
        const ImageMask mask = readMask(m_element.firstChild().nextSibling().toElement());
        const QDomElement algorithm = m_element.firstChildElement(QStringLiteral("Algorithm"));
        const QString name = m_call.version < algorithmVersion
                                 ? QString()
                                 : algorithm.attribute(QStringLiteral("name"));
        if (name.isEmpty() || name == QLatin1String("strict"))
            return strictComparison(mask, m_taken, m_stored);
        return comparisonBy(name, algorithm, mask, m_taken, m_stored);
    }

    void learn(const QString &details)
    {
        learnImage(m_element, m_call.document, m_taken);
        m_call.updated = true;
        log(TestResult::WARNING,
            QStringLiteral(": Screenshot comparison of '%1' failed, Verification Point was updated "
                           "due to the MORVEX_LEARN_SCREENSHOTS environment variable"),
            details);
    }

    void logMismatch(const QString &details)
    {
        log(TestResult::verificationType(false, m_expectFail),
            QStringLiteral(": Screenshot comparison of '%1' failed"),
            details + QLatin1String(". "));
        const QString dir = failedImageDir(m_call.name, m_call.file, m_call.runner);
        m_call.logger.deferDetails(
            [dir, name = m_call.name, format = m_format, taken = m_taken, stored = m_stored] {
                if (stored.isNull())
                    qWarning("%s: the stored picture cannot be read as %s", qUtf8Printable(name),
                             qUtf8Printable(format));
                return storeDifferingImages(dir, taken, stored);
            });
    }

    QDomElement &m_element;
    VPCall &m_call;
    const QString m_objectName;
    const QString m_format;
    const bool m_expectFail;
    QImage m_taken;
    QImage m_stored;
};

} // namespace

bool TestVP::performScreenshotVerification(QDomElement &element, VPCall &call) const
{
    return ScreenshotCheck(element, call).run();
}

} // namespace Morvex
