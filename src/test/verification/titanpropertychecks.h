#pragma once

#include "morvex_export.h"

#include <QString>

#include <utility>
#include <vector>

class QXmlStreamWriter;

namespace Morvex {

class Class;
class ClassMapping;
template <typename ClassPointer, typename Mapping>
class TitanSelectionDefaultsBase;

namespace UIAbstraction {
class UIElement;
}

/// What a new visual verification point will check.
class MORVEX_EXPORT TitanPropertyChecks
{
public:
    /// @p defaults have been parsed, and outlive this; not owned.
    explicit TitanPropertyChecks(TitanSelectionDefaultsBase<const Class *, ClassMapping> *defaults);

    /// Adds the checks of a top element and of all below. Pictures are checked when it has one.
    void collectChecks(const UIAbstraction::UIElement *element);

    /// An element `check` for each kind.
    void writeXml(QXmlStreamWriter *writer) const;
    /// The same for a person.
    QString structuredDump() const;

private:
    /// Ids of elements, with the names of the properties.
    using List = std::vector<std::pair<QString, std::vector<QString>>>;

    void collectChecksInternal(const UIAbstraction::UIElement *element, bool noScreenshot);
    void collectIdentifyingChecks(const UIAbstraction::UIElement *element, const Class *type);
    void collectContentChecks(const UIAbstraction::UIElement *element, const Class *type);
    void collectGeometryChecks(const UIAbstraction::UIElement *element);
    void collectScreenshotChecks(const UIAbstraction::UIElement *element);

    TitanSelectionDefaultsBase<const Class *, ClassMapping> *m_defaults;
    List m_identifying;
    List m_content;
    List m_geometry;
    List m_screenshots;
};

} // namespace Morvex
