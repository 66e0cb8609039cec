#include "runner/scriptobject.h"

#include "objectmodel/class.h"
#include "objectmodel/inspector.h"
#include "objectmodel/property.h"
#include "qtbackend/turneventloop.h"
#include "qtbackend/wholenumber.h"

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

} // namespace

ScriptObject::ScriptObject(const QString &name, const SharedPtr<Object> &object,
                           const QString &error)
    : m_name(name)
    , m_object(object)
    , m_error(error)
{
}

QJSValue ScriptObject::get(const QString &path)
{
    const SharedPtr<Object> value = walk(path.split(QLatin1Char('.'), Qt::SkipEmptyParts));
    return value ? qjsEngine(this)->toScriptValue(scriptValue(*value)) : QJSValue();
}

void ScriptObject::set(const QString &path, const QJSValue &value)
{
    QStringList steps = path.split(QLatin1Char('.'), Qt::SkipEmptyParts);
    const QString last = steps.isEmpty() ? QString() : steps.takeLast();
    const SharedPtr<Object> owner = walk(steps);
    if (!owner)
        return;
    const Class *ownerClass = owner->objectClass();
    const Property *property = ownerClass ? ownerClass->property(last) : nullptr;
    const QString error = property ? property->set(owner, value.toVariant())
                                   : QStringLiteral("there is no property '%1'").arg(last);
    if (error.isEmpty())
        turnEventLoop(0);
    else
        fail(error);
}

SharedPtr<Object> ScriptObject::walk(const QStringList &steps)
{
    if (!exists()) {
        fail(m_object ? QStringLiteral("the object is gone") : m_error);
        return {};
    }
    SharedPtr<Object> object = m_object;
    for (const QString &step : steps) {
        const Class *objectClass = object->objectClass();
        const Property *property = objectClass ? objectClass->property(step) : nullptr;
        object = property ? property->get(object) : SharedPtr<Object>();
        if (!object) {
            fail(property ? QStringLiteral("property '%1' has no value").arg(step)
                          : QStringLiteral("there is no property '%1'").arg(step));
            return {};
        }
    }
    return object;
}

void ScriptObject::click(const QJSValue &x, const QJSValue &y)
{
    QVariantList arguments;
    if (x.isNumber() && y.isNumber())
        arguments = {x.toInt(), y.toInt()};
    call(QStringLiteral("clickObject"), arguments);
}

void ScriptObject::type(const QString &text)
{
    call(QStringLiteral("typeText"), {text});
}

void ScriptObject::useItem(const QString &action, const QVariantList &selector, int timeout)
{
    waitForItem(selector, timeout);
    call(QStringLiteral("useItem"), QVariantList{action} + selector);
}

QString ScriptObject::itemText(const QVariantList &selector, int timeout)
{
    waitForItem(selector, timeout);
    return call(QStringLiteral("itemText"), selector).toString();
}

bool ScriptObject::hasItem(const QVariantList &selector)
{
    return call(QStringLiteral("hasItem"), selector).toBool();
}

// What comes after it says what is missing.
void ScriptObject::waitForItem(const QVariantList &selector, int timeout)
{
    QElapsedTimer timer;
    timer.start();
    while (exists() && !hasItem(selector) && timer.elapsed() < timeout)
        turnEventLoop(waitStepMs);
}

QVariant ScriptObject::call(const QString &function, const QVariantList &arguments)
{
    if (!walk({}))
        return {};
    QString error;
    const QVariant answer =
        Inspector::self()->callFunction(function, QVariantList{m_object->id()} + arguments, &error);
    if (!error.isEmpty())
        fail(error);
    return answer;
}

bool ScriptObject::exists() const
{
    return Inspector::self() && m_object && m_object->objectClass();
}

void ScriptObject::fail(const QString &what)
{
    qjsEngine(this)->throwError(m_object ? m_name + QLatin1String(": ") + what : what);
}

} // namespace Morvex
