#include "fuzzinput.h"

#include "objectmodel/class.h"
#include "objectmodel/methodlist.h"
#include "objectmodel/namespace.h"
#include "objectmodel/property.h"
#include "remote/remoteinspector.h"
#include "remote/remotesession.h"

#include <QVariant>

#include <sys/socket.h>
#include <unistd.h>

using namespace Morvex;

namespace {

void useClass(const Class *objectClass, const SharedPtr<Object> &object)
{
    for (; objectClass; objectClass = objectClass->superClass()) {
        objectClass->name();
        const QStringList names = objectClass->propertyNames();
        for (const QString &name : names.mid(0, 3)) {
            const Property *property = objectClass->property(name);
            const SharedPtr<Object> value = property->get(object);
            if (value) {
                value->valueText();
                value->compare(object);
                [[maybe_unused]] const QString reason = property->set(object, value->value());
            }
        }
    }
}

void use(RemoteInspector &inspector)
{
    QString error;
    const SharedPtr<Object> object = inspector.waitForObject(QStringLiteral("a"), 0, &error);
    if (object) {
        useClass(object->objectClass(), object);
        object->valueText();
        inspector.cast(object, QStringLiteral("b"));
    }
    inspector.callFunction(QStringLiteral("c"), {1}, &error);
    SharedPtr<Object> result;
    const MethodList *method = inspector.globalClass()->methods(QStringLiteral("d"));
    if (method)
        method->invoke(object, {object}, &result);
    const Namespace *known = inspector.findNamespace(QStringLiteral("e"));
    useClass(known ? known->getClass(QStringLiteral("f")) : nullptr, result);
}

} // namespace

// What an application sends over its connection, of which the end comes at once.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, std::size_t size)
{
    int ends[2];
    require(::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) == 0);
    [[maybe_unused]] const ssize_t sent = ::send(ends[1], data, size, MSG_DONTWAIT | MSG_NOSIGNAL);
    ::shutdown(ends[1], SHUT_WR);
    {
        RemoteInspector inspector(
            std::make_unique<RemoteSession>(std::make_unique<MessageChannel>(ends[0]),
                                            [](bool) { return QStringLiteral("ended"); }));
        use(inspector);
        inspector.session().update();
        require(!inspector.failure().isEmpty());
    }
    ::close(ends[1]);
    return 0;
}
