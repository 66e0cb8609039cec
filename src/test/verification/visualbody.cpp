#include "test/verification/visualbody.h"

#include "test/titanvp.h"
#include "test/verification/maskelement.h"

#include <QDomElement>
#include <QHash>
#include <QSet>
#include <QTextStream>

namespace Morvex {
namespace {

const int indent = 2;
const QLatin1String propertyVerificationTag("PropertyVerification");

bool isDisabled(const QDomElement &element)
{
    return element.attribute(QStringLiteral("disabled")) == QLatin1String("true");
}

// Ids that are equal share their text, so that a comparison sees at once that they are.
class KnownIds
{
public:
    BrowserElement::Id known(const BrowserElement::Id &id) { return *m_ids.insert(id); }

    void addTree(const BrowserElement &root)
    {
        known(root.id());
        for (const BrowserElement *child : root.children())
            addTree(*child);
    }

    BrowserElement::Id idOf(const QDomElement &element)
    {
        return known(BrowserElement::Id(element.attribute(QStringLiteral("element-id"))));
    }

private:
    QSet<BrowserElement::Id> m_ids;
};

template <typename Step>
void forEachChild(const QDomElement &parent, const QString &tag, const Step &step)
{
    for (QDomElement child = parent.firstChildElement(tag); !child.isNull();
         child = child.nextSiblingElement(tag))
        step(child);
}

TitanPropertyCheck propertyCheck(const QDomElement &element)
{
    TitanPropertyCheck check;
    const QString type = element.attribute(QStringLiteral("type"));
    if (type == QLatin1String("range")) {
        bool isNumber = false;
        const int delta = element.attribute(QStringLiteral("delta")).toInt(&isNumber);
        if (isNumber) {
            check.mode = TitanPropertyCheck::Range;
            check.delta = delta;
        }
    } else if (type == QLatin1String("wildcard") || type == QLatin1String("regexp")) {
        check.mode = type == QLatin1String("wildcard") ? TitanPropertyCheck::Wildcard
                                                       : TitanPropertyCheck::RegularExpression;
        check.value = element.text();
    }
    return check;
}

using PropertyChecks = QMap<QString, TitanPropertyCheck>;

// Elements of one class mostly have the same checks: those that are equal share their memory.
class SharedChecks
{
public:
    PropertyChecks shared(const PropertyChecks &checks)
    {
        const QString text = textOf(checks);
        const auto known = m_known.constFind(text);
        return known != m_known.constEnd() ? *known : *m_known.insert(text, checks);
    }

private:
    static QString textOf(const PropertyChecks &checks)
    {
        QString text;
        for (auto check = checks.begin(); check != checks.end(); ++check) {
            for (const QString &part : {check.key(), QString::number(check->mode),
                                        QString::number(check->delta), check->value})
                text += part + QChar(QChar::Null);
        }
        return text;
    }

    QHash<QString, PropertyChecks> m_known;
};

void readAlgorithm(const QDomElement &element, VisualScreenshotCheck *check)
{
    if (element.attribute(QStringLiteral("name")) != QLatin1String("correlationcompare"))
        return;
    bool isNumber = false;
    forEachChild(element, QStringLiteral("Parameter"), [&](const QDomElement &parameter) {
        if (isNumber || parameter.attribute(QStringLiteral("name")) != QLatin1String("threshold"))
            return;
        const double threshold = parameter.text().toDouble(&isNumber);
        if (isNumber) {
            check->algorithm = VisualScreenshotCheck::Correlation;
            check->threshold = threshold;
        }
    });
}

VisualScreenshotCheck screenshotCheck(const QDomElement &element)
{
    VisualScreenshotCheck check;
    forEachChild(element, QStringLiteral("Algorithm"),
                 [&](const QDomElement &child) { readAlgorithm(child, &check); });
    forEachChild(element, QStringLiteral("Mask"),
                 [&](const QDomElement &child) { check.mask.addMaskRect(maskRectOf(child)); });
    return check;
}

bool readTree(const QDomElement &ui, BrowserElement *root)
{
    QString xml;
    QTextStream stream(&xml);
    ui.save(stream, indent);
    return BrowserElement::readXML(root, xml.toUtf8(), nullptr);
}

void readProperties(const QDomElement &check, KnownIds *ids, TitanPropertyChecksOfElements *map)
{
    SharedChecks known;
    forEachChild(check, propertyVerificationTag, [&](const QDomElement &element) {
        if (isDisabled(element))
            return;
        PropertyChecks checks;
        forEachChild(element, QStringLiteral("VerifyProperty"), [&](const QDomElement &property) {
            checks.insert(property.attribute(QStringLiteral("name")), propertyCheck(property));
        });
        map->insert(ids->idOf(element), known.shared(checks));
    });
}

void readCheck(const QDomElement &check, KnownIds *ids, VisualBody *body)
{
    const QString type = check.attribute(QStringLiteral("type"));
    if (type == QLatin1String("content")) {
        readProperties(check, ids, &body->content);
    } else if (type == QLatin1String("geometry")) {
        readProperties(check, ids, &body->geometry);
    } else if (type == QLatin1String("identifying")) {
        readProperties(check, ids, &body->identifying);
    } else if (type == QLatin1String("screenshot")) {
        forEachChild(check, propertyVerificationTag, [&](const QDomElement &child) {
            if (!isDisabled(child))
                body->screenshots.insert(ids->idOf(child), screenshotCheck(child));
        });
    } else if (type == QLatin1String("subtree")) {
        forEachChild(check, propertyVerificationTag,
                     [&](const QDomElement &child) { body->subtreeExcluded += ids->idOf(child); });
    }
}

} // namespace

void visualVpVerifyProperties(QDomElement &check, TitanPropertyChecksOfElements *map)
{
    KnownIds ids;
    readProperties(check, &ids, map);
}

bool VisualBody::read(const QDomElement &verification)
{
    KnownIds ids;
    const QDomElement visual = verification.firstChildElement(QStringLiteral("visual"));
    for (QDomElement child = visual.firstChildElement(); !child.isNull();
         child = child.nextSiblingElement()) {
        if (child.tagName() == QLatin1String("ui")) {
            if (!readTree(child, &stored))
                return false;
            ids.addTree(stored);
        } else if (child.tagName() == QLatin1String("check")) {
            readCheck(child, &ids, this);
        }
    }
    return true;
}

bool VisualBody::compare(BrowserElement *live, QMap<BrowserElement::Id, TitanCompare> *result)
{
    return titanCompare(&stored, live, identifying, content, geometry, screenshots, subtreeExcluded,
                        result);
}

} // namespace Morvex
