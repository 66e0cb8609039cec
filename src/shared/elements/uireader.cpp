#include "shared/elements/uireader.h"

#include "shared/uiabstraction/uielement.h"
#include "shared/xml/elementtext.h"

#include <tinyxml.h>

namespace Morvex {
namespace {

using UIAbstraction::saturated;

const QLatin1String supportedVersion("1.0");

QString attributeOf(const TiXmlElement &xml, const char *name)
{
    const char *value = xml.Attribute(name);
    return value ? QString::fromUtf8(value) : QString();
}

QString textOf(const TiXmlElement &xml)
{
    return QString::fromStdString(wholeText(xml));
}

bool isSet(const TiXmlElement &xml, const char *attribute)
{
    return attributeOf(xml, attribute).toInt() == 1;
}

QString row(const TiXmlElement *xml)
{
    return QString::number(xml ? xml->Row() : 1);
}

QString column(const TiXmlElement *xml)
{
    return QString::number(xml ? xml->Column() : 1);
}

// Width and height build on the place that was read before them.
void applyGeometryValue(const std::string &name, qint64 value, QRect *rect)
{
    if (name == "x")
        rect->setLeft(saturated(value));
    else if (name == "y")
        rect->setTop(saturated(value));
    else if (name == "width")
        rect->setRight(saturated(qint64(saturated(value)) + rect->left() - 1));
    else if (name == "height")
        rect->setBottom(saturated(qint64(saturated(value)) + rect->top() - 1));
}

} // namespace

UiReader::UiReader(QString *error)
    : m_error(error)
{
}

void UiReader::setError(QString *error, const QString &text)
{
    if (error)
        *error = text;
}

bool UiReader::fail(const QString &text)
{
    setError(m_error, text);
    return false;
}

bool UiReader::checkXmlElement(const TiXmlElement *element, const char *name)
{
    const QString actual = element ? QString::fromStdString(element->ValueStr()) : QString();
    return actual == QLatin1String(name) ||
           fail(QStringLiteral("Expected element <%1> at %2:%3 got <%4>")
                    .arg(QLatin1String(name), row(element), column(element), actual));
}

bool UiReader::readUi(BrowserElement *root, const TiXmlElement *ui)
{
    if (!checkXmlElement(ui, "ui"))
        return false;
    const QString version = attributeOf(*ui, "version");
    if (!version.isNull() && version != supportedVersion)
        return fail(QStringLiteral("Unsupported version of <ui> element: '%1'").arg(version));
    const TiXmlElement *execution = ui->FirstChildElement();
    if (!execution) {
        return fail(
            QStringLiteral("Expected child element for <ui> at %1:%2").arg(row(ui), column(ui)));
    }
    for (; execution; execution = execution->NextSiblingElement()) {
        if (!checkXmlElement(execution, "execution"))
            return false;
        for (auto *state = execution->FirstChildElement(); state;
             state = state->NextSiblingElement()) {
            if (!checkXmlElement(state, "state") || !readElements(root, *state, 1))
                return false;
        }
    }
    return true;
}

bool UiReader::readElements(BrowserElement *parent, const TiXmlElement &container, int level)
{
    const TiXmlElement *xml = container.FirstChildElement();
    if (xml && level > UIAbstraction::maxElementLevels) {
        qWarning("Elements more than %d levels deep are left out.",
                 UIAbstraction::maxElementLevels);
        return true;
    }
    for (; xml; xml = xml->NextSiblingElement()) {
        if (!checkXmlElement(xml, "element") || !readElement(parent, *xml, level))
            return false;
    }
    return true;
}

bool UiReader::readElement(BrowserElement *parent, const TiXmlElement &xml, int level)
{
    auto *element = new BrowserElement(parent, QStringLiteral("element"));
    element->setId(BrowserElement::Id(attributeOf(xml, "id")));
    element->setType(attributeOf(xml, "type"));
    element->setClassName(attributeOf(xml, "class"));
    element->setSimplifiedType(attributeOf(xml, "simplifiedType"));
    element->setNameSpace(attributeOf(xml, "namespace"));
    for (auto *child = xml.FirstChildElement(); child; child = child->NextSiblingElement()) {
        if (!readChild(element, *child, level))
            return false;
    }
    return true;
}

bool UiReader::readChild(BrowserElement *element, const TiXmlElement &xml, int level)
{
    const std::string &tag = xml.ValueStr();
    QMap<QString, QString> properties;
    if (tag == "realname") {
        element->setRealName(textOf(xml));
    } else if (tag == "symbolicname") {
        element->setSymbolicName(textOf(xml));
    } else if (tag == "superclass") {
        return readSuperClasses(element, xml);
    } else if (tag == "image") {
        readImage(element, xml);
    } else if (tag == "abstractProperties") {
        return readAbstractProperties(element, xml);
    } else if (tag == "properties") {
        if (!readProperties(xml, &properties))
            return false;
        element->setProperties(properties);
    } else if (tag == "identifyingProperties") {
        if (!readProperties(xml, &properties))
            return false;
        element->setIdentifyingProperties(properties);
    } else if (tag == "coveragedata") {
        return readCoverage(element, xml);
    } else if (tag == "children") {
        return readElements(element, xml, level + 1);
    }
    return true;
}

bool UiReader::readSuperClasses(BrowserElement *element, const TiXmlElement &xml)
{
    QStringList classes;
    for (auto *child = xml.FirstChildElement(); child; child = child->NextSiblingElement()) {
        if (!checkXmlElement(child, "class"))
            return false;
        classes += textOf(*child);
    }
    element->setSuperClasses(classes);
    return true;
}

bool UiReader::readAbstractProperties(BrowserElement *element, const TiXmlElement &xml)
{
    for (auto *child = xml.FirstChildElement(); child; child = child->NextSiblingElement()) {
        const std::string &tag = child->ValueStr();
        if (tag == "visual")
            element->setTopLevel(isSet(*child, "isTopLevel"));
        else if (tag == "text")
            element->setText(textOf(*child));
        else if (tag == "geometry" && !readGeometry(element, *child))
            return false;
    }
    return true;
}

bool UiReader::readGeometry(BrowserElement *element, const TiXmlElement &xml)
{
    QRect rect;
    for (auto *child = xml.FirstChildElement(); child; child = child->NextSiblingElement()) {
        const QString text = textOf(*child);
        bool isNumber = false;
        const qint64 value = text.toLongLong(&isNumber);
        if (!isNumber) {
            return fail(QStringLiteral("Invalid value for attribute '%1': '%2'")
                            .arg(QString::fromStdString(child->ValueStr()), text));
        }
        applyGeometryValue(child->ValueStr(), value, &rect);
    }
    element->setGeometry(UIAbstraction::ElementGeometry(rect, isSet(xml, "isRelative")));
    return true;
}

bool UiReader::readProperties(const TiXmlElement &xml, QMap<QString, QString> *properties)
{
    for (auto *child = xml.FirstChildElement(); child; child = child->NextSiblingElement()) {
        if (!checkXmlElement(child, "property"))
            return false;
        const TiXmlElement *value = child->FirstChildElement();
        properties->insert(attributeOf(*child, "name"), value ? textOf(*value) : QString());
    }
    return true;
}

bool UiReader::readCoverage(BrowserElement *element, const TiXmlElement &xml)
{
    for (auto *child = xml.FirstChildElement(); child; child = child->NextSiblingElement()) {
        if (!checkXmlElement(child, "coverage"))
            return false;
        const QString text = textOf(*child);
        bool isNumber = false;
        const qint64 value = text.toLongLong(&isNumber);
        if (!isNumber)
            return fail(QStringLiteral("Couldn't convert coverage value to int: '%1'").arg(text));
        element->setCoverage(attributeOf(*child, "name"), saturated(value));
    }
    return true;
}

void UiReader::readImage(BrowserElement *element, const TiXmlElement &xml)
{
    const QByteArray bytes = QByteArray::fromBase64(QByteArray::fromStdString(wholeText(xml)));
    const QByteArray format = attributeOf(xml, "type").toLatin1();
    const QImage image = loadImage(bytes, format, m_pixelsLeft);
    if (image.isNull() && !bytes.isEmpty())
        qWarning("A picture that is damaged or too large is left out.");
    m_pixelsLeft -= pixelCount(image.size());
    element->setImage(image);
}

} // namespace Morvex
