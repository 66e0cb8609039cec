#include "shared/uiabstraction/elementstore.h"

#include "shared/uiabstraction/uielement.h"

#include <algorithm>

namespace Morvex::UIAbstraction {

bool ElementStore::contains(UIElement *element) const
{
    return m_elements.contains(element);
}

bool ElementStore::contains(const QString &id) const
{
    return elementById(id) != nullptr;
}

UIElement *ElementStore::elementById(const QString &id) const
{
    const auto found =
        std::find_if(m_elements.begin(), m_elements.end(),
                     [&id](const UIElement *element) { return element->id() == id; });
    return found == m_elements.end() ? nullptr : *found;
}

QList<UIElement *> ElementStore::topLevelElements() const
{
    QList<UIElement *> topLevel;
    for (UIElement *element : m_elements) {
        if (element->isTopLevelElement())
            topLevel += element;
    }
    return topLevel;
}

void ElementStore::addElement(UIElement *element)
{
    m_elements += element;
    Q_EMIT elementAdded(element);
}

void ElementStore::clearAndDeleteElements()
{
    const QList<UIElement *> topLevel = topLevelElements();
    m_elements.clear();
    qDeleteAll(topLevel);
}

} // namespace Morvex::UIAbstraction
