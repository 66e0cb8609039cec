#include "runner/scriptmethods.h"

#include <QRegularExpression>

#include <algorithm>
#include <cstring>
#include <iterator>

namespace Morvex {
namespace {

const ScriptMethod objectMethods[] = {
    {"click", "click", "", "nn"},
    {"doubleClick", "doubleClick", "", "nn"},
    {"rightClick", "rightClick", "", "nn"},
    {"hover", "hover"},
    {"wheel", "wheel", "n", "n"},
    {"type", "type", "t", "t"},
    {"typePassword", "typePassword", "t", "t"},
    {"setProperty", "set", "t*", "t*"},
    {"closeWindow", "close"},
};

// What they take follows what says which item.
const ScriptMethod itemMethods[] = {
    {"clickItem", "click"},       {"doubleClickItem", "doubleClick"},
    {"activateItem", "activate"}, {"rightClickItem", "rightClick"},
    {"expandItem", "expand"},     {"collapseItem", "collapse"},
    {"checkItem", "check"},       {"uncheckItem", "uncheck"},
    {"editItem", "edit", "t"},    {"clickTreeHandle", "toggle"},
    {"hoverItem", "hover"},       {"wheelItem", "wheel", "n"},
};

template <std::size_t size>
const ScriptMethod *findMethod(const ScriptMethod (&methods)[size], const QString &name)
{
    const auto found =
        std::find_if(std::begin(methods), std::end(methods), [&name](const ScriptMethod &method) {
            return name == QLatin1String(method.recorded);
        });
    return found == std::end(methods) ? nullptr : found;
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

} // namespace

const ScriptMethod *scriptMethodOfObject(const QString &recorded)
{
    return findMethod(objectMethods, recorded);
}

const ScriptMethod *scriptMethodOfItem(const QString &recorded)
{
    return findMethod(itemMethods, recorded);
}

bool isWhole(const EventDataArg &argument)
{
    static const QRegularExpression whole(QStringLiteral("^-?(0|[1-9][0-9]{0,8})\\z"));
    return argument.kind == EventDataArg::NUMBER && whole.match(argument.value).hasMatch();
}

bool fit(const EventArguments &arguments, const char *form)
{
    if (arguments.size() != std::strlen(form))
        return false;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        if (!fits(arguments[i], form[i]))
            return false;
    }
    return true;
}

} // namespace Morvex
