#pragma once

#include "morvex_export.h"
#include "objectmodel/class.h"
#include "shared/environment.h"
#include "shared/xml/xmlguard.h"

#include <QString>

#include <map>
#include <string>
#include <tinyxml.h>
#include <vector>

namespace Morvex {

/// The classes whose objects have a property checked, by the property's name.
class MORVEX_EXPORT ClassMapping
{
public:
    void add(const std::string &name, const Class *type) { m_classes[name].push_back(type); }

    /// Whether objects of the class have that property checked. @p type may be null.
    bool includePropertyCheck(const Class *type, const std::string &name) const;

private:
    std::map<std::string, std::vector<const Class *>> m_classes;
};

/// Reads which properties a new visual verification point checks. Each step is false with a text
/// in @p error, which may be null, at the first thing that is wrong.
template <typename ClassPointer, typename Mapping>
class TitanSelectionDefaultsBase
{
public:
    virtual ~TitanSelectionDefaultsBase() = default;

    [[nodiscard]] bool parse(QString *error);
    [[nodiscard]] bool parseCheck(const TiXmlElement &element, QString *error);
    [[nodiscard]] bool parseWidgetType(const TiXmlElement &element, QString *error);
    [[nodiscard]] bool parseProperty(const TiXmlElement &element, ClassPointer type,
                                     QString *error);

    const Mapping &mapping() const { return m_mapping; }

protected:
    /// Null for a class that the application does not have.
    virtual ClassPointer findClass(const QString &name) const = 0;

private:
    bool fail(const QString &text, QString *error) const
    {
        if (error)
            *error = text;
        return false;
    }

    bool failStructure(const QString &reason, QString *error) const
    {
        return fail(QStringLiteral("Invalid structure of selectiondefaults file '%1': %2")
                        .arg(m_fileName, reason),
                    error);
    }

    [[nodiscard]] bool checkName(const TiXmlElement &element, const char *name,
                                 QString *error) const
    {
        return element.ValueStr() == name ||
               failStructure(QStringLiteral("unexpected element '%1'")
                                 .arg(QString::fromStdString(element.ValueStr())),
                             error);
    }

    // Null with an error when there is none.
    const char *nameAttribute(const TiXmlElement &element, QString *error) const
    {
        const char *name = element.Attribute("name");
        if (!name)
            failStructure(QStringLiteral("%1 element has no name attribute")
                              .arg(QString::fromStdString(element.ValueStr())),
                          error);
        return name;
    }

    template <typename Step>
    static bool forEachChild(const TiXmlNode &node, const Step &step)
    {
        for (const auto *child = node.FirstChildElement(); child;
             child = child->NextSiblingElement()) {
            if (!step(*child))
                return false;
        }
        return true;
    }

    QString m_fileName;
    Mapping m_mapping;
};

template <typename ClassPointer, typename Mapping>
bool TitanSelectionDefaultsBase<ClassPointer, Mapping>::parse(QString *error)
{
    m_fileName = QString::fromStdString(Environment::getVariable("MORVEX_PREFIX")) +
                 QStringLiteral("/etc/visualselectiondefaults.xml");
    TiXmlDocument document;
    const QString reason = loadXmlFile(m_fileName, &document);
    if (!reason.isEmpty())
        return fail(QStringLiteral("Failed to load selectiondefaults file '%1': %2")
                        .arg(m_fileName, reason),
                    error);
    const TiXmlElement *root = document.RootElement();
    if (!root)
        return fail(
            QStringLiteral("Failed to load selectiondefaults file '%1': missing root element")
                .arg(m_fileName),
            error);
    if (root->ValueStr() != "selectiondefaults")
        return fail(QStringLiteral("Invalid root element '%2' in selectiondefaults file '%1'")
                        .arg(m_fileName, QString::fromStdString(root->ValueStr())),
                    error);
    return forEachChild(*root, [&](const TiXmlElement &child) { return parseCheck(child, error); });
}

template <typename ClassPointer, typename Mapping>
bool TitanSelectionDefaultsBase<ClassPointer, Mapping>::parseCheck(const TiXmlElement &element,
                                                                   QString *error)
{
    if (!checkName(element, "check", error))
        return false;
    const char *attribute = element.Attribute("type");
    const QString type = QString::fromUtf8(attribute ? attribute : "");
    if (type != QLatin1String("content"))
        return failStructure(QStringLiteral("unexpected type '%1' for check").arg(type), error);
    return forEachChild(element,
                        [&](const TiXmlElement &child) { return parseWidgetType(child, error); });
}

template <typename ClassPointer, typename Mapping>
bool TitanSelectionDefaultsBase<ClassPointer, Mapping>::parseWidgetType(const TiXmlElement &element,
                                                                        QString *error)
{
    if (!checkName(element, "widgetType", error))
        return false;
    const char *name = nameAttribute(element, error);
    if (!name)
        return false;
    const ClassPointer type = findClass(QString::fromUtf8(name));
    return !type || forEachChild(element, [&](const TiXmlElement &child) {
        return parseProperty(child, type, error);
    });
}

template <typename ClassPointer, typename Mapping>
bool TitanSelectionDefaultsBase<ClassPointer, Mapping>::parseProperty(const TiXmlElement &element,
                                                                      ClassPointer type,
                                                                      QString *error)
{
    if (!checkName(element, "property", error))
        return false;
    const char *name = nameAttribute(element, error);
    if (!name)
        return false;
    m_mapping.add(name, type);
    return true;
}

/// The defaults of the installation for the classes of the application that runs.
class MORVEX_EXPORT TitanSelectionDefaults
    : public TitanSelectionDefaultsBase<const Class *, ClassMapping>
{
protected:
    const Class *findClass(const QString &name) const override;
};

} // namespace Morvex
