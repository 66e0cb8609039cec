#include "runner/scriptobject.h"

#include "objectmodel/class.h"
#include "objectmodel/inspector.h"
#include "objectmodel/property.h"
#include "objectmodel/value/propertypath.h"
#include "objectmodel/value/wholenumber.h"
#include "remote/remoteinspector.h"
#include "remote/remotesession.h"
#include "runner/processend.h"
#include "runner/settingcheck.h"
#include "shared/environment.h"
#include "shared/files/writefile.h"
#include "shared/richimage.h"

#include <QBuffer>
#include <QElapsedTimer>
#include <QJSEngine>
#include <QMetaType>

namespace Morvex {
namespace {

const int waitStepMs = 20;

// What a script can handle as it is; the rest it gets as text.
QVariant scriptValue(const Object &object)
{
    const QVariant value = object.value();
    switch (static_cast<QMetaType::Type>(value.userType())) {
    case QMetaType::Int:
        // The text of an enumerator says more than its number.
        return value.toString() == object.valueText() ? value : QVariant(object.valueText());
    case QMetaType::Float:
        // Not the digits that only a double has room for.
        return object.valueText().toDouble();
    case QMetaType::Bool:
    case QMetaType::Double:
    case QMetaType::UInt:
    case QMetaType::LongLong:
        return value;
    default:
        // The engine does not know all integer types as numbers.
        return isWholeNumber(value) ? QVariant(value.toDouble()) : QVariant(object.valueText());
    }
}

// What there is instead.
QString unknownProperty(const Class *objectClass, const QString &name)
{
    QStringList names = objectClass ? objectClass->propertyNames() : QStringList();
    names.sort();
    const QString text = QStringLiteral("there is no property '%1'").arg(name);
    return names.isEmpty()
               ? text
               : text + QLatin1String("; there are: ") + names.join(QLatin1String(", "));
}

// The class of what the steps lead to before the one of that name.
const Class *classBefore(const SharedPtr<Object> &start, const QStringList &steps,
                         const QString &name)
{
    const SharedPtr<Object> owner = followProperties(start, steps.mid(0, steps.indexOf(name)));
    return owner ? owner->objectClass() : nullptr;
}

} // namespace

ScriptObject::ScriptObject(const std::shared_ptr<RemoteInspector> &inspector, const QString &name,
                           const SharedPtr<Object> &object, const QString &error)
    : m_inspector(inspector)
    , m_name(name)
    , m_object(object)
    , m_error(error)
{
}

QJSValue ScriptObject::get(const QString &path)
{
    const SharedPtr<Object> value = follow(propertySteps(path));
    return value ? qjsEngine(this)->toScriptValue(scriptValue(*value)) : QJSValue();
}

void ScriptObject::set(const QString &path, const QJSValue &value)
{
    QStringList steps = propertySteps(path);
    const QString last = steps.isEmpty() ? QString() : steps.takeLast();
    const SharedPtr<Object> owner = follow(steps);
    if (!owner)
        return;
    const Class *ownerClass = owner->objectClass();
    const Property *property = ownerClass ? ownerClass->property(last) : nullptr;
    const QVariant wanted = value.toVariant();
    const SharedPtr<Object> before = property ? property->get(owner) : SharedPtr<Object>();
    if (!before && !whyNoAnswer().isEmpty())
        return fail(whyNoAnswer());
    if (!property)
        return fail(unknownProperty(ownerClass, last));
    QString reason = before ? whyUnsuitable(before->value(), wanted) : QString();
    if (reason.isEmpty()) {
        const QString error = property->set(owner, wanted);
        if (!error.isEmpty())
            return fail(error);
        const SharedPtr<Object> after = property->get(owner);
        reason = after ? whyNotTaken({last, wanted, owner, before}, *after) : QString();
    }
    if (!reason.isEmpty())
        fail(QStringLiteral("property '%1' %2").arg(last, reason));
}

// Empty while the application answers.
QString ScriptObject::whyNoAnswer() const
{
    return m_inspector ? m_inspector->failure() : QString();
}

SharedPtr<Object> ScriptObject::follow(const QStringList &steps)
{
    // To ask first whether the object exists would take as long as to ask for the property.
    MissingProperty missing;
    const SharedPtr<Object> object = steps.isEmpty() || !m_inspector
                                         ? SharedPtr<Object>()
                                         : followProperties(m_object, steps, &missing);
    if (object)
        return object;
    // What has not been answered is not asked again: each time may take a minute.
    QString reason = m_object && !missing.name.isEmpty() ? whyNoAnswer() : QString();
    const bool exists = reason.isEmpty() && isThere(&reason);
    if (exists && steps.isEmpty())
        return m_object;
    if (!m_object)
        fail(m_error);
    else if (!reason.isEmpty())
        fail(reason);
    else if (!exists)
        fail(whyNoAnswer().isEmpty() ? QStringLiteral("the object no longer exists")
                                     : whyNoAnswer());
    else
        fail(missing.exists
                 ? QStringLiteral("property '%1' has no value").arg(missing.name)
                 : unknownProperty(classBefore(m_object, steps, missing.name), missing.name));
    return {};
}

bool ScriptObject::isSecret(const QString &path)
{
    QStringList steps = propertySteps(path);
    const QString last = steps.isEmpty() ? QString() : steps.takeLast();
    const SharedPtr<Object> owner = follow(steps);
    QString error;
    return owner && owner->id() != 0 &&
           (m_inspector->callFunction(QStringLiteral("isSecret"), {owner->id(), last}, &error)
                .toBool() ||
            !error.isEmpty());
}

void ScriptObject::useMouse(const QString &gesture, const QVariantMap &options)
{
    call(QStringLiteral("useMouse"), {gesture, options}, nullptr);
}

void ScriptObject::close()
{
    call(QStringLiteral("closeWindow"), {}, nullptr);
}

void ScriptObject::type(const QString &text)
{
    call(QStringLiteral("typeText"), {text}, nullptr);
}

void ScriptObject::typePassword(const QString &variable)
{
    QString keys = QString::fromStdString(Environment::getVariable(variable.toStdString()));
    if (keys.isEmpty())
        return fail(QStringLiteral("there is no password in the environment variable %1; run this "
                                   "with --envvar %1=...")
                        .arg(variable));
    if (!follow({}))
        return;
    keys.replace(QLatin1Char('<'), QLatin1String("<<"));
    const QString error =
        tryCall(QStringLiteral("typeText"), {QLatin1String("<Ctrl+A>") + keys}, nullptr);
    // How many keys there were is a secret.
    if (!error.isEmpty())
        fail(error.section(QLatin1String(", after "), 0, 0));
}

void ScriptObject::useItem(const QString &action, const QVariantList &selector,
                           const QString &value, int timeout)
{
    if (waitForItem(selector, timeout))
        call(QStringLiteral("useItem"), {action, QVariant(selector), value}, nullptr);
}

QVariantMap ScriptObject::itemProperties(const QVariantList &selector, int timeout)
{
    QVariant properties;
    if (waitForItem(selector, timeout))
        call(QStringLiteral("itemProperties"), {QVariant(selector)}, &properties);
    return properties.toMap();
}

bool ScriptObject::hasItem(const QVariantList &selector)
{
    QVariant answer;
    return call(QStringLiteral("hasItem"), {QVariant(selector)}, &answer) && answer.toBool();
}

// False when it has thrown; else what comes after it says what is missing.
bool ScriptObject::waitForItem(const QVariantList &selector, int timeout)
{
    QElapsedTimer timer;
    timer.start();
    QVariant hasItem;
    while (call(QStringLiteral("hasItem"), {QVariant(selector)}, &hasItem)) {
        if (hasItem.toBool() || timer.elapsed() >= timeout)
            return true;
        pauseScript(waitStepMs);
    }
    return false;
}

bool ScriptObject::isVisible()
{
    const Class *known = m_object ? m_object->objectClass() : nullptr;
    const Property *property = known ? known->property(QStringLiteral("visible")) : nullptr;
    const SharedPtr<Object> visible = property ? property->get(m_object) : SharedPtr<Object>();
    return known && (!visible || visible->value().toBool());
}

int ScriptObject::targetId(QObject *target)
{
    auto *other = qobject_cast<ScriptObject *>(target);
    if (!other || !other->follow({}))
        return 0;
    if (other->m_inspector != m_inspector)
        fail(QStringLiteral("it can't be dragged to an object of another application"));
    return other->m_object->id();
}

QVariantMap ScriptObject::properties()
{
    QVariant properties;
    call(QStringLiteral("objectProperties"), {}, &properties);
    return properties.toMap();
}

QJSValue ScriptObject::children()
{
    QVariant found;
    call(QStringLiteral("children"), {}, &found);
    return listOf(qjsEngine(this), m_inspector, found.toList());
}

void ScriptObject::screenshot(const QString &path)
{
    QVariant picture;
    if (!call(QStringLiteral("grabObjectScreenshot"), {QVariantMap(), 0}, &picture))
        return;
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    if (!Screenshot::fromVariant(picture).save(&buffer, "PNG"))
        return fail(QStringLiteral("the application gave no picture"));
    const FileWriteResult result = writeFileSafely(path, bytes);
    if (result.outcome != FileWriteResult::Written)
        fail(QStringLiteral("cannot write '%1': %2").arg(path, result.error));
}

QJSValue ScriptObject::listOf(QJSEngine *engine, const std::shared_ptr<RemoteInspector> &inspector,
                              const QVariantList &found)
{
    QJSValue list = engine->newArray();
    quint32 count = 0;
    for (const QVariant &pair : found) {
        const QString name = pair.toList().value(1).toString();
        const int id = pair.toList().value(0).toInt();
        if (inspector)
            list.setProperty(count++,
                             engine->newQObject(new ScriptObject(
                                 inspector, name, inspector->objectWithId(id), QString())));
    }
    return list;
}

// False when it has thrown.
bool ScriptObject::call(const QString &function, const QVariantList &arguments, QVariant *answer)
{
    if (!follow({}))
        return false;
    const QString error = tryCall(function, arguments, answer);
    if (!error.isEmpty())
        fail(error);
    return error.isEmpty();
}

QString ScriptObject::tryCall(const QString &function, const QVariantList &arguments,
                              QVariant *answer)
{
    QString error;
    const QVariant value =
        m_inspector->callFunction(function, QVariantList{m_object->id()} + arguments, &error);
    if (error.isEmpty() && answer)
        *answer = value;
    return error;
}

bool ScriptObject::exists()
{
    QString whyNotKnown;
    const bool exists = isThere(&whyNotKnown);
    if (!whyNotKnown.isEmpty())
        fail(whyNotKnown);
    return exists;
}

bool ScriptObject::isThere(QString *whyNotKnown) const
{
    if (!m_inspector || !m_object)
        return false;
    const bool isThere = m_object->objectClass();
    // Of one that the script itself has stopped it is known.
    if (!isThere && !m_inspector->session().isClosed())
        *whyNotKnown = whyNoAnswer();
    return isThere;
}

void ScriptObject::fail(const QString &what)
{
    qjsEngine(this)->throwError(m_object ? m_name + QLatin1String(": ") + what : what);
}

} // namespace Morvex
