#include "qtbackend/qtinspector.h"

#include "objectmodel/value/decodedtext.h"

#include "objectmodel/namespace.h"
#include "qtbackend/actionwatch.h"
#include "qtbackend/applicationfunctions.h"
#include "qtbackend/inputsequence.h"
#include "qtbackend/modelmethods.h"
#include "qtbackend/modeltablerange.h"
#include "qtbackend/nameresolver.h"
#include "qtbackend/qtmodel.h"
#include "qtbackend/turneventloop.h"

#include <QElapsedTimer>
#include <QMap>

#include <memory>

namespace Morvex {
namespace {

const int waitStep = 10;

class QtNamespace : public Namespace
{
public:
    QtNamespace(QtModel &model, const QString &name)
        : m_model(model)
        , m_name(name)
    {
    }

    const Class *getClass(const QString &name) const override
    {
        return m_model.findClass(m_name + QLatin1String("::") + name);
    }

private:
    QtModel &m_model;
    QString m_name;
};

} // namespace

struct QtInspector::Private
{
    QtModel model;
    QMap<QString, std::shared_ptr<QtNamespace>> namespaces;
    std::unique_ptr<ActionWatch> actionWatch;
};

QtInspector::QtInspector()
    : d(std::make_unique<Private>())
{
    addModelMethods(d->model);
}

QtInspector::~QtInspector() = default;

SharedPtr<Object> QtInspector::lookUp(const QString &name, QString *error)
{
    return d->model.wrap(NameResolver(d->model).find(name, error));
}

SharedPtr<Object> QtInspector::objectOf(int id, const Class *seenAs)
{
    return SharedPtr<Object>(new LiveObject(d->model, id, seenAs));
}

bool QtInspector::isLive(const Object &object) const
{
    return dynamic_cast<const LiveObject *>(&object);
}

SharedPtr<Object> QtInspector::wrapValue(const QVariant &value)
{
    return d->model.wrapValue(value);
}

QVariant QtInspector::beginFunction(const QString &name, const QVariantList &arguments,
                                    InputSequence &input, QString *error)
{
    return callApplicationFunction(d->model, name, arguments, input, error);
}

SharedPtr<Object> QtInspector::makeInt(int value)
{
    return d->model.wrapValue(value);
}

SharedPtr<Object> QtInspector::makeDouble(double value)
{
    return d->model.wrapValue(value);
}

SharedPtr<Object> QtInspector::makeBool(bool value)
{
    return d->model.wrapValue(value);
}

SharedPtr<Object> QtInspector::makeString(const QByteArray &utf8)
{
    return d->model.wrapValue(decodedUtf8(utf8));
}

const Class *QtInspector::findClass(const QString &name)
{
    return d->model.findClass(name);
}

const Class *QtInspector::globalClass()
{
    return d->model.namedClass(QLatin1String(globalClassName));
}

const Namespace *QtInspector::findNamespace(const QString &name)
{
    auto known = d->namespaces.find(name);
    if (known == d->namespaces.end()) {
        if (!d->model.hasNamespace(name))
            return nullptr;
        known = d->namespaces.insert(name, std::make_shared<QtNamespace>(d->model, name));
    }
    return known->get();
}

SharedPtr<Object> QtInspector::cast(const SharedPtr<Object> &object, const QString &className)
{
    const Class *objectClass = object ? object->objectClass() : nullptr;
    if (!objectClass)
        return {};
    if (className == QLatin1String(tableClassName)) {
        const Class *table = d->model.namedClass(className);
        return ModelTableRange::isTable(d->model.unwrap(*object))
                   ? SharedPtr<Object>(new LiveObject(d->model, object->id(), table))
                   : SharedPtr<Object>();
    }
    const Class *wanted = d->model.findClass(className);
    return objectClass->isSubclassOf(wanted) ? object : SharedPtr<Object>();
}

SharedPtr<Object> QtInspector::waitForObject(const QString &name, int timeout, QString *error)
{
    QElapsedTimer timer;
    timer.start();
    for (int wait = 0;; wait = waitStep) {
        turnEventLoop(wait);
        const bool isLast = timer.elapsed() >= timeout;
        QObject *object = NameResolver(d->model).find(name, isLast ? error : nullptr);
        if (object || isLast)
            return d->model.wrap(object);
    }
}

void QtInspector::record(const std::function<void(const QVariantMap &)> &sink)
{
    if (!d->actionWatch)
        d->actionWatch = std::make_unique<ActionWatch>(d->model, sink);
}

QByteArray QtInspector::countedUsage()
{
    return d->model.isUsageCounted()
               ? callFunction(QStringLiteral("dumpUsage"), {}, nullptr).toByteArray()
               : QByteArray();
}

QVariant QtInspector::callFunction(const QString &name, const QVariantList &arguments,
                                   QString *error)
{
    QString reason;
    InputSequence input;
    const QVariant result = beginFunction(name, arguments, input, &reason);
    if (reason.isEmpty() && !input.isEmpty()) {
        while (!input.isDone())
            turnEventLoop(0);
        reason = input.error();
    }
    if (error)
        *error = reason;
    return reason.isEmpty() ? result : QVariant();
}

} // namespace Morvex
