#include "qtbackend/qtmodel.h"

#include "objectmodel/value/valueobject.h"
#include "qtbackend/clickwatch.h"
#include "qtbackend/creationorder.h"
#include "qtbackend/identification.h"
#include "qtbackend/objecttree.h"
#include "qtbackend/propertysetting.h"
#include "qtbackend/quickwidgets.h"
#include "qtbackend/sceneaccess.h"
#include "qtbackend/usagecounter.h"

#include <QAbstractItemView>
#include <QAction>
#include <QMetaProperty>
#include <QRect>
#include <QWidget>
#include <QWindow>

#include <algorithm>

namespace Morvex {
namespace {

QString classNameOf(const QMetaObject *metaObject)
{
    return QString::fromLatin1(metaObject->className());
}

// The number itself where names can't express all of it.
QString enumeratorText(const QMetaProperty &property, int value)
{
    const QMetaEnum enumeration = property.enumerator();
    const QByteArray keys = property.isFlagType() ? enumeration.valueToKeys(value)
                                                  : QByteArray(enumeration.valueToKey(value));
    const bool isWhole = !keys.isEmpty() && enumeration.keysToValue(keys) == value;
    return isWhole ? QString::fromLatin1(keys) : QString::number(value);
}

QMetaProperty propertyOf(const QObject *object, const QByteArray &name)
{
    if (!object)
        return {};
    const QMetaObject *metaObject = object->metaObject();
    return metaObject->property(metaObject->indexOfProperty(name));
}

// Without those by which the toolkit keeps something for itself.
QList<QByteArray> addedProperties(const QObject *object)
{
    QList<QByteArray> names = object->dynamicPropertyNames();
    names.erase(std::remove_if(names.begin(), names.end(),
                               [](const QByteArray &name) { return name.startsWith("_q_"); }),
                names.end());
    std::sort(names.begin(), names.end());
    return names;
}

QVariant objectVariant(QObject *object)
{
    return QVariant::fromValue(object);
}

void collect(QObject *object, std::vector<QObject *> &objects)
{
    objects.push_back(object);
    for (QObject *child : childObjectsOf(object))
        collect(child, objects);
}

} // namespace

QtModel::QtModel()
{
    addValueClasses();
    watchCreation();
    // Before anything is raised and moves.
    allObjects();
}

QtModel::~QtModel() = default;

ClickWatch &QtModel::clickWatch()
{
    if (!m_clickWatch)
        m_clickWatch = std::make_unique<ClickWatch>();
    return *m_clickWatch;
}

UsageCounter &QtModel::usageCounter()
{
    if (!m_usageCounter)
        m_usageCounter = std::make_unique<UsageCounter>();
    return *m_usageCounter;
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

const Class *QtModel::classOf(const QObject *object)
{
    const Class *known = classOf(object->metaObject());
    const QList<QByteArray> names = addedProperties(object);
    if (names.isEmpty())
        return known;
    auto &own = m_dynamicClasses[{known, names}];
    if (!own) {
        own = std::make_shared<ModelClass>(known->name(), known);
        for (const QByteArray &name : names)
            addDynamicProperty(own.get(), name);
    }
    return own.get();
}

const Class *QtModel::classOf(const QMetaObject *metaObject)
{
    if (!metaObject)
        return nullptr;
    const char *name = metaObject->className();
    const auto known = m_classes.constFind(
        {metaObject, QByteArray::fromRawData(name, static_cast<int>(qstrlen(name)))});
    if (known != m_classes.cend())
        return known->get();
    const auto made = makeClass(metaObject);
    m_classes.insert({metaObject, QByteArray(name)}, made);
    if (!m_classesByName.contains(made->name()))
        m_classesByName.insert(made->name(), made.get());
    return made.get();
}

std::shared_ptr<ModelClass> QtModel::makeClass(const QMetaObject *metaObject)
{
    const auto made =
        std::make_shared<ModelClass>(classNameOf(metaObject), classOf(metaObject->superClass()));
    for (int i = metaObject->propertyOffset(); i < metaObject->propertyCount(); ++i)
        addMetaProperty(made.get(), metaObject->property(i));
    addRelations(made.get(), metaObject);
    return made;
}

// Readers look the property up by its name: they outlive the meta objects of some classes.
void QtModel::addMetaProperty(ModelClass *modelClass, const QMetaProperty &property)
{
    const QByteArray name = property.name();
    const auto read = [this, name](const Object &self) -> SharedPtr<Object> {
        const QObject *object = unwrap(self);
        const QMetaProperty found = propertyOf(object, name);
        if (!found.isValid())
            return {};
        const QVariant value = found.read(object);
        if (!found.isEnumType())
            return wrapValue(value);
        const int number = value.toInt();
        return SharedPtr<Object>(new ValueObject(number, enumeratorText(found, number),
                                                 namedClass(QStringLiteral("int"))));
    };
    const auto write = [this, name](const Object &self, const QVariant &value) -> QString {
        QObject *object = unwrap(self);
        if (!object)
            return QStringLiteral("the object no longer exists");
        return setLikeUser(object, name, value)
                   ? QString()
                   : QStringLiteral("property '%1' doesn't take this value")
                         .arg(QString::fromLatin1(name));
    };
    modelClass->addProperty(QString::fromLatin1(name), read,
                            property.isWritable() ? ModelClass::Writer(write)
                                                  : ModelClass::Writer());
}

void QtModel::addDynamicProperty(ModelClass *modelClass, const QByteArray &name)
{
    const auto read = [this, name](const Object &self) {
        const QObject *object = unwrap(self);
        return object ? wrapValue(object->property(name)) : SharedPtr<Object>();
    };
    const auto write = [this, name](const Object &self, const QVariant &value) -> QString {
        QObject *object = unwrap(self);
        if (!object)
            return QStringLiteral("the object no longer exists");
        object->setProperty(name, value);
        return {};
    };
    modelClass->addProperty(QString::fromUtf8(name), read, write);
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
        add("parent", [](QObject *object) { return objectVariant(parentObjectOf(object)); });
    if (metaObject == &QWidget::staticMetaObject)
        add("window", [](QObject *object) {
            return objectVariant(static_cast<QWidget *>(object)->window());
        });
    if (qstrcmp(metaObject->className(), "QQuickItem") == 0) {
        add("window", [](QObject *object) {
            QWidget *widget = widgetOf(object);
            return widget ? objectVariant(widget->window())
                          : objectVariant(SceneAccess::self()->windowOf(object));
        });
        add("id", [](QObject *object) { return SceneAccess::self()->idOf(object); });
    }
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

void QtModel::observeAllClasses()
{
    for (const QObject *object : allObjects())
        classOf(object->metaObject());
}

const Class *QtModel::findClass(const QString &name)
{
    if (!m_classesByName.contains(name))
        observeAllClasses();
    return m_classesByName.value(name, m_named.value(name).get());
}

bool QtModel::hasNamespace(const QString &name)
{
    observeAllClasses();
    const QString prefix = name + QLatin1String("::");
    const QStringList names = m_classesByName.keys();
    return std::any_of(names.begin(), names.end(), [&prefix](const QString &className) {
        return className.startsWith(prefix);
    });
}

ModelClass *QtModel::namedClass(const QString &name)
{
    auto &known = m_named[name];
    if (!known)
        known = std::make_shared<ModelClass>(name, nullptr);
    return known.get();
}

std::vector<QObject *> QtModel::childrenOf(const QObject *object) const
{
    const QObjectList children = childObjectsOf(object);
    return {children.begin(), children.end()};
}

std::vector<QObject *> QtModel::allObjects() const
{
    std::vector<QObject *> objects;
    for (QWidget *window : m_windows.windows())
        collect(window, objects);
    for (QObject *window : sceneWindows())
        collect(window, objects);
    return objects;
}

LiveObject::LiveObject(QtModel &model, int id, const Class *objectClass)
    : m_model(model)
    , m_id(id)
    , m_class(objectClass)
{
}

const Class *LiveObject::objectClass() const
{
    const QObject *object = m_model.registry().object(m_id);
    if (!object)
        return nullptr;
    return m_class ? m_class : m_model.classOf(object);
}

bool LiveObject::compare(const SharedPtr<Object> &other) const
{
    if (!other)
        return false;
    return other->id() == 0 ? valueText() == other->valueText() : m_id == other->id();
}

QString LiveObject::valueText() const
{
    const QObject *object = m_model.registry().object(m_id);
    return object ? realNameOf(object) : QStringLiteral("(an object that no longer exists)");
}

} // namespace Morvex
