#include "qtbackend/typedkeys.h"

#include "qtbackend/similartexts.h"

#include <QKeySequence>
#include <QStringList>
#include <QVector>

namespace Morvex {
namespace {

// Keys from here on are not characters.
const int firstSpecialKey = 0x01000000;

const int maxCount = 100000;

QString textOfCode(uint code)
{
    return QString::fromUcs4(&code, 1);
}

TypedKey keyOfCharacter(uint code)
{
    if (code == '\n')
        return {Qt::Key_Return, Qt::NoModifier, QStringLiteral("\r")};
    if (code == '\t')
        return {Qt::Key_Tab, Qt::NoModifier, QStringLiteral("\t")};
    const Qt::KeyboardModifier modifier = QChar::isUpper(code) ? Qt::ShiftModifier : Qt::NoModifier;
    return {static_cast<int>(QChar::toUpper(code)), modifier, textOfCode(code)};
}

// As keyboards do: Ctrl makes a control character, which terminals read.
QString textOfKey(int key, Qt::KeyboardModifiers modifiers)
{
    if (modifiers & Qt::ControlModifier)
        return key >= '@' && key <= '_' ? QString(QChar(key & 0x1f)) : QString();
    if (key == Qt::Key_Return || key == Qt::Key_Enter)
        return QStringLiteral("\r");
    if (key == Qt::Key_Tab && !(modifiers & Qt::ShiftModifier))
        return QStringLiteral("\t");
    if (key >= firstSpecialKey)
        return {};
    const auto code = static_cast<uint>(key);
    return textOfCode(modifiers & Qt::ShiftModifier ? code : QChar::toLower(code));
}

// Names on keyboards for keys that Qt abbreviates.
const struct
{
    QLatin1String name;
    QLatin1String known;
} longNames[] = {
    {QLatin1String("PageUp"), QLatin1String("PgUp")},
    {QLatin1String("PageDown"), QLatin1String("PgDown")},
    {QLatin1String("Escape"), QLatin1String("Esc")},
    {QLatin1String("Delete"), QLatin1String("Del")},
    {QLatin1String("Insert"), QLatin1String("Ins")},
};

// Where the key begins in a name such as "Ctrl+A" or "Ctrl++".
int keyPartOf(const QString &name)
{
    return name.lastIndexOf(QLatin1Char('+'), -2) + 1;
}

QString withKnownName(const QString &name)
{
    const int start = keyPartOf(name);
    for (const auto &key : longNames) {
        if (QStringView(name).mid(start).compare(key.name, Qt::CaseInsensitive) == 0)
            return name.left(start) + key.known;
    }
    return name;
}

bool keyOfName(const QString &name, TypedKey *key)
{
    const QKeySequence sequence =
        QKeySequence::fromString(withKnownName(name), QKeySequence::PortableText);
    if (sequence.count() != 1 || sequence[0] == Qt::Key_unknown)
        return false;
    key->key = static_cast<int>(sequence[0] & ~int(Qt::KeyboardModifierMask));
    key->modifiers = Qt::KeyboardModifiers(sequence[0] & int(Qt::KeyboardModifierMask));
    key->text = textOfKey(key->key, key->modifiers);
    return true;
}

QStringList keyNames()
{
    QStringList names;
    for (const auto &key : longNames)
        names += key.name;
    for (int key = firstSpecialKey; key <= Qt::Key_F12; ++key)
        names += QKeySequence(key).toString(QKeySequence::PortableText);
    return names;
}

QString unknownKey(const QString &name)
{
    const int start = keyPartOf(name);
    const QString nearest = mostSimilar(name.mid(start), keyNames());
    const QString hint =
        nearest.isEmpty()
            ? QString()
            : QStringLiteral(" (did you mean '<%1>'?)").arg(name.left(start) + nearest);
    return QStringLiteral("'<%1>' is not a key name%2; \"<\" is typed by \"<<\"").arg(name, hint);
}

// Negative for none. In "<Ctrl+>>" it is the second, in "<Ctrl++>>" the first.
int endOfName(const QVector<uint> &codes, int start)
{
    const int end = codes.indexOf('>', start);
    const bool isAfterModifier =
        end > start + 2 && codes.at(end - 1) == '+' && codes.at(end - 2) != '+';
    return isAfterModifier && codes.value(end + 1) == '>' ? end + 1 : end;
}

// How many times, in a name such as "Right*12", and the name without that. 1 when it is no number
// that can be meant.
int takeCount(QString *name)
{
    const int star = name->lastIndexOf(QLatin1Char('*'));
    const int count = star > 0 ? name->midRef(star + 1).toInt() : 0;
    if (count < 1 || count > maxCount)
        return 1;
    name->truncate(star);
    return count;
}

} // namespace

QString readTypedKeys(const QString &text, std::vector<TypedKey> *keys)
{
    const QVector<uint> codes = text.toUcs4();
    for (int i = 0; i < codes.size(); ++i) {
        if (codes.at(i) != '<') {
            keys->push_back(keyOfCharacter(codes.at(i)));
            continue;
        }
        if (i + 1 < codes.size() && codes.at(i + 1) == '<') {
            keys->push_back(keyOfCharacter(codes.at(i++)));
            continue;
        }
        const int end = endOfName(codes, i);
        const QVector<uint> inside = codes.mid(i + 1, end < 0 ? -1 : end - i - 1);
        const QString name = QString::fromUcs4(inside.constData(), inside.size());
        QString once = name;
        const int count = takeCount(&once);
        TypedKey key;
        if (end < 0 || !keyOfName(once, &key))
            return unknownKey(name);
        keys->insert(keys->end(), static_cast<std::size_t>(count), key);
        i = end;
    }
    return {};
}

} // namespace Morvex
