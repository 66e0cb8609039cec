#include "shared/uiabstraction/elementstore.h"

#include "shared/uiabstraction/uielement.h"

#include <QSet>

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
    if (!element)
        return;
    m_elements += element;
    Q_EMIT elementAdded(element);
}

void ElementStore::clearAndDeleteElements()
{
    // One that was added twice is there twice.
    const QList<UIElement *> elements = topLevelElements();
    const QSet<UIElement *> topLevel(elements.begin(), elements.end());
    m_elements.clear();
    qDeleteAll(topLevel);
}

} // namespace Morvex::UIAbstraction
