#include "shared/uiabstraction/uielement.h"

#include <QUuid>

#include <algorithm>

namespace Morvex::UIAbstraction {

UIElement::UIElement(const QString &id, const StandardType &type, const QString &concreteType)
    : m_id(id.isEmpty() ? QUuid::createUuid().toString() : id)
    , m_standardType(type)
    , m_concreteType(concreteType)
{
}

UIElement::~UIElement()
{
    if (m_parent)
        m_parent->removeChild(this);
    // One after another: a deep tree would overrun the stack.
    QList<UIElement *> pending;
    pending.swap(m_children);
    while (!pending.isEmpty()) {
        UIElement *element = pending.takeLast();
        pending += element->m_children;
        element->m_children.clear();
        element->m_parent = nullptr;
        delete element;
    }
}

QString UIElement::unknownConcreteType()
{
    return QStringLiteral("unknown");
}

QString UIElement::parentId() const
{
    return m_parent ? m_parent->id() : QString();
}

void UIElement::setText(const QString &text)
{
    m_text = text;
    Q_EMIT textChanged(this, text);
}

void UIElement::setStandardType(const StandardType &type)
{
    m_standardType = type;
    Q_EMIT standardTypeChanged(this, type);
}

void UIElement::setGeometry(const ElementGeometry &geometry)
{
    m_geometry = geometry;
    Q_EMIT geometryChanged(this, geometry);
}

void UIElement::setImage(const QImage &image)
{
    m_image = image;
    Q_EMIT imageChanged(this, image);
}

void UIElement::setWindowNode(bool isWindowNode)
{
    m_isWindowNode = isWindowNode;
    Q_EMIT windowNodeChanged(this, isWindowNode);
}

void UIElement::setTransparentNode(bool isTransparent)
{
    m_isTransparentNode = isTransparent;
    Q_EMIT transparentNodeChanged(this, isTransparent);
}

void UIElement::setSubgraphTransparent(bool isTransparent)
{
    m_isSubgraphTransparent = isTransparent;
    Q_EMIT subgraphTransparentChanged(this, isTransparent);
}

void UIElement::setIdentifyingProperty(const QString &name, const QString &value)
{
    m_identifyingProperties.insert(name, value);
}

void UIElement::setConcreteProperty(const QString &name, const QString &value)
{
    m_concreteProperties.insert(name, value);
}

void UIElement::addChild(UIElement *child)
{
    // A child of this parent that is not in its list only knows its parent.
    if (!child || child == this || (child->m_parent == this && m_children.contains(child)))
        return;
    if (child->m_parent)
        child->m_parent->removeChild(child);
    m_children += child;
    child->setParent(this);
    Q_EMIT childAdded(this, child);
}

UIElement *UIElement::takeFirstChild()
{
    if (m_children.isEmpty())
        return nullptr;
    UIElement *child = m_children.takeFirst();
    child->setParent(nullptr);
    return child;
}

void UIElement::removeChild(UIElement *child)
{
    m_children.removeOne(child);
}

UIElement *UIElement::childByText(const QString &text, const StandardType &type) const
{
    const auto found =
        std::find_if(m_children.begin(), m_children.end(), [&](const UIElement *child) {
            return child->m_text == text && (!type.isKnown() || child->m_standardType == type);
        });
    return found == m_children.end() ? nullptr : *found;
}

UIElement *UIElement::siblingElement(const QString &concreteType) const
{
    if (!m_parent)
        return nullptr;
    const QList<UIElement *> &siblings = m_parent->m_children;
    const auto found =
        std::find_if(siblings.begin(), siblings.end(), [&](const UIElement *sibling) {
            return sibling->m_concreteType == concreteType;
        });
    return found == siblings.end() ? nullptr : *found;
}

void UIElement::registerEvent(const UIEvent &event)
{
    if (isEventRegistered(event))
        return;
    m_usage.insert(event, 0);
    Q_EMIT eventRegistered(this, event);
}

void UIElement::setUsage(const UIEvent &event, int usage)
{
    const auto entry = m_usage.find(event);
    if (entry == m_usage.end()) {
        qWarning("Unregistered event occured on { standardType='%s', concreteType='%s', "
                 "text='%s' }: '%s'",
                 qUtf8Printable(m_standardType.toString()), qUtf8Printable(m_concreteType),
                 qUtf8Printable(m_text), qUtf8Printable(event.name()));
        return;
    }
    *entry = usage;
    Q_EMIT usageIncreased(this, event, usage);
}

void UIElement::addUsage(const UIEvent &event)
{
    setUsage(event, saturated(qint64(usage(event)) + 1));
}

void UIElement::addUsageForChildElements(const UIEvent &event)
{
    for (UIElement *child : qAsConst(m_children))
        child->addUsage(event);
}

void UIElement::addUsageForChildAt(const UIEvent &event, const QPoint &point)
{
    if (m_geometry.rect().contains(point))
        addUsage(event);
    for (UIElement *child : qAsConst(m_children))
        child->addUsageForChildAt(event, point);
}

bool UIElement::hasSameFields(const UIElement &other) const
{
    return m_standardType == other.m_standardType && m_concreteType == other.m_concreteType &&
           m_simplifiedType == other.m_simplifiedType && m_nameSpace == other.m_nameSpace &&
           m_isTransparentNode == other.m_isTransparentNode &&
           m_isSubgraphTransparent == other.m_isSubgraphTransparent &&
           m_isWindowNode == other.m_isWindowNode && m_text == other.m_text &&
           m_geometry == other.m_geometry && m_children.size() == other.m_children.size();
}

bool UIElement::isSimilarTo(const UIElement *other, bool recursive) const
{
    if (this == other)
        return true;
    if (!other || !hasSameFields(*other))
        return false;
    return !recursive || std::equal(m_children.begin(), m_children.end(), other->m_children.begin(),
                                    [](const UIElement *child, const UIElement *otherChild) {
                                        return child->isSimilarTo(otherChild, true);
                                    });
}

} // namespace Morvex::UIAbstraction
