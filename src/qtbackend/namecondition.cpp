#include "qtbackend/namecondition.h"

#include "objectmodel/value/propertypath.h"
#include "qtbackend/identification.h"
#include "qtbackend/itempath.h"
#include "qtbackend/objecttree.h"
#include "qtbackend/qtmodel.h"

#include <QWidget>

namespace Morvex {
namespace {

bool isAncestor(const QObject *ancestor, const QObject *object)
{
    const QObject *parent = parentObjectOf(object);
    while (parent && parent != ancestor)
        parent = parentObjectOf(parent);
    return parent;
}

const QObject *windowOf(const QObject *object)
{
    while (object && !object->isWidgetType() && !object->isWindowType())
        object = parentObjectOf(object);
    if (object && object->isWindowType())
        return object;
    return object ? static_cast<const QWidget *>(object)->window() : nullptr;
}

} // namespace

bool NameCondition::canIgnoreMnemonics() const
{
    return value.kind == ObjectName::PropertyValue::EXACT &&
           (property == QLatin1String("text") || property == QLatin1String("title"));
}

QString NameCondition::comparedText(const QString &text) const
{
    return ignoresMnemonics ? shownText(text) : text;
}

bool NameCondition::fits(const QString &text) const
{
    if (ignoresMnemonics)
        return comparedText(text) == comparedText(value.text);
    return value.kind == ObjectName::PropertyValue::EXACT ? text == value.text
                                                          : expression.match(text).hasMatch();
}

bool NameCondition::fits(QLatin1String text) const
{
    return value.kind == ObjectName::PropertyValue::EXACT ? text == value.text
                                                          : expression.match(text).hasMatch();
}

bool NameCondition::fitsType(const QObject *object) const
{
    const QMetaObject *type = object->metaObject();
    while (type && !fits(QLatin1String(type->className())) && !fits(typeNameOf(type)))
        type = type->superClass();
    return type;
}

bool NameCondition::fitsReference(QtModel &model, QObject *object) const
{
    if (property == QLatin1String("container"))
        return isAncestor(referenced, object);
    if (property == QLatin1String("window"))
        return windowOf(object) == referenced;
    if (property == QLatin1String("parent"))
        return parentObjectOf(object) == referenced;
    const SharedPtr<Object> found = followProperties(model.wrap(object), propertySteps(property));
    return found && model.unwrap(*found) == referenced;
}

bool NameCondition::holds(QtModel &model, QObject *object) const
{
    if (isReference())
        return fitsReference(model, object);
    if (property == QLatin1String("type"))
        return fitsType(object);
    QString text;
    return readText(model, object, &text) && fits(text);
}

bool NameCondition::readText(QtModel &model, QObject *object, QString *text) const
{
    if (property == QLatin1String("name")) {
        *text = object->objectName();
        return true;
    }
    if (property == QLatin1String("type")) {
        *text = typeNameOf(object->metaObject());
        return true;
    }
    const SharedPtr<Object> found = followProperties(model.wrap(object), propertySteps(property));
    *text = found ? found->valueText() : QString();
    return bool(found);
}

bool NameCondition::readShownText(QtModel &model, QObject *object, QString *text) const
{
    if (!readText(model, object, text))
        return false;
    QStringList steps = propertySteps(property);
    if (steps.isEmpty())
        return true;
    const QString last = steps.takeLast();
    const SharedPtr<Object> owner = followProperties(model.wrap(object), steps);
    if (const QObject *shown = owner ? model.unwrap(*owner) : nullptr)
        *text = textForReaders(shown, last, *text);
    return true;
}

} // namespace Morvex
