#include "qtbackend/nameresolver.h"

#include "objectmodel/objectmap.h"
#include "qtbackend/closestobjects.h"
#include "qtbackend/identification.h"
#include "qtbackend/objecttree.h"
#include "qtbackend/ownclass.h"
#include "qtbackend/qtmodel.h"
#include "qtbackend/toolbarextension.h"

#include <QGuiApplication>
#include <QMainWindow>
#include <QPointer>
#include <QWidget>

#include <algorithm>

namespace Morvex {
namespace {

const QLatin1String occurrenceKey("occurrence");

// Names within names and symbolic names together: more than any window needs, and few enough for
// the stack.
const int maxDepth = 200;

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
    return value.kind == ObjectName::PropertyValue::REFERENCE || ObjectName::isRelation(property);
}

// 0 when the name asks for none.
std::size_t occurrenceOf(const ObjectName &name)
{
    return name.properties().value(occurrenceKey).text.toUInt();
}

void report(QString *error, const QString &text)
{
    if (error)
        *error = text;
}

// Cheap to find out, and few objects have it.
bool isQuick(const NameCondition &condition)
{
    return !condition.isReference() && (condition.property == QLatin1String("name") ||
                                        condition.property == QLatin1String("type"));
}

bool holdAll(QtModel &model, NameConditions::const_iterator begin,
             NameConditions::const_iterator end, const QPointer<QObject> &object)
{
    return std::all_of(begin, end, [&](const NameCondition &condition) {
        return object && condition.holds(model, object);
    });
}

} // namespace

NameResolver::NameResolver(QtModel &model)
    : m_model(model)
{
}

QObject *NameResolver::find(const QString &text, QString *error)
{
    m_isAmbiguous = false;
    if (m_depth >= maxDepth) {
        report(error,
               QStringLiteral("Names refer to others more than %1 levels deep.").arg(maxDepth));
        return nullptr;
    }
    ++m_depth;
    const QString name = text.trimmed();
    QObject *object =
        ObjectName::isSymbolicName(name) ? findSymbolic(name, error) : findReal(name, error);
    --m_depth;
    return object;
}

QObject *NameResolver::findSymbolic(const QString &name, QString *error)
{
    if (QObject *known = m_found.value(name))
        return known;
    const ObjectMap *map = ObjectMap::self();
    if (!map || !map->contains(name)) {
        report(error, map ? QStringLiteral("The object map has no name '%1'.").arg(name)
                          : QStringLiteral("There is no object map for '%1'.").arg(name));
        return nullptr;
    }
    if (m_pending.contains(name)) {
        report(error, QStringLiteral("'%1' refers to itself.").arg(name));
        return nullptr;
    }
    m_pending += name;
    QObject *object = find(map->realName(name).qualifiedName(), error);
    m_pending.removeLast();
    if (object)
        m_found.insert(name, object);
    return object;
}

QObject *NameResolver::findReal(const QString &name, QString *error)
{
    const ObjectName objectName(name);
    if (!objectName.isValid()) {
        report(error,
               QStringLiteral("%1 is not a valid object name: %2.").arg(name, objectName.error()));
        return nullptr;
    }
    if (objectName.isMultiProperty())
        return find(objectName, error);
    return find(ObjectName({{QStringLiteral("name"), {ObjectName::PropertyValue::EXACT, name}}}),
                error);
}

QObject *NameResolver::find(const ObjectName &name, QString *error)
{
    NameConditions conditions;
    if (!makeConditions(name, &conditions, error))
        return nullptr;
    const std::vector<QObject *> found = usableObjects(conditions);
    const std::size_t occurrence = occurrenceOf(name);
    if (occurrence > 0 ? occurrence <= found.size() : found.size() == 1)
        return found[std::max<std::size_t>(occurrence, 1) - 1];
    m_isAmbiguous = occurrence == 0 && !found.empty();
    if (error)
        *error = describeFailure(name, conditions, found);
    return nullptr;
}

std::vector<QObject *> NameResolver::findAll(const QString &text, QString *error)
{
    const QString name = text.trimmed();
    if (ObjectName::isSymbolicName(name)) {
        const ObjectMap *map = ObjectMap::self();
        if (!map || !map->contains(name) || m_pending.contains(name)) {
            report(error, QStringLiteral("The object map has no name '%1'.").arg(name));
            return {};
        }
        m_pending += name;
        return findAll(map->realName(name).qualifiedName(), error);
    }
    ObjectName objectName(name);
    if (!objectName.isValid()) {
        report(error,
               QStringLiteral("%1 is not a valid object name: %2.").arg(name, objectName.error()));
        return {};
    }
    if (!objectName.isMultiProperty())
        objectName =
            ObjectName({{QStringLiteral("name"), {ObjectName::PropertyValue::EXACT, name}}});
    NameConditions conditions;
    return makeConditions(objectName, &conditions, error) ? usableObjects(conditions)
                                                          : std::vector<QObject *>();
}

// Some desktops give texts mnemonics of their own, others whenever something beside them changes.
std::vector<QObject *> NameResolver::usableObjects(NameConditions conditions)
{
    const std::vector<QObject *> found = fittingObjects(conditions);
    bool hasText = false;
    for (NameCondition &condition : conditions) {
        condition.ignoresMnemonics = condition.canIgnoreMnemonics();
        hasText = hasText || condition.ignoresMnemonics;
    }
    return found.empty() && hasText ? fittingObjects(conditions) : found;
}

std::vector<QObject *> NameResolver::fittingObjects(const NameConditions &conditions)
{
    const auto slow = std::find_if_not(conditions.begin(), conditions.end(), isQuick);
    std::vector<QPointer<QObject>> candidates;
    for (QObject *object : m_index ? m_index->candidates(conditions) : m_model.allObjects()) {
        if (holdAll(m_model, conditions.begin(), slow, object))
            candidates.emplace_back(object);
    }
    // To read a property calls the application, which may delete any object.
    candidates.erase(std::remove_if(candidates.begin(), candidates.end(),
                                    [&](const QPointer<QObject> &object) {
                                        return !holdAll(m_model, slow, conditions.end(), object);
                                    }),
                     candidates.end());
    std::vector<QObject *> found;
    for (const QPointer<QObject> &object : candidates) {
        if (object)
            found.push_back(object);
    }
    return found;
}

bool NameResolver::makeConditions(const ObjectName &name, NameConditions *conditions,
                                  QString *error)
{
    const auto properties = name.properties();
    for (auto it = properties.begin(); it != properties.end(); ++it) {
        if (it.key() == occurrenceKey)
            continue;
        NameCondition condition;
        condition.property = it.key();
        condition.value = it.value();
        if (isReference(it.key(), it.value())) {
            if (!makeReference(name, &condition, error))
                return false;
        } else if (it.value().kind != ObjectName::PropertyValue::EXACT) {
            condition.expression = expressionOf(it.value());
            if (!condition.expression.isValid()) {
                report(error, QStringLiteral("'%1' is not a valid regular expression: %2.")
                                  .arg(it.value().text, condition.expression.errorString()));
                return false;
            }
        }
        conditions->push_back(condition);
    }
    std::stable_partition(conditions->begin(), conditions->end(), isQuick);
    return true;
}

bool NameResolver::makeReference(const ObjectName &name, NameCondition *condition, QString *error)
{
    QString reason;
    condition->value.kind = ObjectName::PropertyValue::REFERENCE;
    condition->referenced = find(condition->value.text, error ? &reason : nullptr);
    if (condition->referenced)
        return true;
    report(error,
           QStringLiteral("The %1 of %2 is not %3. %4")
               .arg(condition->property, name.qualifiedName(),
                    m_isAmbiguous ? QLatin1String("clear") : QLatin1String("there"), reason));
    m_isAmbiguous = false;
    return false;
}

QString NameResolver::describeFailure(const ObjectName &name, const NameConditions &conditions,
                                      const std::vector<QObject *> &found)
{
    const std::size_t occurrence = occurrenceOf(name);
    if (occurrence > 0)
        return QStringLiteral("There are %1 objects like %2, none of which is number %3.")
            .arg(QString::number(found.size()), name.qualifiedName(), QString::number(occurrence));
    if (!found.empty())
        return QStringLiteral("%1 fits %2 objects: %3.")
            .arg(name.qualifiedName(), QString::number(found.size()), describeFitting(found));
    const QString text = QStringLiteral("There is no object %1.").arg(name.qualifiedName());
    const QString closest = describeClosest(m_model, conditions);
    return closest.isEmpty() ? text : QStringLiteral("%1 Closest: %2.").arg(text, closest);
}

QString NameResolver::uniqueName(const QObject *object)
{
    if (!m_index)
        m_index.emplace(m_model);
    return numbered(ObjectName(realNameOf(object)), object);
}

// The name itself when it fits no other object.
QString NameResolver::numbered(const ObjectName &name, const QObject *object)
{
    NameConditions conditions;
    if (!makeConditions(name, &conditions, nullptr))
        return name.qualifiedName();
    const std::vector<QObject *> found = fittingObjects(conditions);
    const auto place = std::find(found.begin(), found.end(), object);
    if (found.size() < 2 || place == found.end())
        return name.qualifiedName();
    auto properties = name.properties();
    properties.insert(occurrenceKey, {ObjectName::PropertyValue::EXACT,
                                      QString::number(place - found.begin() + 1)});
    return ObjectName(properties).qualifiedName();
}

bool NameResolver::isUnique(const ObjectName &name, const QObject *object)
{
    NameConditions conditions;
    if (!makeConditions(name, &conditions, nullptr))
        return false;
    const std::vector<QObject *> found = fittingObjects(conditions);
    return found.size() == 1 && found.front() == object;
}

// The title of a main window shows its document, unless it is that of the application.
ObjectName NameResolver::steadyRealName(const QObject *object)
{
    const ObjectName name(realNameOf(object));
    const auto *widget = qobject_cast<const QWidget *>(object);
    auto properties = name.properties();
    const QString title = properties.take(QStringLiteral("windowTitle")).text;
    const bool isOfApplication =
        title.compare(QGuiApplication::applicationDisplayName(), Qt::CaseInsensitive) == 0;
    const bool isSteady = title.isEmpty() || isOfApplication ||
                          !qobject_cast<const QMainWindow *>(widget) || !isOfOwnClass(widget);
    return isSteady || !isUnique(ObjectName(properties), object) ? name : ObjectName(properties);
}

// The name of the nearest one that has a name of its own; empty without one.
QString NameResolver::containerOf(const QObject *object)
{
    for (const QObject *each = parentObjectOf(object); each; each = parentObjectOf(each)) {
        const auto *widget = qobject_cast<const QWidget *>(each);
        const bool isNamed =
            !each->objectName().isEmpty() && !each->objectName().startsWith(QLatin1String("qt_"));
        const bool isWindow = !parentObjectOf(each) || (widget && widget->isWindow());
        // A user tells fields apart by the titles around them.
        const bool isTitled = !each->property("title").toString().isEmpty();
        if (!isNamed && !isTitled && !isWindow)
            continue;
        const ObjectName name = steadyRealName(each);
        if (isUnique(name, each))
            return name.qualifiedName();
    }
    return {};
}

QString NameResolver::steadyName(const QObject *object, bool isTextKept)
{
    if (!m_index)
        m_index.emplace(m_model);
    using Value = ObjectName::PropertyValue;
    auto properties = steadyRealName(object).properties();
    const bool isOfText =
        !properties.contains(QStringLiteral("name")) && !properties.contains(QStringLiteral("id"));
    if (!isTextKept && isOfText)
        properties = {{QStringLiteral("type"), properties.value(QStringLiteral("type"))}};
    std::vector<std::pair<QString, Value>> further;
    // What a tool bar has no room for is reached all the same.
    const auto *widget = qobject_cast<const QWidget *>(object);
    const bool isAlwaysReached = widget && isInToolBar(widget);
    if (object->property("visible").toBool() && !isAlwaysReached)
        further.emplace_back(QStringLiteral("visible"),
                             Value{Value::EXACT, QStringLiteral("true")});
    const QString container =
        isUnique(ObjectName(properties), object) ? QString() : containerOf(object);
    if (!container.isEmpty())
        further.emplace_back(QStringLiteral("container"), Value{Value::REFERENCE, container});
    for (const auto &[key, value] : further) {
        if (isUnique(ObjectName(properties), object))
            break;
        properties.insert(key, value);
    }
    return numbered(ObjectName(properties), object);
}

QHash<const QObject *, QString> NameResolver::symbolicNames()
{
    QHash<const QObject *, QString> names;
    const ObjectMap *map = ObjectMap::self();
    if (!map)
        return names;
    m_index.emplace(m_model);
    for (const QString &name : map->names().keys()) {
        if (const QObject *object = find(name, nullptr))
            names.insert(object, name);
    }
    return names;
}

} // namespace Morvex
