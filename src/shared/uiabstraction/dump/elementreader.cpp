#include "shared/uiabstraction/dump/elementreader.h"

#include "shared/uiabstraction/dump/dumplimits.h"

#include <QDataStream>

#include <vector>

namespace Morvex::UIAbstraction {

void warnOfDeepElements()
{
    qWarning("Elements more than %d levels deep are left out.", maxElementLevels);
}

ElementReader::ElementReader(QDataStream *stream)
    : m_stream(stream)
    , m_pictures(stream)
{
}

// A stream goes on reading after some failures, at a place that means nothing.
template <typename Value>
Value ElementReader::read()
{
    Value value = Value();
    if (isGood())
        *m_stream >> value;
    return isGood() ? value : Value();
}

UIElement *ElementReader::readElement()
{
    return readLevel(1).release();
}

QList<UIElement *> ElementReader::readList()
{
    QList<UIElement *> elements;
    const int count = read<int>();
    for (int i = 0; i < count && isGood(); ++i)
        elements += readElement();
    return elements;
}

std::unique_ptr<UIElement> ElementReader::readLevel(int level)
{
    std::unique_ptr<UIElement> element = readFields();
    readChildren(element.get(), level);
    return element;
}

std::unique_ptr<UIElement> ElementReader::readFields()
{
    const auto id = read<QString>();
    const auto typeName = read<QString>();
    const StandardType type = typeName.isNull() ? StandardType() : StandardType(typeName);
    auto element = std::make_unique<UIElement>(id, type, read<QString>());
    element->m_simplifiedType = read<QString>();
    element->m_nameSpace = read<QString>();
    element->m_superTypes = readTexts();
    element->m_isTransparentNode = read<bool>();
    element->m_isSubgraphTransparent = read<bool>();
    element->m_isWindowNode = read<bool>();
    element->m_text = read<QString>();
    const auto rect = read<QRect>();
    element->m_geometry = ElementGeometry(rect, read<bool>());
    element->m_image = m_pictures.read();
    element->m_realName = read<QString>();
    element->m_symbolicName = read<QString>();
    element->m_concreteProperties = readProperties();
    element->m_identifyingProperties = readProperties();
    element->m_usage = readUsage();
    return element;
}

void ElementReader::readChildren(UIElement *parent, int level)
{
    const int count = read<int>();
    if (count > 0 && level >= maxElementLevels) {
        warnOfDeepElements();
        skipElements(count);
        return;
    }
    for (int i = 0; i < count && isGood(); ++i)
        parent->addChild(readLevel(level + 1).release());
}

// What is after them in the stream is of use. Without a call for each level: there may be any
// number.
void ElementReader::skipElements(qint64 count)
{
    std::vector<qint64> remaining{count};
    while (!remaining.empty() && isGood()) {
        if (remaining.back()-- <= 0) {
            remaining.pop_back();
            continue;
        }
        readFields();
        remaining.push_back(read<int>());
    }
}

QStringList ElementReader::readTexts()
{
    QStringList texts;
    const int count = read<int>();
    for (int i = 0; i < count && isGood(); ++i)
        texts += read<QString>();
    return texts;
}

QHash<QString, QString> ElementReader::readProperties()
{
    QHash<QString, QString> properties;
    const auto count = read<quint32>();
    for (quint32 i = 0; i < count && isGood(); ++i) {
        const auto name = read<QString>();
        const auto value = read<QString>();
        if (isGood())
            properties.insert(name, value);
    }
    return properties;
}

QMap<UIEvent, int> ElementReader::readUsage()
{
    QMap<UIEvent, int> usage;
    const int count = read<int>();
    for (int i = 0; i < count && isGood(); ++i) {
        const UIEvent event(read<QString>());
        const int value = read<int>();
        if (isGood())
            usage.insert(event, value);
    }
    return usage;
}

} // namespace Morvex::UIAbstraction
