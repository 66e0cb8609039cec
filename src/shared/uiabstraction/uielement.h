#pragma once

#include "morvex_export.h"
#include "shared/uiabstraction/elementgeometry.h"
#include "shared/uiabstraction/standardtype.h"
#include "shared/uiabstraction/uievent.h"

#include <QHash>
#include <QImage>
#include <QList>
#include <QMap>
#include <QObject>
#include <QStringList>

namespace Morvex::UIAbstraction {

/// How many levels of elements a dump or its XML has. Readers and writers call themselves for each
/// level; they leave out what is deeper, with a warning.
const int maxElementLevels = 240;

/// An element of a user interface, with what is below it. Owns its children.
class MORVEX_EXPORT UIElement : public QObject
{
    Q_OBJECT

public:
    /// An empty @p id is replaced by a new UUID.
    UIElement(const QString &id, const StandardType &type, const QString &concreteType);
    /// Takes the element off its parent.
    ~UIElement() override;

    /// Stands for none.
    static QString unknownConcreteType();

    QString id() const { return m_id; }
    /// Empty without a parent.
    QString parentId() const;
    UIElement *parentElement() const { return m_parent; }
    bool hasParent() const { return m_parent != nullptr; }
    bool isTopLevelElement() const { return m_parent == nullptr; }

    QString text() const { return m_text; }
    void setText(const QString &text);
    StandardType standardType() const { return m_standardType; }
    void setStandardType(const StandardType &type);
    /// The class of the toolkit.
    QString concreteType() const { return m_concreteType; }
    QString simplifiedType() const { return m_simplifiedType; }
    void setSimplifiedType(const QString &type) { m_simplifiedType = type; }
    QString nameSpace() const { return m_nameSpace; }
    void setNameSpace(const QString &nameSpace) { m_nameSpace = nameSpace; }
    QStringList superTypes() const { return m_superTypes; }
    void setSuperTypes(const QStringList &types) { m_superTypes = types; }
    QString realName() const { return m_realName; }
    void setRealName(const QString &name) { m_realName = name; }
    QString symbolicName() const { return m_symbolicName; }
    void setSymbolicName(const QString &name) { m_symbolicName = name; }
    ElementGeometry geometry() const { return m_geometry; }
    void setGeometry(const ElementGeometry &geometry);
    QImage image() const { return m_image; }
    bool isImageSet() const { return !m_image.isNull(); }
    void setImage(const QImage &image);
    bool isWindowNode() const { return m_isWindowNode; }
    void setWindowNode(bool isWindowNode);
    /// Exports show the children in place of a transparent node.
    bool isTransparentNode() const { return m_isTransparentNode; }
    void setTransparentNode(bool isTransparent);
    /// Exports show the element and nothing below it.
    bool isSubgraphTransparent() const { return m_isSubgraphTransparent; }
    void setSubgraphTransparent(bool isTransparent);

    QHash<QString, QString> identifyingProperties() const { return m_identifyingProperties; }
    void setIdentifyingProperty(const QString &name, const QString &value);
    QHash<QString, QString> concreteProperties() const { return m_concreteProperties; }
    void setConcreteProperty(const QString &name, const QString &value);

    QList<UIElement *> children() const { return m_children; }
    /// Takes @p child over, from another parent too. A child that is here already is left alone.
    void addChild(UIElement *child);
    /// Gives the child to the caller; null when there is none.
    UIElement *takeFirstChild();
    /// Sets the link upwards alone: addChild is what gives an element to another.
    void setParent(UIElement *parent) { m_parent = parent; }
    /// The first direct child of that text and, when @p type is known, that type; null for none.
    UIElement *childByText(const QString &text, const StandardType &type) const;
    /// The first child of the parent of that type, which may be this element; null for none.
    UIElement *siblingElement(const QString &concreteType) const;

    /// Makes the event known, with a usage of 0. Only known events are counted.
    void registerEvent(const UIEvent &event);
    bool isEventRegistered(const UIEvent &event) const { return m_usage.contains(event); }
    /// 0 for an event that is not known.
    int usage(const UIEvent &event) const { return m_usage.value(event); }
    QMap<UIEvent, int> usageMap() const { return m_usage; }
    /// A warning, and nothing else, for an event that is not known.
    void setUsage(const UIEvent &event, int usage);
    void addUsage(const UIEvent &event);
    void addUsageForChildElements(const UIEvent &event);
    /// For this element and all below whose rectangles, as they are stored, hold @p point.
    void addUsageForChildAt(const UIEvent &event, const QPoint &point);

    /// Whether both trees are the same in types, flags, texts and geometry; ids, properties,
    /// images, names and usage don't matter. False for null.
    bool isSimilarTo(const UIElement *other, bool recursive) const;

    void serialize(QDataStream *stream) const;
    /// What comes from outside: counts and pictures are checked. When the stream ends early, the
    /// element in which it ends is the last one. Never null; the caller owns it.
    static UIElement *deserialize(QDataStream *stream);
    /// The elements of a whole dump; the caller owns them.
    static QList<UIElement *> elementsFromByteArray(const QByteArray &dump);
    /// A whole dump of the elements.
    static QByteArray toByteArray(const QList<UIElement *> &elements);

Q_SIGNALS:
    void textChanged(Morvex::UIAbstraction::UIElement *element, const QString &text);
    void standardTypeChanged(Morvex::UIAbstraction::UIElement *element,
                             const Morvex::UIAbstraction::StandardType &type);
    void geometryChanged(Morvex::UIAbstraction::UIElement *element,
                         const Morvex::UIAbstraction::ElementGeometry &geometry);
    void imageChanged(Morvex::UIAbstraction::UIElement *element, const QImage &image);
    void windowNodeChanged(Morvex::UIAbstraction::UIElement *element, bool isWindowNode);
    void transparentNodeChanged(Morvex::UIAbstraction::UIElement *element, bool isTransparent);
    void subgraphTransparentChanged(Morvex::UIAbstraction::UIElement *element, bool isTransparent);
    void childAdded(Morvex::UIAbstraction::UIElement *parent,
                    Morvex::UIAbstraction::UIElement *child);
    void eventRegistered(Morvex::UIAbstraction::UIElement *element,
                         const Morvex::UIAbstraction::UIEvent &event);
    void usageIncreased(Morvex::UIAbstraction::UIElement *element,
                        const Morvex::UIAbstraction::UIEvent &event, int usage);

private:
    friend class ElementReader;

    bool hasSameFields(const UIElement &other) const;
    void serializeLevel(QDataStream *stream, int level) const;
    void serializeChildren(QDataStream *stream, int level) const;
    void removeChild(UIElement *child);

    QString m_id;
    StandardType m_standardType;
    QString m_concreteType;
    QString m_simplifiedType;
    QString m_nameSpace;
    QStringList m_superTypes;
    bool m_isTransparentNode = false;
    bool m_isSubgraphTransparent = false;
    bool m_isWindowNode = false;
    QString m_text;
    ElementGeometry m_geometry;
    QImage m_image;
    QString m_realName;
    QString m_symbolicName;
    QHash<QString, QString> m_concreteProperties;
    QHash<QString, QString> m_identifyingProperties;
    QMap<UIEvent, int> m_usage;
    UIElement *m_parent = nullptr;
    QList<UIElement *> m_children;
};

} // namespace Morvex::UIAbstraction
