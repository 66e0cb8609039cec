#include "qtbackend/objectindex.h"

#include "qtbackend/objecttree.h"
#include "qtbackend/qtmodel.h"

namespace Morvex {
namespace {

bool isExact(const NameCondition &condition)
{
    return condition.value.kind == ObjectName::PropertyValue::EXACT;
}

bool isType(const NameCondition &condition)
{
    return condition.property == QLatin1String("type");
}

// Empty when the name leaves it open.
QString typeOf(const NameConditions &conditions)
{
    for (const NameCondition &condition : conditions) {
        if (isType(condition) && isExact(condition))
            return condition.value.text;
    }
    return {};
}

template <typename Objects>
const Objects *objectsOf(const QHash<QString, Objects> &objects, const QString &key)
{
    static const Objects none;
    const auto found = objects.constFind(key);
    return found != objects.cend() ? &*found : &none;
}

// A component has the name of what it derives from when it only adds properties to that.
void appendOnce(std::vector<QPointer<QObject>> *objects, QObject *object)
{
    if (objects->empty() || objects->back() != object)
        objects->emplace_back(object);
}

} // namespace

ObjectIndex::ObjectIndex(QtModel &model)
    : m_model(model)
{
    for (QObject *object : model.allObjects()) {
        m_byType[QString()].emplace_back(object);
        for (auto *type = object->metaObject(); type; type = type->superClass())
            addType(type, object);
    }
}

void ObjectIndex::addType(const QMetaObject *type, QObject *object)
{
    const QString className = QString::fromLatin1(type->className());
    appendOnce(&m_byType[className], object);
    const QString typeName = typeNameOf(type);
    if (typeName != className)
        appendOnce(&m_byType[typeName], object);
}

std::vector<QObject *> ObjectIndex::candidates(const NameConditions &conditions)
{
    const QString type = typeOf(conditions);
    const Objects *fewest = objectsOf(m_byType, type);
    for (const NameCondition &condition : conditions) {
        if (fewest->size() <= 1)
            break;
        if (!isExact(condition) || isType(condition))
            continue;
        const Objects *objects = objectsOf(objectsByText(type, condition), condition.value.text);
        if (objects->size() < fewest->size())
            fewest = objects;
    }
    std::vector<QObject *> alive;
    for (const QPointer<QObject> &object : *fewest) {
        if (object)
            alive.push_back(object);
    }
    return alive;
}

const ObjectIndex::ObjectsByText &ObjectIndex::objectsByText(const QString &type,
                                                             const NameCondition &condition)
{
    const QPair<QString, QString> key(type, condition.property);
    const auto known = m_byText.constFind(key);
    if (known != m_byText.cend())
        return *known;
    ObjectsByText objects;
    for (const QPointer<QObject> &object : *objectsOf(m_byType, type)) {
        QString text;
        if (object && condition.readText(m_model, object, &text))
            objects[text].push_back(object);
    }
    return *m_byText.insert(key, objects);
}

} // namespace Morvex
