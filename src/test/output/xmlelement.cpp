#include "test/output/xmlelement.h"

#include "shared/xmltext.h"

#include <utility>

namespace Morvex {
namespace {

void appendName(QByteArray &out, QLatin1String name)
{
    out.append(name.data(), name.size());
}

void appendIndent(QByteArray &out, int indent)
{
    out.append(qMax(indent, 0), ' ');
}

} // namespace

XmlElement::XmlElement(QLatin1String name)
    : m_name(name)
{
}

XmlElement &XmlElement::addAttribute(QLatin1String name, const QString &value)
{
    m_attributes.push_back({name, value});
    return *this;
}

XmlElement &XmlElement::addAttribute(QLatin1String name, int value)
{
    return addAttribute(name, QString::number(value));
}

XmlElement &XmlElement::addChild(XmlElement child)
{
    m_children.push_back(std::move(child));
    return *this;
}

XmlElement &XmlElement::setText(const QString &text)
{
    m_text = text;
    m_isCData = false;
    return *this;
}

XmlElement &XmlElement::setCData(const QString &text)
{
    m_text = text;
    m_isCData = true;
    return *this;
}

void XmlElement::append(QByteArray &out, int indent, int step) const
{
    appendIndent(out, indent);
    appendStartOfTag(out);
    if (m_text.isEmpty() && m_children.empty()) {
        out += "/>\n";
        return;
    }
    out += '>';
    if (m_children.empty())
        appendText(out);
    else
        appendChildren(out, indent, step);
    appendCloseTag(out);
    out += '\n';
}

void XmlElement::appendOpenTag(QByteArray &out) const
{
    appendStartOfTag(out);
    out += '>';
}

void XmlElement::appendCloseTag(QByteArray &out) const
{
    out += "</";
    appendName(out, m_name);
    out += '>';
}

void XmlElement::appendStartOfTag(QByteArray &out) const
{
    out += '<';
    appendName(out, m_name);
    for (const Attribute &attribute : m_attributes) {
        out += ' ';
        appendName(out, attribute.name);
        out += "=\"";
        appendXmlAttributeValue(out, attribute.value);
        out += '"';
    }
}

void XmlElement::appendText(QByteArray &out) const
{
    if (!m_isCData) {
        appendXmlText(out, m_text);
        return;
    }
    out += "<![CDATA[";
    appendXmlCData(out, m_text);
    out += "]]>";
}

void XmlElement::appendChildren(QByteArray &out, int indent, int step) const
{
    out += '\n';
    for (const XmlElement &child : m_children)
        child.append(out, indent + step, step);
    appendIndent(out, indent);
}

void dumpElementToStream(const XmlElement &element, WriteMode mode, QByteArray *stream, int &indent,
                         int step)
{
    switch (mode) {
    case OpenTag:
        appendIndent(*stream, indent);
        element.appendOpenTag(*stream);
        *stream += '\n';
        indent += step;
        break;
    case CloseTag:
        indent -= step;
        appendIndent(*stream, indent);
        element.appendCloseTag(*stream);
        *stream += '\n';
        break;
    case WholeElement:
        element.append(*stream, indent, step);
        break;
    }
}

} // namespace Morvex
