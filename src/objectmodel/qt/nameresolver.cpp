#include "objectmodel/qt/nameresolver.h"

#include "objectmodel/objectmap.h"
#include "objectmodel/qt/qtmodel.h"

#include <QAction>
#include <QRegularExpression>
#include <QStringList>
#include <QVariant>
#include <QWidget>

#include <algorithm>

namespace Morvex {
namespace {

const int shownObjects = 5;

QRegularExpression expressionOf(const ObjectName::PropertyValue &value)
{
    const bool isWildcard = value.kind == ObjectName::PropertyValue::WILDCARD;
    QString pattern = value.text;
    if (isWildcard) {
        pattern = QRegularExpression::escape(pattern);
        pattern.replace(QLatin1String("\\*"), QLatin1String(".*"));
        pattern.replace(QLatin1String("\\?"), QLatin1String("."));
    }
    return QRegularExpression(QRegularExpression::anchoredPattern(pattern),
                              QRegularExpression::DotMatchesEverythingOption);
}

bool isReference(const QString &property, const ObjectName::PropertyValue &value)
{
    if (value.kind == ObjectName::PropertyValue::REFERENCE)
        return true;
    const bool isRelation = property == QLatin1String("parent") ||
                            property == QLatin1String("container") ||
                            property == QLatin1String("window");
    return isRelation && value.kind == ObjectName::PropertyValue::EXACT;
}

bool isAncestor(const QObject *ancestor, const QObject *object)
{
    const QObject *parent = object->parent();
    while (parent && parent != ancestor)
        parent = parent->parent();
    return parent;
}

const QObject *windowOf(const QObject *object)
{
    while (object && !object->isWidgetType())
        object = object->parent();
    return object ? static_cast<const QWidget *>(object)->window() : nullptr;
}

QStringList classNames(const QObject *object)
{
    QStringList names;
    for (auto *metaObject = object->metaObject(); metaObject; metaObject = metaObject->superClass())
        names += QString::fromLatin1(metaObject->className());
    return names;
}

QString listOf(const std::vector<QObject *> &objects)
{
    QStringList names;
    for (const QObject *object : objects) {
        if (names.size() == shownObjects) {
            names += QStringLiteral("and %1 more").arg(int(objects.size()) - shownObjects);
            break;
        }
        names += realNameOf(object);
    }
    return names.join(QLatin1String(", "));
}

} // namespace

struct NameResolver::Condition
{
    QString property;
    ObjectName::PropertyValue value;
    QRegularExpression expression;
    const QObject *referenced = nullptr;

    bool matches(const QString &text) const
    {
        return value.kind == ObjectName::PropertyValue::EXACT ? text == value.text
                                                              : expression.match(text).hasMatch();
    }
};

NameResolver::NameResolver(QtModel &model)
    : m_model(model)
{
}

QObject *NameResolver::find(const QString &name, QString *error)
{
    if (ObjectName::isSymbolicName(name))
        return findSymbolic(name, error);
    const ObjectName objectName(name);
    if (!objectName.isValid()) {
        *error = QStringLiteral("%1 is no name of an object: %2.").arg(name, objectName.error());
        return nullptr;
    }
    if (objectName.isMultiProperty())
        return find(objectName, error);
    return find(ObjectName({{QStringLiteral("name"), {ObjectName::PropertyValue::EXACT, name}}}),
                error);
}

QObject *NameResolver::findSymbolic(const QString &name, QString *error)
{
    const ObjectMap *map = ObjectMap::self();
    if (!map || !map->names().contains(name)) {
        *error = map ? QStringLiteral("The object map has no name '%1'.").arg(name)
                     : QStringLiteral("There is no object map for '%1'.").arg(name);
        return nullptr;
    }
    if (m_pending.contains(name)) {
        *error = QStringLiteral("'%1' refers to itself.").arg(name);
        return nullptr;
    }
    m_pending += name;
    QObject *object = find(map->names().value(name).qualifiedName(), error);
    m_pending.removeLast();
    return object;
}

QObject *NameResolver::find(const ObjectName &name, QString *error)
{
    Conditions conditions;
    if (!makeConditions(name, &conditions, error))
        return nullptr;
    std::vector<QObject *> found;
    for (QObject *object : m_model.allObjects()) {
        if (std::all_of(conditions.begin(), conditions.end(),
                        [&](const Condition &condition) { return holds(condition, object); }))
            found.push_back(object);
    }
    const auto occurrence = name.properties().constFind(QStringLiteral("occurrence"));
    if (occurrence != name.properties().constEnd()) {
        const int number = name.properties().value(QStringLiteral("occurrence")).text.toInt();
        if (number >= 1 && number <= int(found.size()))
            return found[static_cast<std::size_t>(number - 1)];
        *error = QStringLiteral("There are %1 objects like %2, none of which is number %3.")
                     .arg(int(found.size()))
                     .arg(name.qualifiedName())
                     .arg(number);
        return nullptr;
    }
    if (found.size() == 1)
        return found.front();
    *error = found.empty() ? describeMissing(name, conditions)
                           : QStringLiteral("%1 fits %2 objects: %3.")
                                 .arg(name.qualifiedName())
                                 .arg(int(found.size()))
                                 .arg(listOf(found));
    return nullptr;
}

bool NameResolver::makeConditions(const ObjectName &name, Conditions *conditions, QString *error)
{
    const auto properties = name.properties();
    for (auto it = properties.begin(); it != properties.end(); ++it) {
        if (it.key() == QLatin1String("occurrence"))
            continue;
        Condition condition;
        condition.property = it.key();
        condition.value = it.value();
        if (isReference(it.key(), it.value())) {
            QString reason;
            condition.value.kind = ObjectName::PropertyValue::REFERENCE;
            condition.referenced = find(it.value().text, &reason);
            if (!condition.referenced) {
                *error = QStringLiteral("The %1 of %2 is not there. %3")
                             .arg(it.key(), name.qualifiedName(), reason);
                return false;
            }
        } else if (it.value().kind != ObjectName::PropertyValue::EXACT) {
            condition.expression = expressionOf(it.value());
            if (!condition.expression.isValid()) {
                *error = QStringLiteral("'%1' is no regular expression: %2.")
                             .arg(it.value().text, condition.expression.errorString());
                return false;
            }
        }
        conditions->push_back(condition);
    }
    return true;
}

bool NameResolver::holds(const Condition &condition, QObject *object)
{
    if (condition.value.kind == ObjectName::PropertyValue::REFERENCE) {
        if (condition.property == QLatin1String("container"))
            return isAncestor(condition.referenced, object);
        if (condition.property == QLatin1String("window"))
            return windowOf(object) == condition.referenced;
        if (condition.property == QLatin1String("parent"))
            return object->parent() == condition.referenced;
        const SharedPtr<Object> self = m_model.wrap(object);
        const Property *property = self->objectClass()->property(condition.property);
        const SharedPtr<Object> value = property ? property->get(self) : SharedPtr<Object>();
        return value && m_model.unwrap(*value) == condition.referenced;
    }
    if (condition.property == QLatin1String("type")) {
        const QStringList names = classNames(object);
        return std::any_of(names.begin(), names.end(),
                           [&](const QString &name) { return condition.matches(name); });
    }
    bool exists = false;
    const QString text = actualText(condition.property, object, &exists);
    return exists && condition.matches(text);
}

QString NameResolver::actualText(const QString &property, QObject *object, bool *exists)
{
    *exists = true;
    if (property == QLatin1String("name"))
        return object->objectName();
    if (property == QLatin1String("type"))
        return QString::fromLatin1(object->metaObject()->className());
    SharedPtr<Object> value = m_model.wrap(object);
    for (const QString &step : property.split(QLatin1Char('.'), Qt::SkipEmptyParts)) {
        const Class *valueClass = value ? value->objectClass() : nullptr;
        const Property *found = valueClass ? valueClass->property(step) : nullptr;
        value = found ? found->get(value) : SharedPtr<Object>();
    }
    *exists = bool(value);
    return value ? value->valueText() : QString();
}

// The objects that come closest, with what is different in them.
QString NameResolver::describeMissing(const ObjectName &name, const Conditions &conditions)
{
    std::vector<QObject *> closest;
    std::ptrdiff_t best = 1;
    for (QObject *object : m_model.allObjects()) {
        const auto matched =
            std::count_if(conditions.begin(), conditions.end(),
                          [&](const Condition &condition) { return holds(condition, object); });
        if (matched > best)
            closest.clear();
        if (matched >= best)
            closest.push_back(object);
        best = std::max(best, matched);
    }
    QString text = QStringLiteral("There is no object %1.").arg(name.qualifiedName());
    if (closest.empty())
        return text;
    QStringList differences;
    for (QObject *object : closest) {
        if (differences.size() == shownObjects) {
            differences += QStringLiteral("and %1 more").arg(int(closest.size()) - shownObjects);
            break;
        }
        differences += describeDifference(conditions, object);
    }
    return text + QLatin1String(" Closest: ") + differences.join(QLatin1String("; ")) +
           QLatin1Char('.');
}

QString NameResolver::describeDifference(const Conditions &conditions, QObject *object)
{
    QStringList differences;
    for (const Condition &condition : conditions) {
        if (holds(condition, object))
            continue;
        bool exists = true;
        const QString text =
            condition.referenced ? QString() : actualText(condition.property, object, &exists);
        if (condition.referenced)
            differences += QStringLiteral("another %1").arg(condition.property);
        else if (exists)
            differences += QStringLiteral("%1 '%2'").arg(condition.property, text);
        else
            differences += QStringLiteral("no %1").arg(condition.property);
    }
    return realNameOf(object) + QLatin1String(" with ") + differences.join(QLatin1String(", "));
}

QString realNameOf(const QObject *object)
{
    QMap<QString, ObjectName::PropertyValue> properties;
    const auto add = [&properties](const char *name, const QString &text) {
        if (!text.isEmpty())
            properties.insert(QLatin1String(name), {ObjectName::PropertyValue::EXACT, text});
    };
    add("name", object->objectName());
    add("type", QString::fromLatin1(object->metaObject()->className()));
    if (object->objectName().isEmpty()) {
        for (const char *name : {"text", "title", "windowTitle"})
            add(name, object->property(name).toString());
    }
    return ObjectName(properties).qualifiedName();
}

} // namespace Morvex
