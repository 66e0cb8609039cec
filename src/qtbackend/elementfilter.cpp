#include "qtbackend/elementfilter.h"

#include <QXmlStreamReader>

namespace Morvex {
namespace {

const QLatin1String supportedVersion("1");
const QLatin1String anyProperty("*");

} // namespace

/// Reads one filter: what it can't understand is an error, since a rule that is passed over would
/// hide differences.
class ElementFilterReader
{
public:
    explicit ElementFilterReader(const QByteArray &xml)
        : m_xml(xml)
    {
        m_xml.setNamespaceProcessing(false);
    }

    QString readInto(ElementFilter *filter)
    {
        if (readUpToRoot())
            readRoot(filter);
        // Also what comes after the root.
        while (!m_xml.atEnd())
            m_xml.readNext();
        return m_xml.hasError()
                   ? QStringLiteral("line %1, column %2: %3")
                         .arg(QString::number(m_xml.lineNumber()),
                              QString::number(m_xml.columnNumber()), m_xml.errorString())
                   : QString();
    }

private:
    using Choice = ElementFilter::Choice;

    bool readUpToRoot()
    {
        while (!m_xml.atEnd() && !m_xml.isStartElement()) {
            m_xml.readNext();
            // The entities of one could stand for texts of any length.
            if (m_xml.isDTD() && m_xml.text().contains(QLatin1Char('[')))
                m_xml.raiseError(QStringLiteral("The document type holds declarations."));
        }
        return m_xml.isStartElement();
    }

    void readRoot(ElementFilter *filter)
    {
        if (m_xml.name() != QLatin1String("elementfilter"))
            return failAtElement();
        if (m_xml.attributes().value(QLatin1String("version")) != supportedVersion) {
            return m_xml.raiseError(
                QStringLiteral("<elementfilter> needs the attribute version=\"%1\"")
                    .arg(supportedVersion));
        }
        expectAttributes({"version"});
        while (m_xml.readNextStartElement()) {
            if (m_xml.name() == QLatin1String("class"))
                filter->m_rules += readClass();
            else if (m_xml.name() == QLatin1String("picture"))
                readPicture(filter);
            else
                failAtElement();
        }
    }

    void readPicture(ElementFilter *filter)
    {
        expectAttributes({"taken"});
        const Choice taken = choice("taken", "no", "yes");
        if (taken != ElementFilter::Unchanged)
            filter->m_wantsPicture = taken == ElementFilter::Yes;
        expectNothingInside();
    }

    ElementFilter::ClassRule readClass()
    {
        ElementFilter::ClassRule rule;
        expectAttributes({"name", "node", "subtree"});
        rule.className = requiredAttribute("name");
        rule.isTransparent = choice("node", "shown", "transparent");
        rule.hidesSubtree = choice("subtree", "shown", "hidden");
        while (m_xml.readNextStartElement()) {
            if (m_xml.name() == QLatin1String("property"))
                rule.properties += readProperty();
            else
                failAtElement();
        }
        return rule;
    }

    ElementFilter::PropertyRule readProperty()
    {
        static const QHash<QString, ElementRules::Role> roles{
            {QStringLiteral("none"), ElementRules::None},
            {QStringLiteral("content"), ElementRules::Content},
            {QStringLiteral("identifying"), ElementRules::Identifying},
            {QStringLiteral("both"), ElementRules::Both},
        };
        expectAttributes({"name", "role"});
        const QString name = requiredAttribute("name");
        const QString role = requiredAttribute("role");
        if (!roles.contains(role))
            failAtValue("role", role);
        expectNothingInside();
        return {name, roles.value(role)};
    }

    Choice choice(const char *attribute, const char *no, const char *yes)
    {
        const QXmlStreamAttributes attributes = m_xml.attributes();
        if (!attributes.hasAttribute(QLatin1String(attribute)))
            return ElementFilter::Unchanged;
        const QString value = attributes.value(QLatin1String(attribute)).toString();
        if (value != QLatin1String(no) && value != QLatin1String(yes))
            failAtValue(attribute, value);
        return value == QLatin1String(yes) ? ElementFilter::Yes : ElementFilter::No;
    }

    QString requiredAttribute(const char *name)
    {
        const QString value = m_xml.attributes().value(QLatin1String(name)).toString();
        if (value.isEmpty()) {
            m_xml.raiseError(QStringLiteral("<%1> needs the attribute '%2'")
                                 .arg(m_xml.name().toString(), QLatin1String(name)));
        }
        return value;
    }

    void expectAttributes(const QList<QByteArray> &known)
    {
        const QXmlStreamAttributes attributes = m_xml.attributes();
        for (const QXmlStreamAttribute &attribute : attributes) {
            if (!known.contains(attribute.name().toUtf8())) {
                m_xml.raiseError(QStringLiteral("<%1> has no attribute '%2'")
                                     .arg(m_xml.name().toString(), attribute.name().toString()));
            }
        }
    }

    void expectNothingInside()
    {
        while (m_xml.readNextStartElement())
            failAtElement();
    }

    void failAtElement()
    {
        m_xml.raiseError(
            QStringLiteral("the element <%1> is not expected here").arg(m_xml.name().toString()));
    }

    void failAtValue(const char *attribute, const QString &value)
    {
        m_xml.raiseError(QStringLiteral("the attribute '%1' can't be '%2'")
                             .arg(QLatin1String(attribute), value));
    }

    QXmlStreamReader m_xml;
};

QString ElementFilter::add(const QByteArray &xml)
{
    return ElementFilterReader(xml).readInto(this);
}

ElementRules ElementFilter::rulesFor(const QStringList &classNames,
                                     const QStringList &propertyNames) const
{
    ElementRules rules;
    for (const ClassRule &rule : m_rules) {
        if (classNames.contains(rule.className))
            apply(rule, propertyNames, &rules);
    }
    return rules;
}

void ElementFilter::apply(const ClassRule &rule, const QStringList &propertyNames,
                          ElementRules *rules)
{
    if (rule.isTransparent != Unchanged)
        rules->isTransparent = rule.isTransparent == Yes;
    if (rule.hidesSubtree != Unchanged)
        rules->hidesSubtree = rule.hidesSubtree == Yes;
    for (const PropertyRule &property : rule.properties) {
        const QStringList names =
            property.name == anyProperty ? propertyNames : QStringList{property.name};
        for (const QString &name : names)
            rules->roles[name] = property.role;
    }
}

} // namespace Morvex
