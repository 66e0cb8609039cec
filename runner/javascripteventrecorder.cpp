#include "runner/javascripteventrecorder.h"

#include "runner/javascriptcode.h"

#include <QRegularExpression>

#include <algorithm>
#include <cstring>

namespace Morvex {
namespace {

// As long as find and item wait by themselves.
const int defaultWaitMs = 10000;

// What is shorter is printed as no time at all.
const int shortestSnoozeMs = 50;

// Methods of an object, and of an item in it, under their names in scripts.
struct Method
{
    const char *recorded;
    const char *printed;
    // What it takes: "t" for a text, "n" for a number, "*" for either. Two forms at the most.
    const char *arguments = "";
    const char *otherArguments = "";
};

const Method objectMethods[] = {
    {"click", "click", "", "nn"},
    {"type", "type", "t", "t"},
    {"setProperty", "set", "t*", "t*"},
};

const Method itemMethods[] = {
    {"clickItem", "click"},   {"doubleClickItem", "doubleClick"}, {"activateItem", "activate"},
    {"expandItem", "expand"}, {"collapseItem", "collapse"},       {"clickTreeHandle", "toggle"},
};

const char *const contextFunctions[] = {"currentApplicationContext", "setApplicationContext",
                                        "waitForApplicationLaunch"};

// Null when scripts have no such method.
template <std::size_t size>
const Method *findMethod(const Method (&methods)[size], const QString &name)
{
    const auto found =
        std::find_if(std::begin(methods), std::end(methods), [&name](const Method &method) {
            return name == QLatin1String(method.recorded);
        });
    return found == std::end(methods) ? nullptr : found;
}

QString argumentCode(const EventDataArg &argument)
{
    static const QRegularExpression number(QStringLiteral("^-?(0|[1-9][0-9]*)(\\.[0-9]+)?\\z"));
    return argument.kind == EventDataArg::NUMBER && number.match(argument.value).hasMatch()
               ? argument.value
               : javaScriptString(argument.value);
}

QString argumentList(const EventData &event, int first, int end)
{
    QStringList code;
    for (int i = first; i < end; ++i)
        code += argumentCode(event.arguments().at(i));
    return code.join(QLatin1String(", "));
}

// Positions, rows and columns; scripts refuse any other number.
bool isWhole(const EventDataArg &argument)
{
    static const QRegularExpression whole(QStringLiteral("^-?(0|[1-9][0-9]{0,8})\\z"));
    return argument.kind == EventDataArg::NUMBER && whole.match(argument.value).hasMatch();
}

bool fits(const EventDataArg &argument, char form)
{
    switch (form) {
    case 'n':
        return isWhole(argument);
    case 't':
        return argument.kind != EventDataArg::NUMBER;
    default:
        return true;
    }
}

bool fit(const EventData &event, const char *forms)
{
    const auto &arguments = event.arguments();
    if (arguments.count() != static_cast<int>(std::strlen(forms)))
        return false;
    for (int i = 0; i < arguments.count(); ++i) {
        if (!fits(arguments.at(i), forms[i]))
            return false;
    }
    return true;
}

QString callCode(const QString &object, const QString &method, const QString &arguments)
{
    return QStringLiteral("%1.%2(%3);").arg(object, method, arguments);
}

QString found(const QString &objectName)
{
    return QStringLiteral("find(%1)").arg(objectName);
}

// The only arguments are those that say which item; an empty text when there are others.
QString itemCall(const QString &objectName, const EventData &event, const Method &method)
{
    const auto &arguments = event.arguments();
    const bool isCell = EventRecorder::hasItemRowAndColumn(event);
    if (arguments.count() != (isCell ? 2 : 1) || arguments.at(0).value.isEmpty())
        return {};
    if (isCell && !(isWhole(arguments.at(0)) && isWhole(arguments.at(1))))
        return {};
    const QString selector =
        isCell ? argumentList(event, 0, 2) : javaScriptString(arguments.at(0).value);
    return callCode(found(objectName) + QStringLiteral(".item(%1)").arg(selector),
                    QString::fromLatin1(method.printed), QString());
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

QString statementOf(const EventData &event, const QString &objectName)
{
    const QString name = EventRecorder::cleansedMethodName(event.methodName());
    if (objectName.isEmpty())
        return isContextFunction(name) ? contextCall(event) : QString();
    const Method *itemMethod = findMethod(itemMethods, name);
    if (itemMethod)
        return itemCall(objectName, event, *itemMethod);
    const Method *method = findMethod(objectMethods, name);
    const bool isCall =
        method && (fit(event, method->arguments) || fit(event, method->otherArguments));
    return isCall ? callCode(found(objectName), QString::fromLatin1(method->printed),
                             argumentList(event, 0, event.arguments().count()))
                  : QString();
}

// A comment must stay one line.
QString unknownEvent(const EventData &event)
{
    return QStringLiteral("// Not recorded: %1 of %2 with (%3)")
        .arg(javaScriptString(event.methodName()), javaScriptString(event.objectName()),
             argumentList(event, 0, event.arguments().count()));
}

} // namespace

void JavaScriptEventRecorder::recordEvent(const EventData &event)
{
    const QString objectName = expressionFor(event.objectName());
    const QString statement = statementOf(event, objectName);
    if (!objectName.isEmpty())
        append(waitFor(objectName, event));
    append(statement.isEmpty() ? unknownEvent(event) : statement);
}

// A statement that waits by itself waits no longer than it does in any script.
QString JavaScriptEventRecorder::waitFor(const QString &objectName, const EventData &event)
{
    if (!skipRecordSyncFor(event))
        return recordSync(objectName, event, event.snooze());
    return synchronization() == OBJECT_SYNC ? recordSync(objectName, event.snooze()) : QString();
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
    return timeoutMs <= defaultWaitMs
               ? QString()
               : QStringLiteral("find(%1, %2);").arg(objectName, QString::number(timeoutMs));
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
