#include "objectmodel/qt/qtmodel.h"

#include "objectmodel/qt/liveobject.h"
#include "objectmodel/qt/valueobject.h"

#include <QAbstractItemView>
#include <QAction>
#include <QMetaProperty>
#include <QRect>
#include <QWidget>

namespace Morvex {
namespace {

QString classNameOf(const QMetaObject *metaObject)
{
    return QString::fromLatin1(metaObject->className());
}

// The number itself where names can't tell all of it.
QString enumeratorText(const QMetaProperty &property, int value)
{
    const QMetaEnum enumeration = property.enumerator();
    const QByteArray keys = property.isFlagType() ? enumeration.valueToKeys(value)
                                                  : QByteArray(enumeration.valueToKey(value));
    const bool isWhole = !keys.isEmpty() && enumeration.keysToValue(keys) == value;
    return isWhole ? QString::fromLatin1(keys) : QString::number(value);
}

QVariant objectVariant(QObject *object)
{
    return QVariant::fromValue(object);
}

void collect(QObject *object, std::vector<QObject *> &objects)
{
    objects.push_back(object);
    for (QObject *child : object->children())
        collect(child, objects);
}

} // namespace

QtModel::QtModel()
{
    addValueClasses();
}

SharedPtr<Object> QtModel::wrap(QObject *object)
{
    return object ? SharedPtr<Object>(new LiveObject(*this, m_registry.idOf(object)))
                  : SharedPtr<Object>();
}

SharedPtr<Object> QtModel::wrapValue(const QVariant &value)
{
    if (!value.isValid())
        return {};
    if (QMetaType::typeFlags(value.userType()) & QMetaType::PointerToQObject)
        return wrap(value.value<QObject *>());
    return SharedPtr<Object>(
        new ValueObject(value, namedClass(QString::fromLatin1(value.typeName()))));
}

const Class *QtModel::classOf(const QMetaObject *metaObject)
{
    return metaObject ? makeClass(metaObject) : nullptr;
}

ModelClass *QtModel::makeClass(const QMetaObject *metaObject)
{
    const auto known = m_classes.constFind(metaObject);
    if (known != m_classes.cend())
        return known->get();
    const auto made =
        std::make_shared<ModelClass>(classNameOf(metaObject), classOf(metaObject->superClass()));
    for (int i = metaObject->propertyOffset(); i < metaObject->propertyCount(); ++i)
        addMetaProperty(made.get(), metaObject, i);
    addRelations(made.get(), metaObject);
    m_classes.insert(metaObject, made);
    return made.get();
}

void QtModel::addMetaProperty(ModelClass *modelClass, const QMetaObject *metaObject, int index)
{
    const QMetaProperty property = metaObject->property(index);
    const auto read = [this, property](const Object &self) -> SharedPtr<Object> {
        const QObject *object = unwrap(self);
        if (!object)
            return {};
        const QVariant value = property.read(object);
        if (!property.isEnumType())
            return wrapValue(value);
        const int number = value.toInt();
        return SharedPtr<Object>(new ValueObject(number, enumeratorText(property, number),
                                                 namedClass(QStringLiteral("int"))));
    };
    const auto write = [this, property](const Object &self, const QVariant &value) -> QString {
        QObject *object = unwrap(self);
        if (!object)
            return QStringLiteral("the object is gone");
        return property.write(object, value)
                   ? QString()
                   : QStringLiteral("property '%1' doesn't take this value")
                         .arg(QString::fromLatin1(property.name()));
    };
    modelClass->addProperty(QString::fromLatin1(property.name()), read,
                            property.isWritable() ? ModelClass::Writer(write)
                                                  : ModelClass::Writer());
}

// What tests ask for and the toolkit has as functions only.
void QtModel::addRelations(ModelClass *modelClass, const QMetaObject *metaObject)
{
    const auto add = [this, modelClass](const char *name, const auto &read) {
        modelClass->addProperty(QLatin1String(name), [this, read](const Object &self) {
            QObject *object = unwrap(self);
            return object ? wrapValue(read(object)) : SharedPtr<Object>();
        });
    };
    if (metaObject == &QObject::staticMetaObject)
        add("parent", [](QObject *object) { return objectVariant(object->parent()); });
    if (metaObject == &QWidget::staticMetaObject)
        add("window", [](QObject *object) {
            return objectVariant(static_cast<QWidget *>(object)->window());
        });
    if (metaObject == &QAbstractItemView::staticMetaObject)
        add("model", [](QObject *object) {
            return objectVariant(static_cast<QAbstractItemView *>(object)->model());
        });
    if (metaObject == &QAbstractItemModel::staticMetaObject) {
        add("rowCount",
            [](QObject *object) { return static_cast<QAbstractItemModel *>(object)->rowCount(); });
        add("columnCount", [](QObject *object) {
            return static_cast<QAbstractItemModel *>(object)->columnCount();
        });
    }
}

void QtModel::addPart(const char *className, const char *part,
                      const std::function<QVariant(const QVariant &)> &read)
{
    namedClass(QLatin1String(className))
        ->addProperty(QLatin1String(part),
                      [this, read](const Object &self) { return wrapValue(read(self.value())); });
}

void QtModel::addValueClasses()
{
    addPart("QPoint", "x", [](const QVariant &value) { return value.toPoint().x(); });
    addPart("QPoint", "y", [](const QVariant &value) { return value.toPoint().y(); });
    addPart("QSize", "width", [](const QVariant &value) { return value.toSize().width(); });
    addPart("QSize", "height", [](const QVariant &value) { return value.toSize().height(); });
    addPart("QRect", "x", [](const QVariant &value) { return value.toRect().x(); });
    addPart("QRect", "y", [](const QVariant &value) { return value.toRect().y(); });
    addPart("QRect", "width", [](const QVariant &value) { return value.toRect().width(); });
    addPart("QRect", "height", [](const QVariant &value) { return value.toRect().height(); });
}

const Class *QtModel::findClass(const QString &name)
{
    for (const QObject *object : allObjects())
        classOf(object->metaObject());
    for (const auto &known : qAsConst(m_classes)) {
        if (known->name() == name)
            return known.get();
    }
    return m_named.value(name).get();
}

ModelClass *QtModel::namedClass(const QString &name)
{
    auto &known = m_named[name];
    if (!known)
        known = std::make_shared<ModelClass>(name, nullptr);
    return known.get();
}

std::vector<QObject *> QtModel::allObjects() const
{
    std::vector<QObject *> objects;
    for (QWidget *window : m_windows.windows())
        collect(window, objects);
    return objects;
}

} // namespace Morvex
