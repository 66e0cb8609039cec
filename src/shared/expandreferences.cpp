#include "shared/expandreferences.h"

namespace Morvex {
namespace {

// Far beyond what a person writes, and small enough that a file of nothing but references costs
// little time and memory.
const int maxReferences = 1000;
const int maxExpandedLength = 64 * 1024;

} // namespace

void expandReferences(QString &text, const std::function<QString(const QString &)> &lookup)
{
    QString expanded = text;
    const int maxLength = qMax(maxExpandedLength, text.size());
    int references = 0;
    int position = 0;
    while ((position = expanded.indexOf(QLatin1String("$("), position)) >= 0) {
        const int nameStart = position + 2;
        const int nameEnd = expanded.indexOf(QLatin1Char(')'), nameStart);
        if (nameEnd < 0)
            break;
        if (++references > maxReferences)
            return;
        const QString replacement = lookup(expanded.mid(nameStart, nameEnd - nameStart));
        if (replacement.isEmpty()) {
            position = nameStart;
            continue;
        }
        expanded.replace(position, nameEnd + 1 - position, replacement);
        if (expanded.size() > maxLength)
            return;
        position += 2;
    }
    text = expanded;
}

} // namespace Morvex
