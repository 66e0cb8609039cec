#include "qtbackend/elementdump.h"

#include "objectmodel/value/valueobject.h"
#include "qtbackend/creationorder.h"
#include "qtbackend/elementfilter.h"
#include "qtbackend/identification.h"
#include "qtbackend/nameresolver.h"
#include "qtbackend/pictures.h"
#include "qtbackend/qtmodel.h"
#include "qtbackend/shownproperties.h"
#include "qtbackend/standardtypes.h"
#include "shared/uiabstraction/uielement.h"

#include <QAction>
#include <QMenu>
#include <QMenuBar>

#include <map>
#include <memory>

namespace Morvex {
namespace {

using UIAbstraction::ElementGeometry;
using UIAbstraction::UIElement;

QStringList classNamesOf(const QObject *object)
{
    QStringList names;
    for (auto *type = object->metaObject(); type; type = type->superClass())
        names += QString::fromLatin1(type->className());
    return names;
}

QRect placeOf(const QAction *action, const QWidget *parent)
{
    if (const auto *menu = qobject_cast<const QMenu *>(parent))
        return menu->actionGeometry(const_cast<QAction *>(action));
    const auto *bar = qobject_cast<const QMenuBar *>(parent);
    return bar ? bar->actionGeometry(const_cast<QAction *>(action)) : QRect();
}

QList<QAction *> menuItemsOf(const QWidget *widget)
{
    const bool isMenu =
        qobject_cast<const QMenu *>(widget) || qobject_cast<const QMenuBar *>(widget);
    QList<QAction *> items;
    const QList<QAction *> actions = isMenu ? widget->actions() : QList<QAction *>();
    for (QAction *action : actions) {
        if (action->isVisible() && !action->isSeparator())
            items += action;
    }
    return items;
}

// A widget that is raised keeps its place.
QList<QWidget *> shownChildrenOf(const QWidget *widget)
{
    QList<QWidget *> shown;
    for (QObject *object : inCreationOrder(widget->children())) {
        auto *child = qobject_cast<QWidget *>(object);
        if (child && child->isVisible() && !child->isWindow())
            shown += child;
    }
    return shown;
}

class TreeBuilder
{
public:
    TreeBuilder(QtModel &model, const ElementFilter &filter)
        : m_model(model)
        , m_filter(filter)
        , m_symbolicNames(NameResolver(model).symbolicNames())
    {
    }

    std::unique_ptr<UIElement> build(QWidget *root)
    {
        std::unique_ptr<UIElement> element = makeElement(root);
        element->setWindowNode(root->isWindow());
        element->setGeometry(ElementGeometry(QRect(QPoint(), root->size())));
        if (m_filter.wantsPicture())
            element->setImage(paintWidget(root));
        addChildren(element.get(), root, root);
        return element;
    }

private:
    // A property that some elements of a class show.
    struct ShownProperty
    {
        QString name;
        ElementRules::Role role;
        // Null for those that are not the model's.
        const Property *property;
    };

    struct ClassRules
    {
        QStringList superTypes;
        bool isTransparent;
        bool hidesSubtree;
        std::vector<ShownProperty> properties;
    };

    std::unique_ptr<UIElement> makeElement(QObject *object)
    {
        auto element = std::make_unique<UIElement>(
            QString::number(m_model.registry().idOf(object)), standardTypeOf(object),
            QString::fromLatin1(object->metaObject()->className()));
        element->setSimplifiedType(element->concreteType());
        element->setText(labelOf(object));
        element->setRealName(realNameOf(object));
        element->setSymbolicName(m_symbolicNames.value(object));
        const ClassRules &rules = rulesOf(object);
        element->setSuperTypes(rules.superTypes);
        addProperties(element.get(), object, rules);
        return element;
    }

    void addProperties(UIElement *element, QObject *object, const ClassRules &rules)
    {
        const SharedPtr<Object> self = m_model.wrap(object);
        for (const ShownProperty &shown : rules.properties) {
            const QString value = shown.property ? valueOf(*shown.property, object, self)
                                                 : shownProperty(object, shown.name);
            if (value.isNull())
                continue;
            if (shown.role & ElementRules::Content)
                element->setConcreteProperty(shown.name, value);
            if (shown.role & ElementRules::Identifying)
                element->setIdentifyingProperty(shown.name, value);
        }
    }

    // Null for what has no text.
    static QString valueOf(const Property &property, QObject *object, const SharedPtr<Object> &self)
    {
        const SharedPtr<Object> value = property.get(self);
        if (!value || (value->id() == 0 && !hasText(value->value())))
            return {};
        const QString text = textForReaders(object, property.name(), value->valueText());
        return text.isNull() ? QStringLiteral("") : text;
    }

    // @p reference is the widget of the element above, which a transparent one has none of.
    void addChildren(UIElement *parent, QWidget *widget, const QWidget *reference)
    {
        for (QAction *item : menuItemsOf(widget)) {
            std::unique_ptr<UIElement> element = makeElement(item);
            const QRect place = placeOf(item, widget);
            element->setGeometry(ElementGeometry(
                QRect(widget->mapTo(reference, place.topLeft()), place.size()), true));
            parent->addChild(element.release());
        }
        for (QWidget *child : shownChildrenOf(widget))
            isViewport(child) ? addChildren(parent, child, reference)
                              : addChild(parent, child, reference);
    }

    void addChild(UIElement *parent, QWidget *child, const QWidget *reference)
    {
        const ClassRules &rules = rulesOf(child);
        std::unique_ptr<UIElement> element = makeElement(child);
        element->setGeometry(
            ElementGeometry(QRect(child->mapTo(reference, QPoint()), child->size()), true));
        element->setTransparentNode(rules.isTransparent);
        element->setSubgraphTransparent(rules.hidesSubtree);
        if (!rules.hidesSubtree)
            addChildren(element.get(), child, rules.isTransparent ? reference : child);
        parent->addChild(element.release());
    }

    const ClassRules &rulesOf(const QObject *object)
    {
        const Class *type = m_model.classOf(object);
        auto known = m_rules.find(type);
        if (known == m_rules.end())
            known = m_rules.emplace(type, makeRules(*type, object)).first;
        return known->second;
    }

    ClassRules makeRules(const Class &type, const QObject *object) const
    {
        const QStringList classNames = classNamesOf(object);
        QStringList names = type.propertyNames() + shownPropertyNames(object);
        names.removeDuplicates();
        const ElementRules rules = m_filter.rulesFor(classNames, names);
        ClassRules result{classNames.mid(1), rules.isTransparent, rules.hidesSubtree, {}};
        const QStringList shown = shownPropertyNames(object);
        for (const QString &name : qAsConst(names)) {
            const ElementRules::Role role = rules.roles.value(name, ElementRules::None);
            if (role != ElementRules::None) {
                result.properties.push_back(
                    {name, role, shown.contains(name) ? nullptr : type.property(name)});
            }
        }
        return result;
    }

    QtModel &m_model;
    const ElementFilter &m_filter;
    QHash<const QObject *, QString> m_symbolicNames;
    std::map<const Class *, ClassRules> m_rules;
};

} // namespace

QByteArray dumpElements(QtModel &model, QObject *object, const ElementFilter &filter)
{
    const std::unique_ptr<UIElement> root =
        TreeBuilder(model, filter).build(static_cast<QWidget *>(object));
    return UIElement::toByteArray({root.get()});
}

} // namespace Morvex
