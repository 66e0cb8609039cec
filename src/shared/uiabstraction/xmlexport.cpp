#include "shared/uiabstraction/xmlexport.h"

#include "shared/uiabstraction/dump/dumplimits.h"
#include "shared/uiabstraction/text/legaltext.h"
#include "shared/uiabstraction/uielement.h"

#include <QBuffer>
#include <QFile>
#include <QXmlStreamWriter>

namespace Morvex::UIAbstraction {
namespace {

const int indent = 2;

QString flag(bool isSet)
{
    return isSet ? QStringLiteral("1") : QStringLiteral("0");
}

} // namespace

XmlExporter::XmlExporter(const QByteArray &dump)
    : m_elements(UIElement::elementsFromByteArray(dump))
    , m_ownsElements(true)
{
}

XmlExporter::XmlExporter(const QList<UIElement *> &elements)
    : m_elements(elements)
    , m_ownsElements(false)
{
}

XmlExporter::~XmlExporter()
{
    if (m_ownsElements)
        qDeleteAll(m_elements);
}

bool XmlExporter::toXml(QIODevice *device)
{
    m_error.clear();
    if (!device || !device->isOpen())
        m_error = QStringLiteral("Device is not open!");
    else if (!device->isWritable())
        m_error = QStringLiteral("Device is not writable!");
    if (!m_error.isEmpty())
        return false;
    QXmlStreamWriter writer(device);
    writer.setAutoFormatting(true);
    writer.setAutoFormattingIndent(indent);
    writer.writeStartDocument(QStringLiteral("1.0"));
    toXmlFragment(&writer);
    writer.writeEndDocument();
    auto *file = qobject_cast<QFileDevice *>(device);
    if (writer.hasError() || (file && !file->flush()))
        m_error = QStringLiteral("Failed to write the element tree: %1").arg(device->errorString());
    return m_error.isEmpty();
}

void XmlExporter::toXmlFragment(QXmlStreamWriter *writer)
{
    writer->writeStartElement(QStringLiteral("ui"));
    writer->writeAttribute(QStringLiteral("version"), QStringLiteral("1.0"));
    writer->writeStartElement(QStringLiteral("execution"));
    writer->writeStartElement(QStringLiteral("state"));
    for (const UIElement *element : qAsConst(m_elements))
        toXmlStream(element, writer);
    writer->writeEndElement();
    writer->writeEndElement();
    writer->writeEndElement();
}

void XmlExporter::toXmlStream(const UIElement *element, QXmlStreamWriter *writer)
{
    m_writer = writer;
    writeLevel(*element, 1);
}

void XmlExporter::writeLevel(const UIElement &element, int level)
{
    if (level > maxElementLevels) {
        warnOfDeepElements();
    } else if (m_skipsTransparentNodes && element.isTransparentNode()) {
        const QList<UIElement *> children = element.children();
        for (const UIElement *child : children)
            writeLevel(*child, level + 1);
    } else {
        writeElement(element, level);
    }
}

void XmlExporter::writeElement(const UIElement &element, int level)
{
    m_writer->writeStartElement(QStringLiteral("element"));
    writeAttributes(element);
    writeNames(element);
    writeImage(element);
    writeSuperTypes(element);
    writeAbstractProperties(element);
    writeCoverage(element);
    writeProperties(QStringLiteral("properties"), element.concreteProperties());
    writeProperties(QStringLiteral("identifyingProperties"), element.identifyingProperties());
    writeChildren(element, level);
    m_writer->writeEndElement();
}

void XmlExporter::writeAttributes(const UIElement &element)
{
    writeAttribute(QStringLiteral("id"), element.id());
    if (element.standardType().isKnown())
        writeAttribute(QStringLiteral("type"), element.standardType().toString());
    writeAttribute(QStringLiteral("class"), element.concreteType());
    if (!element.simplifiedType().isNull())
        writeAttribute(QStringLiteral("simplifiedType"), element.simplifiedType());
    if (!element.nameSpace().isNull())
        writeAttribute(QStringLiteral("namespace"), element.nameSpace());
}

void XmlExporter::writeNames(const UIElement &element)
{
    writeOptionalText(QStringLiteral("realname"), element.realName());
    writeOptionalText(QStringLiteral("symbolicname"), element.symbolicName());
}

void XmlExporter::writeImage(const UIElement &element)
{
    if (!element.isImageSet())
        return;
    QBuffer png;
    png.open(QIODevice::WriteOnly);
    element.image().save(&png, "PNG");
    m_writer->writeStartElement(QStringLiteral("image"));
    writeAttribute(QStringLiteral("type"), QStringLiteral("PNG"));
    m_writer->writeCharacters(QString::fromLatin1(png.data().toBase64()));
    m_writer->writeEndElement();
}

void XmlExporter::writeSuperTypes(const UIElement &element)
{
    m_writer->writeStartElement(QStringLiteral("superclass"));
    const QStringList superTypes = element.superTypes();
    for (const QString &superType : superTypes)
        writeText(QStringLiteral("class"), superType);
    m_writer->writeEndElement();
}

void XmlExporter::writeAbstractProperties(const UIElement &element)
{
    m_writer->writeStartElement(QStringLiteral("abstractProperties"));
    m_writer->writeEmptyElement(QStringLiteral("visual"));
    writeAttribute(QStringLiteral("isTopLevel"), flag(element.isWindowNode()));
    writeGeometry(element);
    writeOptionalText(QStringLiteral("text"), element.text());
    m_writer->writeEndElement();
}

// The reader builds the far corner on the near one: the order counts.
void XmlExporter::writeGeometry(const UIElement &element)
{
    const ElementGeometry geometry = element.geometry();
    if (!geometry.rect().isValid())
        return;
    m_writer->writeStartElement(QStringLiteral("geometry"));
    writeAttribute(QStringLiteral("isRelative"), flag(geometry.isRelative()));
    writeText(QStringLiteral("x"), QString::number(geometry.rect().left()));
    writeText(QStringLiteral("y"), QString::number(geometry.rect().top()));
    writeText(QStringLiteral("width"), QString::number(geometry.width()));
    writeText(QStringLiteral("height"), QString::number(geometry.height()));
    m_writer->writeEndElement();
}

void XmlExporter::writeCoverage(const UIElement &element)
{
    const QMap<UIEvent, int> usage = element.usageMap();
    if (usage.isEmpty())
        return;
    m_writer->writeStartElement(QStringLiteral("coveragedata"));
    for (auto entry = usage.begin(); entry != usage.end(); ++entry) {
        m_writer->writeStartElement(QStringLiteral("coverage"));
        writeAttribute(QStringLiteral("name"), entry.key().name());
        m_writer->writeCharacters(QString::number(entry.value()));
        m_writer->writeEndElement();
    }
    m_writer->writeEndElement();
}

// The keys of a hash come in another order in each process; a file is the same from all.
void XmlExporter::writeProperties(const QString &tag, const QHash<QString, QString> &properties)
{
    if (properties.isEmpty())
        return;
    QStringList names = properties.keys();
    names.sort();
    m_writer->writeStartElement(tag);
    for (const QString &name : qAsConst(names)) {
        m_writer->writeStartElement(QStringLiteral("property"));
        writeAttribute(QStringLiteral("name"), name);
        writeText(QStringLiteral("string"), properties.value(name));
        m_writer->writeEndElement();
    }
    m_writer->writeEndElement();
}

void XmlExporter::writeChildren(const UIElement &element, int level)
{
    const QList<UIElement *> children = element.children();
    if (children.isEmpty() || (m_honoursSubgraphTransparency && element.isSubgraphTransparent()))
        return;
    m_writer->writeStartElement(QStringLiteral("children"));
    for (const UIElement *child : children)
        writeLevel(*child, level + 1);
    m_writer->writeEndElement();
}

// Readers of XML make one line feed of both: a carriage return stays one as a reference only.
void XmlExporter::writeText(const QString &tag, const QString &text)
{
    m_writer->writeStartElement(tag);
    const QStringList parts = legalText(text).split(QLatin1Char('\r'));
    for (int i = 0; i < parts.size(); ++i) {
        if (i > 0)
            m_writer->writeEntityReference(QStringLiteral("#13"));
        m_writer->writeCharacters(parts.at(i));
    }
    m_writer->writeEndElement();
}

void XmlExporter::writeOptionalText(const QString &tag, const QString &text)
{
    if (!text.isNull())
        writeText(tag, text);
}

void XmlExporter::writeAttribute(const QString &name, const QString &value)
{
    m_writer->writeAttribute(name, legalText(value));
}

} // namespace Morvex::UIAbstraction
