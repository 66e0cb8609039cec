#include "test/verification/titanpropertychecks.h"

#include "objectmodel/inspector.h"
#include "objectmodel/namespace.h"
#include "shared/uiabstraction/text/legaltext.h"
#include "shared/uiabstraction/uielement.h"
#include "test/verification/titanselectiondefaults.h"

#include <QXmlStreamWriter>

#include <algorithm>

namespace Morvex {
namespace {

using UIAbstraction::legalText;
using UIAbstraction::UIElement;

// Null when the application has no such class.
const Class *classOf(const UIElement *element)
{
    Inspector *inspector = Inspector::self();
    if (!inspector)
        return nullptr;
    if (element->nameSpace().isEmpty())
        return inspector->findClass(element->concreteType());
    const Namespace *nameSpace = inspector->findNamespace(element->nameSpace());
    return nameSpace ? nameSpace->getClass(element->concreteType()) : nullptr;
}

// The order of a hash differs from process to process.
std::vector<QString> sortedNames(const QHash<QString, QString> &properties)
{
    std::vector<QString> names(properties.keyBegin(), properties.keyEnd());
    std::sort(names.begin(), names.end());
    return names;
}

bool hasGeometry(const UIElement *element)
{
    return element->geometry().rect().isValid();
}

} // namespace

TitanPropertyChecks::TitanPropertyChecks(
    TitanSelectionDefaultsBase<const Class *, ClassMapping> *defaults)
    : m_defaults(defaults)
{
}

void TitanPropertyChecks::collectChecks(const UIElement *element)
{
    collectChecksInternal(element, !hasGeometry(element) || !element->isImageSet());
}

void TitanPropertyChecks::collectChecksInternal(const UIElement *element, bool noScreenshot)
{
    if (!element->isTransparentNode()) {
        const Class *type = classOf(element);
        collectIdentifyingChecks(element, type);
        collectContentChecks(element, type);
        collectGeometryChecks(element);
        if (!noScreenshot)
            collectScreenshotChecks(element);
    }
    const QList<UIElement *> children = element->children();
    for (const UIElement *child : children)
        collectChecksInternal(child, noScreenshot);
}

void TitanPropertyChecks::collectIdentifyingChecks(const UIElement *element, const Class *type)
{
    const QHash<QString, QString> properties = element->identifyingProperties();
    std::vector<QString> names;
    for (const QString &name : sortedNames(properties)) {
        if (!properties.value(name).isEmpty() &&
            m_defaults->mapping().includePropertyCheck(type, name.toStdString()))
            names.push_back(name);
    }
    if (!names.empty())
        m_identifying.emplace_back(element->id(), names);
}

void TitanPropertyChecks::collectContentChecks(const UIElement *element, const Class *type)
{
    std::vector<QString> names;
    for (const QString &name : sortedNames(element->concreteProperties())) {
        if (m_defaults->mapping().includePropertyCheck(type, name.toStdString()))
            names.push_back(name);
    }
    if (!names.empty())
        m_content.emplace_back(element->id(), names);
}

void TitanPropertyChecks::collectGeometryChecks(const UIElement *element)
{
    static const std::vector<QString> names{QStringLiteral("x"), QStringLiteral("y"),
                                            QStringLiteral("width"), QStringLiteral("height")};
    if (hasGeometry(element))
        m_geometry.emplace_back(element->id(), names);
}

void TitanPropertyChecks::collectScreenshotChecks(const UIElement *element)
{
    if (hasGeometry(element))
        m_screenshots.emplace_back(element->id(), std::vector<QString>());
}

void TitanPropertyChecks::writeXml(QXmlStreamWriter *writer) const
{
    const auto write = [writer](const QString &type, const List &list) {
        writer->writeStartElement(QStringLiteral("check"));
        writer->writeAttribute(QStringLiteral("type"), type);
        for (const auto &[id, names] : list) {
            writer->writeStartElement(QStringLiteral("PropertyVerification"));
            writer->writeAttribute(QStringLiteral("element-id"), legalText(id));
            for (const QString &name : names) {
                writer->writeEmptyElement(QStringLiteral("VerifyProperty"));
                writer->writeAttribute(QStringLiteral("name"), legalText(name));
                writer->writeAttribute(QStringLiteral("type"), QStringLiteral("equal"));
            }
            writer->writeEndElement();
        }
        writer->writeEndElement();
    };
    write(QStringLiteral("identifying"), m_identifying);
    write(QStringLiteral("content"), m_content);
    write(QStringLiteral("geometry"), m_geometry);
    write(QStringLiteral("screenshot"), m_screenshots);
}

QString TitanPropertyChecks::structuredDump() const
{
    const auto section = [](const QString &type, const List &list) {
        QString text = QStringLiteral("# %1\n").arg(type);
        for (const auto &[id, names] : list) {
            text += QStringLiteral("\n## Element ID '%1'\n").arg(id);
            for (const QString &name : names)
                text += QStringLiteral("- '%1'\n").arg(name);
        }
        return text;
    };
    const QStringList sections{section(QStringLiteral("identifying"), m_identifying),
                               section(QStringLiteral("content"), m_content),
                               section(QStringLiteral("geometry"), m_geometry),
                               section(QStringLiteral("screenshot"), m_screenshots)};
    return sections.join(QLatin1Char('\n'));
}

} // namespace Morvex
