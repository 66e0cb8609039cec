#pragma once

#include "objectmodel/object.h"
#include "qtbackend/modelclass.h"
#include "qtbackend/objectregistry.h"
#include "qtbackend/windoworder.h"

#include <QHash>

#include <functional>
#include <map>
#include <memory>
#include <utility>
#include <vector>

class QMetaProperty;
struct QMetaObject;

namespace Morvex {

class ClickWatch;
class UsageCounter;

/// The classes of the live objects, and the way from objects and values to the model and back.
class QtModel
{
public:
    QtModel();
    ~QtModel();

    ObjectRegistry &registry() { return m_registry; }

    SharedPtr<Object> wrap(QObject *object);
    /// Counts from the first call on.
    UsageCounter &usageCounter();
    bool isUsageCounted() const { return m_usageCounter != nullptr; }
    /// Watches from the first call on.
    ClickWatch &clickWatch();

    /// Null for an invalid value and for a null pointer to an object.
    SharedPtr<Object> wrapValue(const QVariant &value);
    /// Null when the object no longer exists or is not a live one.
    QObject *unwrap(const Object &object) const { return m_registry.object(object.id()); }

    /// Objects to which properties were added while they lived have classes of their own below the
    /// one that their name stands for.
    const Class *classOf(const QObject *object);
    /// Among the classes of all objects that are there or were seen, and those of the model. Null
    /// when there is none.
    const Class *findClass(const QString &name);
    /// Whether one of these classes is in the namespace.
    bool hasNamespace(const QString &name);
    /// The model's own classes, made at the first call.
    ModelClass *namedClass(const QString &name);

    /// All objects of the application that a name can stand for: each window with what is in it, in
    /// the order in which it was made. Windows that belong to no other one come in that of
    /// WindowOrder.
    std::vector<QObject *> allObjects() const;
    /// Those of them that are directly in the object, in the same order.
    std::vector<QObject *> childrenOf(const QObject *object) const;

private:
    using DynamicKey = std::pair<const Class *, QList<QByteArray>>;

    const Class *classOf(const QMetaObject *metaObject);
    std::shared_ptr<ModelClass> makeClass(const QMetaObject *metaObject);
    void addMetaProperty(ModelClass *modelClass, const QMetaProperty &property);
    void addDynamicProperty(ModelClass *modelClass, const QByteArray &name);
    void addRelations(ModelClass *modelClass, const QMetaObject *metaObject);
    void addPart(const char *className, const char *part,
                 const std::function<QVariant(const QVariant &)> &read);
    void addValueClasses();
    void observeAllClasses();

    ObjectRegistry m_registry;
    std::unique_ptr<UsageCounter> m_usageCounter;
    std::unique_ptr<ClickWatch> m_clickWatch;
    WindowOrder m_windows;
    // By the name as well: a meta object may be freed and another one take its address.
    QHash<QPair<const QMetaObject *, QByteArray>, std::shared_ptr<ModelClass>> m_classes;
    std::map<DynamicKey, std::shared_ptr<ModelClass>> m_dynamicClasses;
    QHash<QString, const Class *> m_classesByName;
    QHash<QString, std::shared_ptr<ModelClass>> m_named;
};

/// An object of the application, known by its number.
class LiveObject : public Object
{
public:
    /// @p objectClass may be null: it is then found when it is asked for.
    LiveObject(QtModel &model, int id, const Class *objectClass = nullptr);

    int id() const override { return m_id; }
    const Class *objectClass() const override;
    bool compare(const SharedPtr<Object> &other) const override;
    QString valueText() const override;
    QVariant value() const override { return {}; }

private:
    QtModel &m_model;
    int m_id;
    const Class *m_class;
};

} // namespace Morvex
