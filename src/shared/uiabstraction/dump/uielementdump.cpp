#include "shared/uiabstraction/uielement.h"

#include "shared/uiabstraction/dump/dumplimits.h"
#include "shared/uiabstraction/dump/elementreader.h"

#include <QDataStream>

// The part of UIElement that writes and reads dumps.

namespace Morvex::UIAbstraction {
namespace {

// The keys of a hash come in another order in each process; a dump is the same in all.
void writeProperties(QDataStream *stream, const QHash<QString, QString> &properties)
{
    QStringList names = properties.keys();
    names.sort();
    *stream << static_cast<quint32>(names.size());
    for (const QString &name : qAsConst(names))
        *stream << name << properties.value(name);
}

void writeUsage(QDataStream *stream, const QMap<UIEvent, int> &usage)
{
    *stream << usage.size();
    for (auto entry = usage.begin(); entry != usage.end(); ++entry) {
        entry.key().serialize(stream);
        *stream << entry.value();
    }
}

} // namespace

void UIElement::serialize(QDataStream *stream) const
{
    serializeLevel(stream, 1);
}

void UIElement::serializeLevel(QDataStream *stream, int level) const
{
    *stream << m_id;
    m_standardType.serialize(stream);
    *stream << m_concreteType << m_simplifiedType << m_nameSpace;
    *stream << m_superTypes.size();
    for (const QString &superType : m_superTypes)
        *stream << superType;
    *stream << m_isTransparentNode << m_isSubgraphTransparent << m_isWindowNode;
    *stream << m_text;
    m_geometry.serialize(stream);
    *stream << m_image;
    *stream << m_realName << m_symbolicName;
    writeProperties(stream, m_concreteProperties);
    writeProperties(stream, m_identifyingProperties);
    writeUsage(stream, m_usage);
    serializeChildren(stream, level);
}

void UIElement::serializeChildren(QDataStream *stream, int level) const
{
    if (level >= maxElementLevels && !m_children.isEmpty()) {
        warnOfDeepElements();
        *stream << 0;
        return;
    }
    *stream << m_children.size();
    for (const UIElement *child : m_children)
        child->serializeLevel(stream, level + 1);
}

UIElement *UIElement::deserialize(QDataStream *stream)
{
    return ElementReader(stream).readElement();
}

QList<UIElement *> UIElement::elementsFromByteArray(const QByteArray &dump)
{
    QDataStream stream(dump);
    stream.setVersion(dumpStreamVersion);
    return ElementReader(&stream).readList();
}

QByteArray UIElement::toByteArray(const QList<UIElement *> &elements)
{
    QByteArray dump;
    QDataStream stream(&dump, QIODevice::WriteOnly);
    stream.setVersion(dumpStreamVersion);
    stream << elements.size();
    for (const UIElement *element : elements)
        element->serialize(&stream);
    return dump;
}

} // namespace Morvex::UIAbstraction
