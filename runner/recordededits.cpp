#include "runner/recordededits.h"

#include "runner/actionmap.h"

#include <algorithm>
#include <iterator>

namespace Morvex {
namespace {

bool isPartOfEdit(const QVariantMap &action, const QVariantMap &edit)
{
    const QString what = textOf(action, "what");
    if (contextOf(action) != contextOf(edit))
        return false;
    const QString editor = textOf(edit, "editor");
    if (!editor.isEmpty() && textOf(action, "object") == editor)
        return what != QLatin1String("point");
    const QString item = QStringLiteral("item");
    return what == QLatin1String("doubleClick") &&
           textOf(action, "object") == textOf(edit, "object") &&
           action.value(item) == edit.value(item);
}

} // namespace

void dropPartsOfEdit(std::vector<QVariantMap> *actions, const QVariantMap &edit)
{
    const int opener = numberOf(edit, "since");
    auto first = actions->end();
    while (first != actions->begin()) {
        const QVariantMap &before = *std::prev(first);
        const bool isOfProgram = contextOf(before) == contextOf(edit);
        if (isOfProgram && (isStart(before) || numberOf(before, "number") < opener))
            break;
        --first;
    }
    actions->erase(
        std::remove_if(first, actions->end(),
                       [&edit](const QVariantMap &action) { return isPartOfEdit(action, edit); }),
        actions->end());
}

} // namespace Morvex
