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

// Whether objects of these classes are of the type that was asked for: there are far fewer classes
// than objects.
using KnownClasses = QHash<const QMetaObject *, bool>;

// A component has the name of what it derives from when it only adds properties to that.
bool isOfType(const QMetaObject *type, const QString &name, KnownClasses *known)
{
    if (!type)
        return false;
    const auto found = known->constFind(type);
    if (found != known->cend())
        return *found;
    const bool isOf = name == QLatin1String(type->className()) || name == typeNameOf(type) ||
                      isOfType(type->superClass(), name, known);
    known->insert(type, isOf);
    return isOf;
}

} // namespace

ObjectIndex::ObjectIndex(QtModel &model)
    : m_model(model)
{
    const auto objects = model.allObjects();
    m_objects.assign(objects.begin(), objects.end());
}

const ObjectIndex::Objects &ObjectIndex::objectsOf(const QString &type)
{
    if (type.isEmpty())
        return m_objects;
    const auto known = m_byType.constFind(type);
    if (known != m_byType.cend())
        return *known;
    Objects objects;
    KnownClasses classes;
    for (const QPointer<QObject> &object : m_objects) {
        if (object && isOfType(object->metaObject(), type, &classes))
            objects.push_back(object);
    }
    return *m_byType.insert(type, objects);
}

std::vector<QObject *> ObjectIndex::candidates(const NameConditions &conditions)
{
    const QString type = typeOf(conditions);
    const Objects *fewest = &objectsOf(type);
    for (const NameCondition &condition : conditions) {
        if (fewest->size() <= 1)
            break;
        if (!isExact(condition) || isType(condition))
            continue;
        static const Objects none;
        const ObjectsByText &byText = objectsByText(type, condition);
        const auto objects = byText.constFind(condition.comparedText(condition.value.text));
        if (objects == byText.cend())
            fewest = &none;
        else if (objects->size() < fewest->size())
            fewest = &*objects;
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
    // No property has a name with such a mark.
    const QString mark = condition.ignoresMnemonics ? QStringLiteral("&") : QString();
    const QPair<QString, QString> key(type, condition.property + mark);
    const auto known = m_byText.constFind(key);
    if (known != m_byText.cend())
        return *known;
    ObjectsByText objects;
    for (const QPointer<QObject> &object : objectsOf(type)) {
        QString text;
        if (object && condition.readText(m_model, object, &text))
            objects[condition.comparedText(text)].push_back(object);
    }
    return *m_byText.insert(key, objects);
}

} // namespace Morvex
