#include "runner/countedkeys.h"

namespace Morvex {
namespace {

// Fewer are easier to read without a count.
const int leastCounted = 4;

// Of the key or character that begins there. In "<Ctrl+>>" the first ">" is the key.
int lengthOfKey(const QString &keys, int start)
{
    if (keys.at(start) != QLatin1Char('<'))
        return 1;
    if (keys.midRef(start + 1, 1) == QLatin1String("<"))
        return 2;
    int end = keys.indexOf(QLatin1Char('>'), start);
    if (end > start + 2 && keys.midRef(end - 1, 3) == QLatin1String("+>>") &&
        keys.at(end - 2) != QLatin1Char('+'))
        ++end;
    return end < 0 ? keys.size() - start : end - start + 1;
}

bool isCountable(const QString &key)
{
    return key.size() > 2 && !key.contains(QLatin1Char('*')) && !key.endsWith(QLatin1String(">>"));
}

} // namespace

QString countedKeys(const QString &keys)
{
    QString counted;
    for (int i = 0; i < keys.size();) {
        const QString key = keys.mid(i, lengthOfKey(keys, i));
        int count = 1;
        while (isCountable(key) && keys.midRef(i + count * key.size(), key.size()) == key)
            ++count;
        counted += count < leastCounted ? key.repeated(count)
                                        : key.chopped(1) + QStringLiteral("*%1>").arg(count);
        i += count * key.size();
    }
    return counted;
}

} // namespace Morvex
