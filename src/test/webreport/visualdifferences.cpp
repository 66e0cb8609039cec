#include "test/webreport/visualdifferences.h"

#include "shared/visual/expectedelement.h"

#include <QBuffer>
#include <QJsonObject>

namespace Morvex {
namespace {

// Of all pictures of a comparison: what a browser takes and what doesn't hold up the run.
const qint64 maxPixels = 16 * 1024 * 1024;
const int maxTypesNamed = 12;

using Properties = QMap<QString, QString>;
using PropertyChecks = QMap<QString, TitanPropertyCheck>;
using Geometry = UIAbstraction::ElementGeometry;

const QLatin1String identifyingKind("identifying");
const QLatin1String contentKind("content");
const QLatin1String geometryKind("geometry");
const QLatin1String structureKind("structure");
const QLatin1String pictureKind("picture");

// A value that is null stands for none.
QJsonObject difference(QLatin1String kind, const QString &name, const QJsonValue &expected,
                       const QJsonValue &actual)
{
    return {{QStringLiteral("kind"), kind},
            {QStringLiteral("name"), name},
            {QStringLiteral("expected"), expected},
            {QStringLiteral("actual"), actual}};
}

QJsonValue valueOf(const Properties &properties, const QString &name)
{
    const auto property = properties.constFind(name);
    return property == properties.constEnd() ? QJsonValue() : QJsonValue(*property);
}

QString sizeText(qint64 width, qint64 height)
{
    return QStringLiteral("%1 x %2").arg(QString::number(width), QString::number(height));
}

QString placeText(const Geometry &geometry)
{
    if (!geometry.rect().isValid())
        return QStringLiteral("nowhere");
    const QPoint place = geometry.rect().topLeft();
    return QStringLiteral("%1, %2, %3")
        .arg(QString::number(place.x()), QString::number(place.y()),
             sizeText(geometry.width(), geometry.height()));
}

qint64 valueOf(const Geometry &geometry, const QString &name)
{
    if (name == QLatin1String("x"))
        return geometry.rect().left();
    if (name == QLatin1String("y"))
        return geometry.rect().top();
    return name == QLatin1String("width") ? geometry.width() : geometry.height();
}

QString typeOf(const BrowserElement *element)
{
    return element->simplifiedType().isEmpty() ? element->className() : element->simplifiedType();
}

QString elementText(const BrowserElement *element)
{
    const QString name = element->displayName();
    const QString type = typeOf(element);
    return type.isEmpty() || type == name ? name : name + QLatin1Char(' ') + type;
}

// "4: QLabel, 2 QLineEdit, QPushButton".
QString childrenText(const BrowserElement *element)
{
    const QList<BrowserElement *> &children = element->children();
    QStringList types;
    int next = 0;
    while (next < children.count() && types.count() < maxTypesNamed) {
        const QString type = typeOf(children[next]);
        const int first = next;
        while (next < children.count() && typeOf(children[next]) == type)
            ++next;
        types += next - first == 1 ? type : QString::number(next - first) + QLatin1Char(' ') + type;
    }
    if (next < children.count())
        types += QStringLiteral("…");
    return types.isEmpty()
               ? QString::number(0)
               : QStringLiteral("%1: ").arg(children.count()) + types.join(QLatin1String(", "));
}

QString pictureText(const QImage &image)
{
    return sizeText(image.width(), image.height());
}

} // namespace

QJsonArray VisualDifferences::ofMissing(const BrowserElement *element)
{
    return {difference(structureKind, QStringLiteral("missing"), elementText(element), {})};
}

QJsonArray VisualDifferences::ofAdditional(const BrowserElement *element)
{
    return {difference(structureKind, QStringLiteral("additional"), {}, elementText(element))};
}

QJsonArray VisualDifferences::between(const TitanCompare &outcome)
{
    const BrowserElement::Id &id = outcome.expected->id();
    QJsonArray differences;
    addProperties(
        identifyingKind, outcome.identifyingFailures, outcome.expected->identifyingProperties(),
        outcome.actual->identifyingProperties(), m_body.identifying.value(id), &differences);
    addProperties(contentKind, outcome.contentFailures, outcome.expected->properties(),
                  outcome.actual->properties(), m_body.content.value(id), &differences);
    if (outcome.failed & TitanCompare::GeometryCheck)
        addGeometry(outcome, &differences);
    if (outcome.failed & TitanCompare::HierarchyCheck)
        differences.append(difference(structureKind, QStringLiteral("children"),
                                      childrenText(outcome.expected),
                                      childrenText(outcome.actual)));
    if (outcome.failed & TitanCompare::ScreenshotCheck)
        addPictures(outcome, &differences);
    return differences;
}

void VisualDifferences::addProperties(QLatin1String kind, const QStringList &names,
                                      const Properties &expected, const Properties &actual,
                                      const PropertyChecks &checks, QJsonArray *differences)
{
    for (const QString &name : names) {
        const TitanPropertyCheck check = checks.value(name);
        QJsonObject added = difference(kind, name, valueOf(expected, name), valueOf(actual, name));
        if (isPattern(check)) {
            added[QStringLiteral("expected")] = check.value;
            added[QStringLiteral("pattern")] = check.mode == TitanPropertyCheck::Wildcard
                                                   ? QStringLiteral("wildcard")
                                                   : QStringLiteral("regular expression");
        }
        differences->append(added);
    }
}

// The values are those that are compared: coordinates in the parent.
void VisualDifferences::addGeometry(const TitanCompare &outcome, QJsonArray *differences)
{
    const Geometry expected = _geometryRelativeToParent(outcome.expected);
    const Geometry actual = _geometryRelativeToParent(outcome.actual);
    if (!expected.rect().isValid() || !actual.rect().isValid()) {
        differences->append(difference(geometryKind,
                                       outcome.geometryFailures.join(QLatin1String(", ")),
                                       placeText(expected), placeText(actual)));
        return;
    }
    const PropertyChecks checks = m_body.geometry.value(outcome.expected->id());
    for (const QString &name : outcome.geometryFailures) {
        const TitanPropertyCheck check = checks.value(name);
        QString wanted = QString::number(valueOf(expected, name));
        if (check.mode == TitanPropertyCheck::Range)
            wanted += QStringLiteral(" ± %1").arg(check.delta);
        differences->append(
            difference(geometryKind, name, wanted, QString::number(valueOf(actual, name))));
    }
}

// The pictures are what is compared: without children, and with the mask of the check.
void VisualDifferences::addPictures(const TitanCompare &outcome, QJsonArray *differences)
{
    const QString reason = hasMovedChild(outcome)
                               ? QStringLiteral("an element in it has another geometry")
                               : QString();
    if (m_pixels > maxPixels) {
        differences->append(
            QJsonObject{{QStringLiteral("kind"), pictureKind}, {QStringLiteral("name"), reason}});
        return;
    }
    QImage expected;
    QImage actual;
    visualMaskImages(outcome.expected, outcome.actual, &expected, &actual, false);
    const ImageMask mask = m_body.screenshots.value(outcome.expected->id()).mask;
    for (QImage *image : {&expected, &actual}) {
        if (mask.count() > 0 && !image->isNull())
            mask.drawToImage(image);
    }
    const auto textOf = [](const QImage &image) {
        return image.isNull() ? QJsonValue() : QJsonValue(pictureText(image));
    };
    QJsonObject added = difference(pictureKind, reason, textOf(expected), textOf(actual));
    added[QStringLiteral("expectedPicture")] = addPicture(expected);
    added[QStringLiteral("actualPicture")] = addPicture(actual);
    differences->append(added);
}

// Null when there is no picture, or no room for one more.
QJsonValue VisualDifferences::addPicture(const QImage &image)
{
    m_pixels += qint64(image.width()) * image.height();
    QByteArray png;
    QBuffer buffer(&png);
    if (image.isNull() || m_pixels > maxPixels || !buffer.open(QIODevice::WriteOnly) ||
        !image.save(&buffer, "PNG"))
        return {};
    m_pictures.append(QString::fromLatin1(png.toBase64()));
    return m_pictures.count() - 1;
}

bool VisualDifferences::hasMovedChild(const TitanCompare &outcome) const
{
    for (const BrowserElement *child : outcome.expected->children()) {
        const auto found = m_results.constFind(child->id());
        if (found != m_results.constEnd() && found->failed & TitanCompare::GeometryCheck)
            return true;
    }
    return false;
}

} // namespace Morvex
