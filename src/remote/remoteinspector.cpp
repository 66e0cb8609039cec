#include "remote/remoteinspector.h"

#include "objectmodel/value/decodedtext.h"

#include "objectmodel/class.h"
#include "objectmodel/namespace.h"
#include "objectmodel/value/valueobject.h"
#include "remote/remotemodel.h"

#include <QMap>

namespace Morvex {
namespace {

class RemoteNamespace : public Namespace
{
public:
    RemoteNamespace(RemoteModel &model, const QString &name)
        : m_model(model)
        , m_name(name)
    {
    }

    const Class *getClass(const QString &name) const override
    {
        return m_model.classOf(
            m_model.session().request(Message::ClassInNamespace, {m_name, name}).values.value(0));
    }

private:
    RemoteModel &m_model;
    QString m_name;
};

const int catchUpTimeoutMs = 500;

// How long the call takes by itself, in milliseconds.
int durationOf(const QString &function, const QVariantList &arguments)
{
    return function == QLatin1String("grabObjectScreenshot") ? qMax(arguments.value(2).toInt(), 0)
                                                             : 0;
}

} // namespace

struct RemoteInspector::Private
{
    std::shared_ptr<RemoteModel> model;
    QMap<QString, std::shared_ptr<RemoteNamespace>> namespaces;

    SharedPtr<Object> make(const QVariant &value)
    {
        return SharedPtr<Object>(new ValueObject(value, model->valueClass(value)));
    }

    RemoteSession::Reply request(Message::Operation operation, const QVariantList &values,
                                 int duration = 0)
    {
        return model->session().request(operation, values, duration);
    }
};

RemoteInspector::RemoteInspector(std::unique_ptr<RemoteSession> session)
    : d(std::make_unique<Private>())
{
    d->model = std::make_shared<RemoteModel>(std::move(session));
}

RemoteInspector::~RemoteInspector()
{
    session().close(QStringLiteral("the application has been stopped"));
}

RemoteSession &RemoteInspector::session()
{
    return d->model->session();
}

SharedPtr<Object> RemoteInspector::makeInt(int value)
{
    return d->make(value);
}

SharedPtr<Object> RemoteInspector::makeDouble(double value)
{
    return d->make(value);
}

SharedPtr<Object> RemoteInspector::makeBool(bool value)
{
    return d->make(value);
}

SharedPtr<Object> RemoteInspector::makeString(const QByteArray &utf8)
{
    return d->make(decodedUtf8(utf8));
}

const Class *RemoteInspector::findClass(const QString &name)
{
    return d->model->classOf(d->request(Message::FindClass, {name}).values.value(0));
}

const Class *RemoteInspector::globalClass()
{
    const Class *known = d->model->classOf(d->request(Message::GlobalClass, {}).values.value(0));
    return known ? known : d->model->emptyClass();
}

const Namespace *RemoteInspector::findNamespace(const QString &name)
{
    auto known = d->namespaces.find(name);
    if (known == d->namespaces.end()) {
        if (!d->request(Message::HasNamespace, {name}).values.value(0).toBool())
            return nullptr;
        known = d->namespaces.insert(name, std::make_shared<RemoteNamespace>(*d->model, name));
    }
    return known->get();
}

SharedPtr<Object> RemoteInspector::cast(const SharedPtr<Object> &object, const QString &className)
{
    if (!object)
        return {};
    return d->model->objectOf(
        d->request(Message::CastObject, {d->model->refOf(object), className}).values.value(0));
}

SharedPtr<Object> RemoteInspector::waitForObject(const QString &name, int timeout, QString *error)
{
    d->model->sendObjectMap();
    // What would be cut off by the end of the test case is asked for in two parts: that the first
    // one is not answered says that the application hangs.
    const int first = session().beforeDeadline(qMax(timeout, 0));
    RemoteSession::Reply reply = d->request(Message::FindObject, {name, first}, first);
    if (reply.isRefused && first < timeout)
        reply = d->request(Message::FindObject, {name, timeout - first}, timeout - first);
    if (error)
        *error = reply.error;
    return d->model->objectOf(reply.values.value(0));
}

QVariant RemoteInspector::callFunction(const QString &name, const QVariantList &arguments,
                                       QString *error)
{
    const RemoteSession::Reply reply =
        d->request(Message::CallFunction, {name, QVariant(arguments)}, durationOf(name, arguments));
    if (error)
        *error = reply.error;
    return reply.values.value(0);
}

QVariant RemoteInspector::askForReport(const QString &function, QString *error)
{
    session().update();
    const bool wasEndMet = session().isEndMet();
    QString reason;
    QVariant answer;
    // One that hangs is not waited for again.
    if (session().catchUp(catchUpTimeoutMs))
        answer = callFunction(function, {}, &reason);
    else
        reason = session().failure().isEmpty()
                     ? QStringLiteral("the application still has not answered")
                     : session().failure();
    // It was no call of the script.
    session().setEndMet(wasEndMet);
    // An application that has ended answered this at its end.
    const QByteArray usage = session().lastUsage();
    const bool isAnswered = function == QLatin1String("dumpUsage") && !usage.isNull();
    if (error)
        *error = isAnswered ? QString() : reason;
    return isAnswered ? usage : answer;
}

SharedPtr<Object> RemoteInspector::objectWithId(int id)
{
    ObjectRef ref;
    ref.kind = ObjectRef::Live;
    ref.id = id;
    return d->model->objectOf(QVariant::fromValue(ref));
}

bool RemoteInspector::owns(const SharedPtr<Object> &object) const
{
    return d->model->owns(object);
}

QString RemoteInspector::failure() const
{
    const RemoteSession &session = d->model->session();
    return session.failure().isEmpty() ? session.lastError() : session.failure();
}

} // namespace Morvex
