#include "qtbackend/closestobjects.h"

#include "qtbackend/identification.h"
#include "qtbackend/objecttree.h"
#include "qtbackend/qtmodel.h"
#include "qtbackend/similartexts.h"

#include <QLayout>
#include <QStringList>
#include <QWidget>

#include <algorithm>

namespace Morvex {
namespace {

const std::size_t shownObjects = 5;

bool isLabel(const QString &property)
{
    for (const char *label : {"name", "objectName", "text", "title", "windowTitle"}) {
        if (property == QLatin1String(label))
            return true;
    }
    return false;
}

// How much it says that an object fits: a name more than all relations together.
int weightOf(const NameCondition &condition)
{
    if (condition.isReference())
        return 1;
    return isLabel(condition.property) ? 10 : 4;
}

// People take one label for another, such as the text for the name.
bool isNear(QtModel &model, const NameCondition &condition, QObject *object)
{
    const QString &wanted = condition.value.text;
    const bool hasLabel = isLabel(condition.property);
    if (condition.value.kind != ObjectName::PropertyValue::EXACT ||
        (!hasLabel && condition.property != QLatin1String("type")))
        return false;
    QString text;
    if (condition.readShownText(model, object, &text) && areSimilar(wanted, text))
        return true;
    const auto labels = hasLabel ? identifyingPropertiesOf(object) : QHash<QString, QString>();
    return std::any_of(labels.begin(), labels.end(),
                       [&wanted](const QString &label) { return areSimilar(wanted, label); });
}

int nearness(QtModel &model, const NameConditions &conditions, QObject *object)
{
    int sum = 0;
    for (const NameCondition &condition : conditions) {
        if (condition.holds(model, object))
            sum += weightOf(condition);
        else if (isNear(model, condition, object))
            sum += weightOf(condition) / 2;
    }
    return sum;
}

std::vector<QObject *> closestObjects(QtModel &model, const NameConditions &conditions)
{
    std::vector<QObject *> closest;
    int best = 1;
    for (QObject *object : model.allObjects()) {
        // Nobody sees a layout, yet it is a child as the widgets are.
        const int near = qobject_cast<QLayout *>(object) ? 0 : nearness(model, conditions, object);
        if (near > best)
            closest.clear();
        if (near >= best)
            closest.push_back(object);
        best = std::max(best, near);
    }
    return closest;
}

QString describeDifference(QtModel &model, const NameConditions &conditions, QObject *object)
{
    QStringList differences;
    for (const NameCondition &condition : conditions) {
        QString text;
        if (condition.holds(model, object))
            continue;
        if (condition.isReference())
            differences += QStringLiteral("another %1").arg(condition.property);
        else if (condition.readShownText(model, object, &text))
            differences += QStringLiteral("%1 '%2'").arg(condition.property, text);
        else
            differences += QStringLiteral("no %1").arg(condition.property);
    }
    return realNameOf(object) + QLatin1String(" with ") + differences.join(QLatin1String(", "));
}

// Joins what describe makes of the first ones.
template <typename Describe>
QString listOf(std::size_t count, const QString &separator, const Describe &describe)
{
    QStringList texts;
    for (std::size_t i = 0; i < std::min(count, shownObjects); ++i)
        texts += describe(i);
    if (count > shownObjects)
        texts += QStringLiteral("and %1 more").arg(count - shownObjects);
    return texts.join(separator);
}

QString distinction(const QObject *object, std::size_t index)
{
    QString text = QStringLiteral("occurrence %1").arg(index + 1);
    if (const QObject *parent = parentObjectOf(object))
        text += QLatin1String(" in ") + realNameOf(parent);
    const bool isHidden =
        object->isWidgetType() && !static_cast<const QWidget *>(object)->isVisible();
    return isHidden ? text + QLatin1String(", hidden") : text;
}

} // namespace

QString describeClosest(QtModel &model, const NameConditions &conditions)
{
    const std::vector<QObject *> closest = closestObjects(model, conditions);
    return listOf(closest.size(), QStringLiteral("; "),
                  [&](std::size_t i) { return describeDifference(model, conditions, closest[i]); });
}

QString describeFitting(const std::vector<QObject *> &objects)
{
    QStringList names;
    for (const QObject *object : objects)
        names += realNameOf(object);
    return listOf(objects.size(), QStringLiteral(", "), [&](std::size_t i) {
        const QString &name = names.at(static_cast<int>(i));
        return names.count(name) == 1
                   ? name
                   : QStringLiteral("%1 (%2)").arg(name, distinction(objects[i], i));
    });
}

} // namespace Morvex
