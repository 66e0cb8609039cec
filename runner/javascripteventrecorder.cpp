#include "runner/javascripteventrecorder.h"

#include "runner/javascriptcode.h"
#include "runner/scriptmethods.h"

#include <QRegularExpression>

#include <algorithm>

namespace Morvex {
namespace {

// As long as find and item wait by themselves.
const int defaultWaitMs = 10000;

// Users look at what has come to rest, a script comes at once.
const int pointRetryMs = 5000;

// What is shorter is printed as no time at all.
const int shortestSnoozeMs = 50;

// Options that say which item; the others say how it is used.
const char *const selectorOptions[] = {"column", "occurrence"};

const char *const contextFunctions[] = {"currentApplicationContext", "setApplicationContext",
                                        "waitForApplicationLaunch"};

QString argumentCode(const EventDataArg &argument)
{
    static const QRegularExpression number(
        QStringLiteral("^(true|false|-?(0|[1-9][0-9]*)(\\.[0-9]+)?)\\z"));
    return argument.kind == EventDataArg::NUMBER && number.match(argument.value).hasMatch()
               ? argument.value
               : javaScriptString(argument.value);
}

QString argumentList(const EventArguments &arguments)
{
    QStringList code;
    for (const EventDataArg &argument : arguments)
        code += argumentCode(argument);
    return code.join(QLatin1String(", "));
}

QString callCode(const QString &object, const QString &method, const QString &arguments)
{
    return QStringLiteral("%1.%2(%3);").arg(object, method, arguments);
}

// Waits for longer than it does by itself where the time is longer.
QString found(const QString &objectName, int timeoutMs = 0)
{
    return timeoutMs > defaultWaitMs
               ? QStringLiteral("find(%1, %2)").arg(objectName, QString::number(timeoutMs))
               : QStringLiteral("find(%1)").arg(objectName);
}

QString joined(const QString &arguments, const QString &options)
{
    return arguments.isEmpty() || options.isEmpty() ? arguments + options
                                                    : arguments + QLatin1String(", ") + options;
}

// The arguments of an event, in their parts.
struct Parts
{
    EventArguments plain;
    QMap<QString, QString> selection;
    QMap<QString, QString> options;
    // What a drag ends on; null without one.
    QString target;
    EventArguments targetPlain;
    QMap<QString, QString> targetSelection;
    QMap<QString, QString> targetOptions;

    static Parts of(const EventData &event);
};

void addOption(const QString &text, QMap<QString, QString> *selection,
               QMap<QString, QString> *options)
{
    const QString key = text.section(QLatin1Char('='), 0, 0);
    const QString value = text.section(QLatin1Char('='), 1);
    const bool isSelection =
        std::any_of(std::begin(selectorOptions), std::end(selectorOptions),
                    [&key](const char *name) { return key == QLatin1String(name); });
    bool isNumber = false;
    value.toInt(&isNumber);
    (isSelection ? selection : options)->insert(key, isNumber ? value : javaScriptString(value));
}

Parts Parts::of(const EventData &event)
{
    Parts parts;
    for (int i = 0; i < event.arguments().count(); ++i) {
        const EventDataArg &argument = event.arguments().at(i);
        const bool isOfTarget = !parts.target.isNull();
        if (argument.kind == EventDataArg::OBJECT)
            parts.target = argument.value;
        else if (argument.kind == EventDataArg::OPTION)
            addOption(argument.value, isOfTarget ? &parts.targetSelection : &parts.selection,
                      isOfTarget ? &parts.targetOptions : &parts.options);
        else
            (isOfTarget ? parts.targetPlain : parts.plain).push_back(argument);
    }
    return parts;
}

QString objectCode(const QMap<QString, QString> &members)
{
    return members.isEmpty() ? QString() : javaScriptObject(members);
}

// Takes the arguments that say which item. Empty when they don't.
QString takeItem(const QString &objectName, EventArguments *arguments,
                 const QMap<QString, QString> &selection)
{
    const bool isCell =
        arguments->size() > 1 && isWhole(arguments->at(0)) && isWhole(arguments->at(1));
    const bool isText = !arguments->empty() && arguments->at(0).kind == EventDataArg::TEXT &&
                        !arguments->at(0).value.isEmpty();
    if (!isCell && !isText)
        return {};
    const auto end = arguments->begin() + (isCell ? 2 : 1);
    const QString selector = argumentList(EventArguments(arguments->begin(), end));
    arguments->erase(arguments->begin(), end);
    return found(objectName) +
           QStringLiteral(".item(%1)").arg(joined(selector, objectCode(selection)));
}

// Empty for an item that its text alone names, and for one that need not be waited for.
QString selectedItemWait(const QString &objectName, const EventData &event)
{
    Parts parts = Parts::of(event);
    if (parts.selection.isEmpty() || event.snooze() <= defaultWaitMs)
        return {};
    parts.selection.insert(QStringLiteral("timeout"), QString::number(event.snooze()));
    const QString item = takeItem(objectName, &parts.plain, parts.selection);
    return item.isEmpty() ? QString() : item + QStringLiteral(".text();");
}

QString itemCall(const QString &objectName, Parts parts, const ScriptMethod &method)
{
    const QString item = takeItem(objectName, &parts.plain, parts.selection);
    const bool isCall = !item.isEmpty() && fit(parts.plain, method.arguments);
    const QString name = QString::fromLatin1(method.printed);
    // Keys that were held during a click say nothing of what it did to the item.
    if (name != QLatin1String("wheel") &&
        !name.endsWith(QLatin1String("click"), Qt::CaseInsensitive))
        parts.options.clear();
    return isCall
               ? callCode(item, name, joined(argumentList(parts.plain), objectCode(parts.options)))
               : QString();
}

bool isContextFunction(const QString &name)
{
    return std::any_of(std::begin(contextFunctions), std::end(contextFunctions),
                       [&name](const char *known) { return name == QLatin1String(known); });
}

// The arguments of these functions are variables of the script.
QString contextCall(const EventData &event)
{
    QStringList arguments;
    for (const EventDataArg &argument : event.arguments())
        arguments += argument.value;
    const QString call =
        QStringLiteral("%1(%2);").arg(event.methodName(), arguments.join(QLatin1String(", ")));
    return event.resultName().isEmpty()
               ? call
               : QStringLiteral("var %1 = %2").arg(event.resultName(), call);
}

bool isPropertyWait(const EventData &event)
{
    return event.methodName() == QLatin1String("waitForProperty");
}

QString propertyWait(const QString &objectName, const EventData &event,
                     const EventArguments &arguments)
{
    const int timeoutMs = arguments[1].value.toInt();
    const QString time = timeoutMs > defaultWaitMs ? QString::number(timeoutMs) : QString();
    return callCode(found(objectName, event.snooze()), QStringLiteral("waitFor"),
                    joined(joined(argumentCode(arguments[0]), QStringLiteral("true")), time));
}

QString statementOf(const EventData &event, const QString &objectName)
{
    const QString name = EventRecorder::cleansedMethodName(event.methodName());
    if (objectName.isEmpty())
        return isContextFunction(name) ? contextCall(event) : QString();
    const Parts parts = Parts::of(event);
    const ScriptMethod *itemMethod = scriptMethodOfItem(name);
    if (itemMethod)
        return itemCall(objectName, parts, *itemMethod);
    if (isPropertyWait(event) && fit(parts.plain, "tn"))
        return propertyWait(objectName, event, parts.plain);
    const ScriptMethod *method = scriptMethodOfObject(name);
    const bool isCall =
        method && (fit(parts.plain, method->arguments) || fit(parts.plain, method->otherArguments));
    return isCall ? callCode(found(objectName), QString::fromLatin1(method->printed),
                             joined(argumentList(parts.plain), objectCode(parts.options)))
                  : QString();
}

// From and to are objects or items. Within one object both are places of it.
QString dragCode(const EventData &event, const QString &objectName, const QString &targetName)
{
    Parts parts = Parts::of(event);
    const bool isOfItem = event.methodName() == QLatin1String("dragItem");
    const QString from =
        isOfItem ? takeItem(objectName, &parts.plain, parts.selection) : found(objectName);
    QString to = takeItem(targetName, &parts.targetPlain, parts.targetSelection);
    if (from.isEmpty() || !parts.plain.empty() || !parts.targetPlain.empty())
        return {};
    QMap<QString, QString> options = parts.options;
    if (to.isEmpty() && !isOfItem && targetName == objectName && !parts.targetOptions.isEmpty())
        to = objectCode(parts.targetOptions);
    else if (!parts.targetOptions.isEmpty())
        options.insert(QStringLiteral("to"), objectCode(parts.targetOptions));
    if (to.isEmpty())
        to = found(targetName);
    return callCode(from, QStringLiteral("drag"), joined(to, objectCode(options)));
}

// Options are the last argument; the names of properties come in an array.
QString pointCode(const EventData &event, const QString &objectName)
{
    const Parts parts = Parts::of(event);
    if (parts.plain.size() < 2)
        return {};
    QMap<QString, QString> options{{QStringLiteral("object"), objectName},
                                   {QStringLiteral("retry"), QString::number(pointRetryMs)},
                                   {QStringLiteral("type"), argumentCode(parts.plain[1])}};
    const EventArguments properties(parts.plain.begin() + 2, parts.plain.end());
    if (!properties.empty())
        options.insert(QStringLiteral("properties"),
                       QLatin1Char('[') + argumentList(properties) + QLatin1Char(']'));
    return callCode(QStringLiteral("check"), QStringLiteral("point"),
                    joined(argumentCode(parts.plain[0]), objectCode(options)));
}

// A comment must stay one line.
QString unknownEvent(const EventData &event)
{
    return QStringLiteral("// Not recorded: %1 of %2 with (%3)")
        .arg(javaScriptString(event.methodName()), javaScriptString(event.objectName()),
             argumentList(EventArguments(event.arguments().begin(), event.arguments().end())));
}

} // namespace

void JavaScriptEventRecorder::recordEvent(const EventData &event)
{
    const QString objectName = expressionFor(event.objectName());
    const QString statement = statementFor(event, objectName);
    if (!objectName.isEmpty())
        append(waitFor(objectName, event));
    append(statement.isEmpty() ? unknownEvent(event) : statement);
}

QString JavaScriptEventRecorder::statementFor(const EventData &event, const QString &objectName)
{
    const QString target = Parts::of(event).target;
    if (!target.isEmpty())
        return dragCode(event, objectName, expressionFor(target));
    return event.methodName() == QLatin1String("checkPoint") ? pointCode(event, objectName)
                                                             : statementOf(event, objectName);
}

// A statement that waits by itself waits no longer than it does in any script.
QString JavaScriptEventRecorder::waitFor(const QString &objectName, const EventData &event)
{
    const bool isForObjects = synchronization() == OBJECT_SYNC;
    const QString itemWait = isForObjects ? selectedItemWait(objectName, event) : QString();
    if (!itemWait.isEmpty() || (isForObjects && isPropertyWait(event)))
        return itemWait;
    if (!skipRecordSyncFor(event))
        return recordSync(objectName, event, event.snooze());
    return isForObjects ? recordSync(objectName, event.snooze()) : QString();
}

QString JavaScriptEventRecorder::expressionFor(const QString &realName)
{
    if (realName.isEmpty())
        return {};
    const QString name = createSymbolicName(realName);
    return scriptedObjectMap() ? name : javaScriptString(name);
}

void JavaScriptEventRecorder::append(const QString &statement)
{
    if (!statement.isEmpty())
        m_lines += statement;
}

QString JavaScriptEventRecorder::recordSnooze(int timeoutMs)
{
    return timeoutMs < shortestSnoozeMs
               ? QString()
               : QStringLiteral("snooze(%1);").arg(formatSnoozeSecs(timeoutMs));
}

QString JavaScriptEventRecorder::recordObjectWait(const QString &objectName, int timeoutMs)
{
    return timeoutMs <= defaultWaitMs ? QString() : found(objectName, timeoutMs) + QLatin1Char(';');
}

QString JavaScriptEventRecorder::recordItemWait(const QString &objectName, const QString &item,
                                                int timeoutMs)
{
    return timeoutMs <= defaultWaitMs
               ? QString()
               : QStringLiteral("%1.item(%2, %3).text();")
                     .arg(found(objectName), javaScriptString(item), QString::number(timeoutMs));
}

QString JavaScriptEventRecorder::recordCellWait(const QString &objectName, int row, int column,
                                                int timeoutMs)
{
    return timeoutMs <= defaultWaitMs
               ? QString()
               : QStringLiteral("%1.item(%2, %3, %4).text();")
                     .arg(found(objectName), QString::number(row), QString::number(column),
                          QString::number(timeoutMs));
}

} // namespace Morvex
