#include "test/testconfig.h"

#include "shared/xml/xmlguard.h"

#include <QFile>

#include <string>
#include <tinyxml.h>

namespace Morvex {
namespace {

struct TestConfig
{
    std::string summary;
    std::string description;
    QMap<QString, QString> testSettings;
    QMap<QString, QString> passwords;
    QStringList tags;
};

using Handler = std::string (*)(const TiXmlElement &, TestConfig *);

std::string getText(const TiXmlElement &element)
{
    const char *text = element.GetText();
    return text ? text : std::string();
}

std::string withElement(const TiXmlNode *node, const std::string &expectedName, TestConfig *config,
                        Handler handler)
{
    const TiXmlElement *element = node ? node->ToElement() : nullptr;
    if (element && element->ValueStr() == expectedName)
        return handler(*element, config);
    std::string error;
    if (node) {
        // Row() and Column() count from 1.
        error = std::to_string(node->Row()) + ":" + std::to_string(node->Column()) + ": ";
    }
    error += "expected " + expectedName + " element";
    if (element)
        error += "; got " + element->ValueStr() + " element";
    return error;
}

std::string parseSummary(const TiXmlElement &element, TestConfig *config)
{
    config->summary = getText(element);
    return {};
}

std::string parseDescription(const TiXmlElement &element, TestConfig *config)
{
    config->description = getText(element);
    return {};
}

std::string parseInformation(const TiXmlElement &element, TestConfig *config)
{
    const TiXmlElement *summary = element.FirstChildElement();
    const std::string error = withElement(summary, "summary", config, parseSummary);
    if (!error.empty())
        return error;
    return withElement(summary->NextSiblingElement(), "description", config, parseDescription);
}

std::string parseTag(const TiXmlElement &element, TestConfig *config)
{
    config->tags += QString::fromStdString(getText(element));
    return {};
}

std::string parseSetting(const TiXmlElement &element, TestConfig *config)
{
    const std::string text = getText(element);
    if (text.empty())
        return "No value could be found for TestSettings property '" + element.ValueStr() + "'.\n";
    config->testSettings.insert(QString::fromStdString(element.ValueStr()),
                                QString::fromStdString(text));
    return {};
}

std::string parsePassword(const TiXmlElement &element, TestConfig *config)
{
    const char *name = element.Attribute("name");
    // The text is fixed as it is spelled.
    if (!name || !*name)
        return "Nameless password specificed in TestSettings.\n";
    const QByteArray encoded = QByteArray::fromStdString(getText(element));
    config->passwords.insert(QString::fromUtf8(name),
                             QString::fromUtf8(QByteArray::fromBase64(encoded)));
    return {};
}

// The children of element, which all have to be named expectedName.
std::string parseChildren(const TiXmlElement &element, const std::string &expectedName,
                          TestConfig *config, Handler handler)
{
    for (const TiXmlElement *child = element.FirstChildElement(); child;
         child = child->NextSiblingElement()) {
        const std::string error = withElement(child, expectedName, config, handler);
        if (!error.empty())
            return error;
    }
    return {};
}

std::string parseTags(const TiXmlElement &element, TestConfig *config)
{
    return parseChildren(element, "tag", config, parseTag);
}

std::string parseTestSettings(const TiXmlElement &element, TestConfig *config)
{
    for (const TiXmlElement *child = element.FirstChildElement(); child;
         child = child->NextSiblingElement()) {
        const std::string error = parseSetting(*child, config);
        if (!error.empty())
            return error;
    }
    return {};
}

std::string parsePasswords(const TiXmlElement &element, TestConfig *config)
{
    return parseChildren(element, "password", config, parsePassword);
}

std::string parseTestconfig(const TiXmlElement &element, TestConfig *config)
{
    const std::string error =
        withElement(element.FirstChildElement(), "information", config, parseInformation);
    if (!error.empty())
        return error;
    const struct
    {
        const char *name;
        Handler handler;
    } optionalElements[] = {
        {"tags", parseTags},
        {"testsettings", parseTestSettings},
        {"passwords", parsePasswords},
    };
    for (const auto &optional : optionalElements) {
        const TiXmlElement *child = element.FirstChildElement(optional.name);
        if (!child)
            continue;
        const std::string childError = optional.handler(*child, config);
        if (!childError.empty())
            return childError;
    }
    return {};
}

[[nodiscard]] QString readTestConfig(const QString &path, TestConfig *config)
{
    TiXmlDocument document;
    const QString error = loadXmlFile(path, &document);
    if (!error.isEmpty())
        return error;
    return QString::fromStdString(
        withElement(document.FirstChildElement(), "testconfig", config, parseTestconfig));
}

} // namespace

QString tryReadTestConfig(const QString &path, QString *summary, QString *description,
                          QStringList *tags, QMap<QString, QString> *settings,
                          QMap<QString, QString> *passwords)
{
    if (!QFile::exists(path))
        return {};
    TestConfig config;
    const QString error = readTestConfig(path, &config);
    if (!error.isEmpty())
        return error;
    *summary = QString::fromStdString(config.summary);
    *description = QString::fromStdString(config.description);
    *tags = config.tags;
    if (settings)
        *settings = config.testSettings;
    if (passwords)
        *passwords = config.passwords;
    return {};
}

} // namespace Morvex
